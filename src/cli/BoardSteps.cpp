#include "cli/BoardSteps.h"

#include "cli/Options.h"
#include "cli/Output.h"
#include "cli/Plan.h"
#include "cli/UsageError.h"
#include "loader/Loader.h"
#include "machine/PortMessages.h"

namespace zrk {

void requireNothing(const Plan& /*plan*/, const QString& /*argument*/) {}

void requireForLoad(const Plan& plan, const QString& /*argument*/) {
    if (plan.isNamed(kPrimaryBoot) || !plan.isSelected(kSecondaryExecutable))
        plan.requireFile(kPrimaryBoot);
    if (plan.isNamed(kSecondaryExecutable))
        plan.requireFile(kSecondaryExecutable);
}

ExitStatus load(const StepRun& run) {
    if (run.next != nullptr && run.next->commandsPrimaryBoot)
        run.loader.bringUp.loadForCommand();
    else
        run.loader.bringUp.cmdStartPrimary_Click();
    return exitStatusOf(run.loader.operation.outcome());
}

void requireForDownload(const Plan& plan, const QString& /*argument*/) {
    bool any = false;
    for (const Slot slot : {kUBoot, kRootFs, kKernel}) {
        if (plan.isNamed(slot))
            plan.requireFile(slot);
        any = any || plan.isNamed(slot);
    }
    if (!any)
        throw UsageError(QStringLiteral(
            "Nothing to download: name an image with --uboot, --rootfs or --kernel FILE[,ADDRESS]."));
}

/// Downloads; the primary boot is ready since an earlier step or an earlier run.
ExitStatus download(const StepRun& run) {
    run.loader.listener.openPort({});
    if (run.loader.operation.outcome() != Outcome::Done)
        return toldEnd(run);
    run.loader.commands.cmdURK_Click();
    return exitStatusOf(run.loader.operation.outcome());
}

/// Allows a program that an earlier run has loaded, too.
void requireForStart(const Plan& plan, const QString& /*argument*/) {
    if (plan.has("load"))
        plan.requireFile(kSecondaryExecutable);
}

ExitStatus start(const StepRun& run) {
    run.loader.bringUp.startWithoutTerminal();
    const ExitStatus status = exitStatusOf(run.loader.operation.outcome());
    if (status != ExitStatus::Done || run.next == nullptr || !run.next->awaitsProgram)
        return status;
    run.loader.listener.awaitProgram(run.options.limits.start);
    return toldEnd(run, "--start-timeout");
}

void requireForReset(const Plan& plan, const QString& /*argument*/) {
    if (plan.holdsDtr())
        throw UsageError(QStringLiteral(
            "The step reset switches DTR off and on, which --dtr holds. Leave out one of the two."));
}

ExitStatus reset(const StepRun& run) {
    Loader& loader = run.loader;
    loader.operation.runMarked([&loader] {
        loader.port.OpenComPort();
        if (!loader.keys.switchDtrOffAndOn()) {
            const int number = loader.port.CommPort();
            throw RuntimeFailure(FailureKind::PortNotOpened, port_messages::noDtr(port_messages::portName(
                                                                 number, loader.port.deviceName(number))));
        }
        return loader.state.CancelRequested ? Operation::End::Stopped : Operation::End::Done;
    });
    return toldEnd(run);
}

ExitStatus check(const StepRun& run) {
    const bool valid = run.loader.validation.ValidateAddresses();
    const auto line = [&run](const QString& index, const QString& start, const QString& size,
                             const QString& name) {
        run.output.console(index.leftJustified(7) + start.leftJustified(12) + size.leftJustified(12) + name +
                           QStringLiteral("\r\n"));
    };
    line(QStringLiteral("index"), QStringLiteral("start"), QStringLiteral("size"), QString());
    for (const AddressList::Row& row : run.loader.controls.lvwAdrs.rows())
        line(row.index, row.start, row.size,
             run.loader.state.SlotNames.at(static_cast<std::size_t>(row.index.toInt())));
    return valid ? ExitStatus::Done : ExitStatus::Usage;
}

void requireForFlash(const Plan& plan, const QString& /*argument*/) {
    plan.requireFile(kPgSibl);
    plan.requireFile(kFlashImage);
}

ExitStatus flash(const StepRun& run) {
    run.loader.flash.cmdPrgFlash_Click();
    if (run.loader.state.FlashStateUnknown)
        run.output.tell(kFlashStateUnknownText);
    const bool isTold = !run.output.limit().isEmpty(); // as that of the wait for the power-on
    noteLimit(run, "--flash-timeout");
    if (run.ranOut() && !isTold)
        run.output.tell(QStringLiteral("--flash-timeout ran out: ") + run.loader.state.StopText);
    return exitStatusOf(run.loader.operation.outcome());
}

} // namespace zrk
