#include "cli/ListeningSteps.h"

#include "cli/GivenFile.h"
#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/Plan.h"
#include "cli/TerminalBridge.h"
#include "cli/UsageError.h"
#include "files/PrintableText.h"
#include "files/TextFile.h"
#include "loader/Loader.h"

namespace zrk {
namespace {

/// Distinguishes a text that did not come in time from a board that never answered a protocol.
ExitStatus notSeen(const StepRun& run, ExitStatus status) {
    return run.ranOut() ? ExitStatus::NotSeen : status;
}

} // namespace

void requireText(const Plan& /*plan*/, const QString& argument) {
    if (argument.isEmpty())
        throw UsageError(QStringLiteral("expect: TEXT must not be empty."));
}

ExitStatus expect(const StepRun& run) {
    QList<QByteArray> unwanted;
    for (const QString& text : run.options.unwanted)
        unwanted += text.toLocal8Bit();
    run.loader.listener.expect(
        run.argument.toLocal8Bit(), run.options.limits.expect,
        [&run](const QByteArray& heard) {
            run.output.board(heard);
            if (run.output.printer().wasLost()) // it has no reader
                run.loader.state.requestStop(Outcome::Internal);
        },
        unwanted);
    return notSeen(run, toldEnd(run, "--expect-timeout"));
}

void requireScript(const Plan& /*plan*/, const QString& argument) {
    const TextFile file = readTextFile(argument);
    if (file.fault == TextFile::Fault::TooLong)
        throw UsageError(QStringLiteral("script %1: %2.").arg(printableText(argument), file.why));
    if (file.fault != TextFile::Fault::None) {
        const QString problem = fileProblem(argument);
        throw UsageError(QStringLiteral("script %1: %2.")
                             .arg(printableText(argument), problem.isEmpty() ? file.why : problem));
    }
}

ExitStatus script(const StepRun& run) {
    Loader& loader = run.loader;
    if (!loader.state.TerminalMode || !loader.port.isOpen()) {
        // Output that the program has sent already is for the script's first wait.
        loader.listener.openPort({});
        if (loader.operation.outcome() != Outcome::Done)
            return toldEnd(run);
        if (!loader.terminal.switchTo(true))
            return loader.state.StopReason == Outcome::Done ? ExitStatus::PortLost
                                                            : exitStatusOf(loader.state.StopReason);
    }
    loader.script.runScript(run.argument, run.options.limits.script);
    const ExitStatus status = notSeen(run, exitStatusOf(loader.operation.outcome()));
    noteLimit(run, "--script-timeout");
    if (status != ExitStatus::Done && !loader.state.Remark.text.isEmpty()) // names the line and the reason
        run.output.tell(
            (status == ExitStatus::NotSeen ? QStringLiteral("--script-timeout ran out: ") : QString()) +
            loader.state.Remark.text);
    return status;
}

void requireVerify(const Plan& plan, const QString& argument) {
    if (!argument.contains(QLatin1String("%a")) || !argument.contains(QLatin1String("%n")) ||
        !fitsOneByteCodes(argument))
        throw UsageError(
            QStringLiteral("verify %1: give the board's checksum command, with %a for the address "
                           "and %n for the bytes, for example \"crc32 %a %n\".")
                .arg(argument));
    if (!(plan.hasBefore("load") && plan.isSelected(kSecondaryExecutable)) && !plan.hasBefore("download"))
        throw UsageError(QStringLiteral("verify compares what the steps load and download before it have "
                                        "sent into SDRAM; here they send nothing."));
    // The primary boot would take the command's letters for its own commands.
    if (!plan.hasBefore("start") && !plan.hasBefore("script") && !plan.hasBefore("terminal"))
        throw UsageError(QStringLiteral("verify types at the prompt of a program, and no step "
                                        "before it starts one: put start and expect PROMPT there."));
}

ExitStatus verify(const StepRun& run) {
    constexpr std::chrono::milliseconds kLimit = std::chrono::seconds(30);
    for (std::size_t slot = 0; slot < kSlots.size(); ++slot) {
        if (kSlots[slot].memory != Memory::Sdram || !run.loader.state.Sent[slot].value())
            continue;
        run.loader.memoryCheck.check(slot, run.argument, run.options.limits.expect.value_or(kLimit),
                                     [&run](const QByteArray& heard) { run.output.board(heard); });
        const ExitStatus status = notSeen(run, toldEnd(run, "--expect-timeout"));
        if (status != ExitStatus::Done)
            return status;
        run.output.notice(
            QStringLiteral("%1: the board confirms CRC-32 %2")
                .arg(run.loader.controls.slotTitle(slot), run.loader.state.Sent[slot].value()->crcText()));
    }
    return ExitStatus::Done;
}

ExitStatus terminal(const StepRun& run) {
    TerminalBridge bridge(run.loader, run.output);
    bridge.run();
    return toldEnd(run);
}

} // namespace zrk
