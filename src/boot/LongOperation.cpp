#include "boot/LongOperation.h"

#include "serial/ComPort.h"
#include "serial/PortErrors.h"
#include "serial/StatusConsole.h"
#include "serial/Transport.h"

namespace zrk {

LongOperation::LongOperation(SharedState& state, ComPort& port, StatusConsole& console, Transport& transport,
                             MessageBoxes& boxes)
    : m_state(state), m_port(port), m_console(console), m_transport(transport), m_boxes(boxes) {}

void LongOperation::run(const std::function<End()>& body, const std::function<void()>& abort) {
    // An operation can be reached again from its own message boxes before it has marked itself.
    if (m_running || m_state.OperationActive)
        return;
    m_running = true;
    const bool handlerInstalled = !m_state.DebugMode;
    try {
        switch (body()) {
        case End::Done:
            m_outcome = Outcome::Done;
            break;
        case End::Rejected:
            m_outcome = Outcome::Rejected;
            break;
        case End::Stopped:
            m_outcome = Outcome::Cancelled;
            break;
        case End::Abort:
            m_outcome = abortedOutcome();
            abort();
            break;
        }
    } catch (const RuntimeFailure& failure) {
        m_outcome = failedOutcome(failure.kind());
        reportFailure(failure, handlerInstalled);
        abort();
    } catch (const std::exception& error) { // out of memory, for one
        m_outcome = Outcome::Failed;
        reportFailure({FailureKind::File, QString::fromLocal8Bit(error.what())}, handlerInstalled);
        abort();
    }
    m_running = false;
}

void LongOperation::begin() {
    m_state.OperationActive = true;
    m_state.CancelRequested = false;
    m_transport.forgetTimeOut();
    // A port that failed under a transfer left its progress display running.
    m_transport.enableSentStatus(false);
}

void LongOperation::finish() {
    m_state.OperationActive = false;
}

void LongOperation::abort(CommandButton& startButton) {
    m_port.CloseComPort();
    m_console.PrintStatus(QStringLiteral("/n--- Cancel download, closing port ---/n"));
    m_transport.ArmReplyTimer(false);
    finish();
    startButton.Enabled = true;
}

void LongOperation::reportFailure(const RuntimeFailure& failure, bool handlerInstalled) {
    // A wait that ended in a failure must not run out while its message is being read.
    m_transport.ArmReplyTimer(false);
    if (handlerInstalled)
        showPortError(m_state, m_boxes, m_port.CommPort(), PortErrorHint::OtherDownload, failure);
    else
        m_console.PrintPlain(QStringLiteral("\r\n") + failure.description());
}

Outcome LongOperation::abortedOutcome() const {
    if (m_transport.replyTimedOut())
        return Outcome::NoAnswer;
    return m_state.CancelRequested ? Outcome::Cancelled : Outcome::WrongAnswer;
}

Outcome LongOperation::failedOutcome(FailureKind kind) const {
    // Before the operation has begun the request is an older one's.
    const bool cancelled = m_state.OperationActive && m_state.CancelRequested;
    switch (kind) {
    case FailureKind::PortNotOpened:
        return Outcome::PortNotOpened;
    case FailureKind::PortLost:
        return Outcome::PortLost;
    case FailureKind::WrongAnswer:
        return cancelled ? Outcome::Cancelled : Outcome::WrongAnswer;
    default:
        // The closing window takes the port away under the operation, which is a cancel.
        return cancelled ? Outcome::Cancelled : Outcome::Failed;
    }
}

} // namespace zrk
