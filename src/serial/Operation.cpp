#include "serial/Operation.h"

#include "platform/SecondsText.h"
#include "serial/ComPort.h"
#include "serial/OutcomeSentence.h"
#include "serial/StatusConsole.h"
#include "serial/Transport.h"

#include <QScopeGuard>
#include <QScopedValueRollback>

#include <utility>

namespace zrk {

Operation::Operation(Desk& desk, ComPort& port, StatusConsole& console, Transport& transport)
    : m_desk(desk), m_port(port), m_console(console), m_transport(transport) {}

void Operation::run(const Plan& plan) {
    if (isRunning())
        return;
    const QScopedValueRollback running(m_running, true);
    const Report how =
        plan.report != Report::Nothing && m_desk.state.DebugMode ? Report::InConsole : plan.report;
    m_desk.state.StopReason = Outcome::Done;
    m_failure.clear();
    m_desk.state.LineErrorsText.clear();
    m_desk.state.OtherLength.clear(); // also if it never begins, as the start of a program
    m_watchesLine = false;
    const auto told = qScopeGuard([&] {
        tellLineErrors();
        remark(plan);
    });
    if (carryOut(plan, how) == End::Abort)
        plan.abort();
}

Operation::End Operation::carryOut(const Plan& plan, Report how) {
    try {
        const End end = plan.body();
        m_outcome = endedBy(end);
        return end;
    } catch (const RuntimeFailure& failure) {
        report(failure, how);
    } catch (const std::exception& error) { // out of memory, for example
        report({FailureKind::Internal, QString::fromLocal8Bit(error.what())}, how);
    }
    return End::Abort;
}

void Operation::remark(const Plan& plan) const {
    if (!plan.achievement)
        return;
    const auto since = m_desk.state.SendingSince.value_or(m_desk.loop.now());
    const auto time = std::chrono::round<std::chrono::seconds>(m_desk.loop.now() - since);
    m_desk.state.Remark = m_outcome == Outcome::Done
                              ? StatusRemark{plan.achievement(durationText(time)), RemarkSeverity::Done}
                              : StatusRemark{outcomeSentence(m_outcome, m_desk.state, m_failure),
                                             m_outcome == Outcome::Cancelled ? RemarkSeverity::Warning
                                                                             : RemarkSeverity::Failed};
}

void Operation::watchLine() {
    if (!std::exchange(m_watchesLine, true))
        m_port.countLineErrors();
}

void Operation::tellLineErrors() {
    if (m_watchesLine)
        m_desk.state.LineErrorsText = m_port.lineErrors().text();
}

void Operation::runMarked(const std::function<End()>& body) {
    const auto marked = [&] {
        begin();
        const End end = body();
        finish();
        return end;
    };
    run({marked, [this] { finish(); }, Report::Nothing});
}

void Operation::begin() {
    m_desk.state.OperationActive = true;
    m_desk.state.withdrawStop();
    m_desk.state.FlashStateUnknown = false;
    m_desk.state.WrongAnswer.clear();
    m_desk.state.Remark = {};
    m_desk.state.Unanswered.clear();
    m_desk.state.LastSent.clear();
    m_desk.state.SendingSince.reset();
    m_desk.state.BytesSent = 0;
    m_desk.state.BytesTotal = 0;
    m_desk.state.Images = {};
    // A port that failed during a transfer left its progress display running.
    m_transport.enableSentStatus(false);
}

void Operation::finish() {
    m_desk.state.OperationActive = false;
    m_desk.state.Images = {};
}

void Operation::abort(CommandButton& startButton) {
    m_port.CloseComPort();
    m_console.PrintStatus(QStringLiteral("/n--- Cancel download, closing port ---/n"));
    m_transport.ArmReplyTimer(false);
    finish();
    startButton.Enabled = true;
}

Outcome Operation::endedBy(End end) const {
    switch (end) {
    case End::Done:
        return m_desk.state.OtherLength.isEmpty() ? Outcome::Done : Outcome::File;
    case End::Rejected:
        return Outcome::Rejected;
    case End::Stopped:
    case End::Abort:
        break;
    }
    return m_desk.state.StopReason == Outcome::Done ? Outcome::WrongAnswer : m_desk.state.StopReason;
}

/// Returns the outcome. The first reason counts: a closing window closes the port during the operation, and
/// an answer that a cancel cuts off is not a wrong one.
Outcome Operation::failedBy(FailureKind kind) const {
    const bool effectOfTheStop = kind != FailureKind::PortNotOpened && kind != FailureKind::PortLost;
    return effectOfTheStop && m_desk.state.StopReason != Outcome::Done ? m_desk.state.StopReason
                                                                       : outcomeOf(kind);
}

void Operation::fail(Outcome why, const QString& description) {
    m_desk.state.noteStop(why);
    throw RuntimeFailure(FailureKind::WrongAnswer, description);
}

void Operation::report(const RuntimeFailure& failure, Report how) {
    m_outcome = failedBy(failure.kind());
    m_failure = failure.description();
    // A wait that ended in a failure must not time out while its message is being read.
    m_transport.ArmReplyTimer(false);
    switch (how) {
    case Report::DownloadProblem:
        return showPortError(m_desk, m_port.CommPort(), PortErrorHint::OtherDownload, failure);
    case Report::IoProblem:
        return showPortError(m_desk, m_port.CommPort(), PortErrorHint::OtherIo, failure);
    case Report::InConsole:
        return m_console.PrintPlain(QStringLiteral("\r\n") + failure.description());
    case Report::Nothing:
        return;
    }
}

} // namespace zrk
