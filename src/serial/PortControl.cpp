#include "serial/PortControl.h"

#include "platform/RuntimeFailure.h"
#include "serial/ComPort.h"
#include "serial/StatusConsole.h"
#include "serial/TerminalMode.h"

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kWatchInterval = 500ms;

} // namespace

PortControl::PortControl(Desk& desk, ComPort& port, StatusConsole& console, TerminalMode& terminal)
    : m_desk(desk), m_port(port), m_console(console), m_terminal(terminal),
      m_watch(desk.loop.createTimer([this] { watchIdlePort(); })) {
    m_watch->start(kWatchInterval);
}

void PortControl::cmdCancel_Click() {
    if (m_desk.state.OperationActive) {
        m_desk.state.requestStop(Outcome::Cancelled);
        m_port.giveUpOpening();
        return;
    }
    m_port.CloseComPort();
    m_console.PrintStatus(QStringLiteral("/n--- Closing port ---/n"));
    resetStartButtons();
    m_terminal.leave();
}

void PortControl::resetStartButtons() {
    if (!m_desk.controls.txtFilNam[0].Tag.value().isEmpty())
        m_desk.controls.cmdStartPrimary.Enabled = true;
    m_desk.controls.cmdURK.Enabled = false;
    m_desk.controls.cmdStartSecondary.Enabled = false;
}

int PortControl::Form_Unload() {
    m_desk.state.requestStop(Outcome::Cancelled);
    m_port.CloseComPort();
    return m_desk.state.OperationActive ? 1 : 0;
}

void PortControl::watchIdlePort() {
    m_isPulled = m_isPulled && m_desk.state.TerminalMode && !m_desk.state.OperationActive && !m_port.isOpen();
    if (m_isPulled)
        reopen();
    else if (!m_desk.state.OperationActive && m_port.isLost())
        closeLost();
}

void PortControl::closeLost() {
    if (m_desk.state.TerminalMode)
        m_terminal.timCommReceive_Timer(); // what arrived before the device went away is still shown
    QString end;
    try {
        (void)m_port.transmitRoom();
    } catch (const RuntimeFailure& failure) {
        end = failure.description() + QStringLiteral(" Port closed.");
    }
    m_port.CloseComPort();
    resetStartButtons();
    m_isPulled = m_desk.state.TerminalMode && m_port.openedDeviceIsThere().has_value();
    if (m_isPulled)
        end = QStringLiteral("%1 is gone. Port closed. When it is back, the terminal goes on.")
                  .arg(m_port.openedName());
    m_desk.state.Remark = {end, m_isPulled ? RemarkSeverity::Warning : RemarkSeverity::Failed};
    m_console.PrintPlain(QStringLiteral("\r\n--- ") + end + QStringLiteral(" ---\r\n"));
}

void PortControl::reopen() {
    if (!m_port.openedDeviceIsThere().value_or(false))
        return;
    try {
        m_port.OpenComPort();
    } catch (const RuntimeFailure&) {
        return; // the system may not have given it to the user's group yet
    }
    m_isPulled = false;
    m_desk.state.Remark = {};
    m_console.PrintPlain(QStringLiteral("\r\n--- %1 is back. Port open. ---\r\n").arg(m_port.openedName()));
}

} // namespace zrk
