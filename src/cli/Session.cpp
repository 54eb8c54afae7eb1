#include "cli/Session.h"

#include "boot/ImageStore.h"
#include "cli/AnswerTimes.h"
#include "cli/EndSentence.h"
#include "cli/Report.h"
#include "cli/RunFacts.h"
#include "cli/SlotPresets.h"
#include "cli/TimeText.h"
#include "cli/UsageError.h"
#include "config/ImageSlots.h"
#include "machine/PortCheck.h"
#include "platform/SecondsText.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kLastBytesLimit = 3s;
/// The limit of a power switch after that of the whole run; the process is ended by force 30 s after.
constexpr std::chrono::milliseconds kSwitchLimit = 20s;
/// The terminal and a parent process may both pass on one Ctrl-C.
constexpr std::chrono::milliseconds kUntilSecondInterrupt = 1s;

/// Returns the first step after this one that uses the port; null if there is none.
const StepFacts* nextOnPort(const StepList& steps, std::size_t index) {
    while (++index < steps.size()) {
        if (steps[index].facts->usesPort)
            return steps[index].facts;
    }
    return nullptr;
}

} // namespace

Session::Session(const CliOptions& options, const ProgramFacts& facts, EventLoop& loop, Output& output,
                 std::shared_ptr<ImageStore> images)
    : m_options(options), m_facts(facts), m_ini(chooseIni(options.program.iniPath, facts)),
      m_images(std::move(images)), m_loop(loop), m_output(output), m_question(loop),
      m_messages(output, m_question), m_powerOnNotice(loop, output, options.limits, options.onWait),
      m_ports(loop, PortNames(options.program.ports),
              {.lineRate = options.program.lineRate, .dtr = options.dtr, .rts = options.rts}),
      m_tracedPorts(loop, m_ports),
      m_loader({loop, m_tracedPorts, m_messages, m_fileDialog, m_powerOnNotice}, m_ini.folder),
      m_progress(m_loader, output, m_messages), m_sent(m_loader, output),
      m_plan(m_loader, m_options.steps, m_ini, options.dtr.has_value()),
      m_runTimer(loop.createTimer([this] { runOut(); })) {
    m_loader.transfer.readThrough(m_images);
}

void Session::prepare(Remarks remarks) {
    m_loader.startUp.prepare(m_facts);
    m_loader.controls.cmbComPort.ListIndex = m_options.program.portNumber - 1;
    m_loader.activity.limitRate(m_options.program.lineRate.value_or(TransferRate::kLineBytesPerSecond));
    m_loader.controls.chkErase.Value = m_options.erase ? 1 : 0;
    m_loader.flash.limitAnswers(m_options.limits.flash);
    presetSlots(m_loader, m_plan, m_options, m_ini);
    if (remarks == Remarks::Tell) {
        const QStringList warnings = m_plan.warnings();
        for (const QString& line : warnings)
            m_output.tell(line, Severity::Warning);
    }
    m_plan.check();
    if (readImages())
        m_plan.check();
    if (const QString problem = Report::problem(m_options, inputs()); !problem.isEmpty() && !m_options.dryRun)
        throw UsageError(problem);
}

/// Reads the files: the board gets their present contents, even if they change later. Returns true if one has
/// another length than before.
bool Session::readImages() {
    bool changed = false;
    for (const Slot slot : m_plan.slotsToSend()) {
        const auto i = static_cast<std::size_t>(slot);
        const QString sizeBefore = m_loader.controls.lblCodeSize[i].Caption;
        QString size;
        try {
            size = ImageSlots::sizeText(m_images->image(m_loader.controls.txtFilNam[i].Tag).size());
        } catch (const RuntimeFailure& failure) {
            throw UsageError(failure.description());
        }
        m_loader.controls.lblCodeSize[i].Caption = size;
        changed = changed || size != sizeBefore;
    }
    return changed;
}

Ending Session::run() {
    const auto begin = m_loop.now();
    forgetBoard();
    if (++m_boards == 1)
        announce();
    if (m_options.dryRun)
        return ending(dryRun(), begin);
    if (m_boards == 1) {
        m_tracedPorts.whenOpened([this] { beginRecords(); });
        if (!m_plan.usesPort())
            beginRecords();
        m_loader.controls.txtStatus.onEdit(
            [this, times = AnswerTimes(m_loop, m_output)](qsizetype /*removed*/, const QString& inserted,
                                                          TextOrigin origin) mutable {
                m_output.console(inserted, origin);
                times.note(inserted, origin);
            });
    }
    startRunTimer();
    ExitStatus status = m_plan.usesPort() ? awaitPort() : ExitStatus::Done;
    if (status == ExitStatus::Done)
        status = runSteps();
    m_runTimer->stop();
    if (!m_options.repeat)
        endTrace();
    if (status == ExitStatus::Cancelled)
        m_output.tell(m_step.isEmpty()
                          ? QStringLiteral("Cancelled before the first step.")
                          : QStringLiteral("Cancelled in the step %1; the steps after it were not run. "
                                           "Cycle the board's power before the next load or flash.")
                                .arg(m_step));
    m_powerOnNotice.awaitSwitch(m_options.runEnd ? std::optional(*m_options.runEnd + kSwitchLimit)
                                                 : std::nullopt);
    return ending(status, begin);
}

void Session::forgetBoard() {
    m_output.beginBoard();
    m_begun = utcText();
    m_steps = {};
    m_step.clear();
    m_limitReached = false;
    m_runLimitText.clear();
    m_bytesBefore = m_loader.state.BytesSentInAll;
    for (auto& sent : m_loader.state.Sent)
        sent = std::nullopt;
    m_loader.state.PgSiblVersion = QString();
    if (!m_options.reportFile.isEmpty())
        m_adapter = adapterOf(m_output.place().port);
}

void Session::startRunTimer() {
    if (m_options.repeat && m_options.limits.run)
        m_runTimer->start(*m_options.limits.run);
    else if (m_options.runEnd)
        m_runTimer->start(
            std::max(1ms, std::chrono::ceil<std::chrono::milliseconds>(*m_options.runEnd - m_loop.now())));
}

bool Session::awaitBoard(bool old) {
    if (m_interruptedAt)
        return false;
    m_loader.state.withdrawStop();
    m_messages.askAgain();
    m_output.notice(QStringLiteral("Plug in a board and switch its power on. Ctrl-C ends."));
    m_loader.watch.awaitBoard(
        old,
        [this] {
            m_output.notice(
                QStringLiteral("The board still announces its BootID. Switch its power off for two "
                               "seconds; the next board begins after that."));
        },
        [this](const QString& why) { m_output.notice(why); });
    return m_loader.operation.outcome() == Outcome::Done && !m_interruptedAt;
}

QJsonObject Session::record() {
    QJsonArray images = imageFacts();
    const std::vector<Slot> slots = m_plan.slotsToSend();
    for (std::size_t i = 0; i < slots.size(); ++i) {
        const auto row = static_cast<qsizetype>(i);
        QJsonObject image = images[row].toObject();
        image.insert(QStringLiteral("sent"),
                     m_loader.state.Sent[static_cast<std::size_t>(slots[i])].value().has_value());
        images[row] = image;
    }
    if (m_adapter.value(QStringLiteral("serial")).toString().isEmpty()) // it may have come late
        m_adapter = adapterOf(m_output.place().port);
    return {{QStringLiteral("report"), 1},
            {QStringLiteral("version"), versionText()},
            {QStringLiteral("begin"), m_begun},
            {QStringLiteral("adapter"), m_adapter.value(QStringLiteral("adapter"))},
            {QStringLiteral("serial"), m_adapter.value(QStringLiteral("serial"))},
            {QStringLiteral("images"), images},
            {QStringLiteral("pg_sibl"), m_loader.state.PgSiblVersion.value()},
            {QStringLiteral("steps"), m_steps}};
}

/// Returns the files that this run reads, now or in one of its steps.
QStringList Session::inputs() const {
    QStringList files = filesToRead(m_loader);
    for (const StepCall& step : m_options.steps) {
        if (QLatin1String(step.facts->argument) == QLatin1String("FILE"))
            files += step.argument;
    }
    return files;
}

void Session::requireRecords(const QList<PlannedRecord>& records) const {
    if (const QString problem = recordsProblem(records, inputs()); !problem.isEmpty())
        throw UsageError(problem);
}

/// Runs after the port is open: a run on a port in use must leave the other run's records alone.
void Session::beginRecords() {
    if (m_recordsBegun)
        return;
    m_output.beginTranscript(inputs());
    if (!m_options.traceFile.isEmpty())
        m_tracedPorts.startTrace({m_options.traceFile, inputs(), OldRecord::Continue},
                                 [this](const QString& why) { m_output.tell(why, Severity::Warning); });
    m_recordsBegun = true;
}

/// Ends the trace with the port's end in it, before the result is printed.
void Session::endTrace() {
    if (!m_tracedPorts.isTracing())
        return;
    m_loader.port.CloseComPort();
    m_tracedPorts.stopTrace();
}

/// Reads each image for its CRC-32, which takes a while: for those who see it, and once for all boards.
const QJsonArray& Session::imageFacts() {
    if (m_imageFacts.isEmpty())
        m_imageFacts = imagesOf(m_loader, m_plan.slotsToSend(), *m_images);
    return m_imageFacts;
}

void Session::announce() {
    if (m_output.isJson())
        m_output.event("plan", {{QStringLiteral("com"), m_loader.controls.cmbComPort.selectedItemData()},
                                {QStringLiteral("dry_run"), m_options.dryRun},
                                {QStringLiteral("erase"), m_options.erase},
                                {QStringLiteral("steps"), stepsToDo(m_options.steps)},
                                {QStringLiteral("images"), imageFacts()}});
    m_output.recordMessage(
        QStringLiteral("zrk-loader-cli %1, steps: %2").arg(versionText(), m_plan.stepsText()));
    const QStringList lines = m_options.dryRun ? QStringList() : m_plan.announcement();
    for (const QString& line : lines)
        m_output.notice(line);
}

/// Makes the checks of a run before it sends, and nothing else.
ExitStatus Session::dryRun() {
    QStringList lines = m_plan.announcement();
    lines += QStringLiteral("Steps: ") + m_plan.stepsText();
    ExitStatus status = ExitStatus::Done;
    if (m_plan.usesPort()) {
        const PortNames names(m_options.program.ports);
        const int number = m_options.program.portNumber;
        const QString problem = portProblem(names, number);
        lines += QStringLiteral("Port: ") + (problem.isEmpty() ? portRemark(names, number) : problem);
        const QString notice = m_ports.notice(number); // a run prints it with the first opening
        if (problem.isEmpty() && !notice.isEmpty())
            m_output.tell(notice);
        if (!problem.isEmpty() && m_options.limits.waitPort && m_ports.isThere(number) == false) {
            lines += QStringLiteral("The run waits for the port (--wait-port).");
        } else if (!problem.isEmpty()) {
            m_output.tell(QStringLiteral("Port: ") + problem);
            status = ExitStatus::PortNotOpened;
        }
    }
    if (m_plan.checksAddresses()) {
        const bool valid = m_loader.validation.ValidateAddresses();
        lines += valid ? QStringLiteral("Addresses: in range, no images overlap")
                       : QStringLiteral("Addresses: wrong");
        if (!valid)
            status = ExitStatus::Usage;
    }
    for (const QString& problem :
         {recordsProblem(recordsOf(m_options), inputs()), Report::problem(m_options, inputs())}) {
        if (problem.isEmpty())
            continue;
        m_output.tell(problem);
        status = ExitStatus::Usage;
    }
    lines += QStringLiteral("Nothing was sent.");
    m_output.console(lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n"));
    return status;
}

/// Switches the power if there is no port, as for a board that feeds its own adapter.
ExitStatus Session::bringPort() {
    if (m_options.onWait.isEmpty() || m_ports.isThere(m_options.program.portNumber).value_or(true))
        return ExitStatus::Done;
    const auto isStopped = [this] { return m_loader.state.StopReason != Outcome::Done; };
    if (m_powerOnNotice.switchPower(isStopped))
        return ExitStatus::Done;
    tellRunLimit();
    return isStopped() ? exitStatusOf(m_loader.state.StopReason) : ExitStatus::PowerNotSwitched;
}

ExitStatus Session::awaitPort() {
    if (!m_options.limits.waitPort)
        return ExitStatus::Done;
    if (const ExitStatus status = bringPort(); status != ExitStatus::Done)
        return status;
    m_loader.listener.openPort(m_options.limits.waitPort);
    const Outcome outcome = m_loader.operation.outcome();
    if (outcome != Outcome::PortNotOpened) {
        tellRunLimit();
        return exitStatusOf(outcome);
    }
    m_output.noteLimit(QStringLiteral("wait-port"));
    m_output.tell(QStringLiteral("--wait-port %1 ran out: %2")
                      .arg(secondsText(*m_options.limits.waitPort), m_loader.operation.failure()));
    return ExitStatus::PortNotOpened;
}

ExitStatus Session::runSteps() {
    for (std::size_t i = 0; i < m_options.steps.size(); ++i) {
        const ExitStatus status = runStep(i);
        if (status != ExitStatus::Done)
            return status;
    }
    return letOutLastBytes();
}

ExitStatus Session::runStep(std::size_t index) {
    const StepCall& call = m_options.steps[index];
    if (m_loader.state.StopReason == Outcome::Cancelled)
        return ExitStatus::Cancelled;
    if (m_limitReached) {
        tellRunLimit();
        return ExitStatus::NoAnswer;
    }
    m_step = QString::fromLatin1(call.facts->name);
    if (!call.facts->awaitsProgram)
        m_loader.state.HeardBehind.clear(); // a script's rest comes from the program before
    m_output.stepBegins(m_step);
    const auto begin = m_loop.now();
    const StepFacts* next = nextOnPort(m_options.steps, index);
    const ExitStatus status =
        call.facts->run({m_loader, m_output, m_options, call.argument, next, m_limitReached});
    const QString lineErrors = std::exchange(m_loader.state.LineErrorsText, {});
    if (!lineErrors.isEmpty())
        m_output.tell(lineErrors, Severity::Warning);
    explain(status, *call.facts);
    const Ending end = ending(status, begin);
    m_output.detail(
        QStringLiteral("Step %1: %2 after %3 s").arg(m_step, end.reason).arg(end.seconds, 0, 'f', 3));
    m_output.stepEnds(end);
    m_steps.append(QJsonObject{{QStringLiteral("step"), end.step},
                               {QStringLiteral("argument"), call.argument},
                               {QStringLiteral("seconds"), end.seconds},
                               {QStringLiteral("status"), end.status}});
    return status;
}

void Session::explain(ExitStatus status, const StepFacts& step) {
    if (status == ExitStatus::Done || status == ExitStatus::Usage)
        return;
    tellRunLimit();
    const QString sentence = endSentence(m_loader, step);
    if (!sentence.isEmpty())
        m_output.tell(sentence);
}

void Session::tellRunLimit() {
    if (!m_runLimitText.isEmpty())
        m_output.tell(std::exchange(m_runLimitText, {}));
}

ExitStatus Session::letOutLastBytes() {
    const bool gone = m_loader.transport.letOut(kLastBytesLimit, kLastBytesLimit);
    if (m_loader.state.StopReason == Outcome::Cancelled)
        return ExitStatus::Cancelled;
    if (gone)
        return ExitStatus::Done;
    const QString hint = otherUserHint(m_loader);
    m_output.tell(QStringLiteral("The last bytes did not leave the port; %1")
                      .arg(hint.isEmpty() ? QStringLiteral("check the cable and the board.") : hint));
    return ExitStatus::PortLost;
}

Ending Session::ending(ExitStatus status, EventLoop::TimePoint since) const {
    Ending ending{
        static_cast<int>(status),
        reasonOf(status, m_loader.operation.outcome()),
        m_step,
        static_cast<double>(std::chrono::round<std::chrono::milliseconds>(m_loop.now() - since).count()) /
            1000.0,
        m_loader.state.BytesSentInAll - m_bytesBefore,
        m_output.limit()};
    ending.text = m_output.errors();
    if (status == ExitStatus::Done || ending.text.isEmpty())
        ending.text = m_options.dryRun ? QStringLiteral("Nothing was sent.") : closingText(ending);
    return ending;
}

void Session::runOut() {
    m_runTimer->stop();
    m_limitReached = true;
    m_output.noteLimit(QStringLiteral("timeout"));
    const QString doing = m_loader.controls.staStatus.FirstPanel;
    m_messages.answerSilently();
    m_question.withdraw();
    m_loader.state.requestStop(Outcome::LimitReached);
    m_loader.port.giveUpOpening();
    m_runLimitText = QStringLiteral("The run took longer than --timeout %1. It was at: %2")
                         .arg(secondsText(*m_options.limits.run), doing.isEmpty() ? m_step : doing);
}

void Session::interrupt(Interrupt how) {
    const auto now = m_loop.now();
    if (how != Interrupt::End && m_interruptedAt && now - *m_interruptedAt >= kUntilSecondInterrupt)
        m_powerOnNotice.endSwitch();
    if (!m_interruptedAt || now - *m_interruptedAt >= kUntilSecondInterrupt)
        m_interruptedAt = now;
    if (how != Interrupt::Asking)
        m_messages.stopAsking();
    m_loader.state.noteStop(Outcome::Cancelled);
    m_question.withdraw();
    m_loader.portControl.cmdCancel_Click();
}

} // namespace zrk
