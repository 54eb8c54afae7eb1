#include "boot/BootRomHandshake.h"

#include "boot/WaitDialog.h"
#include "serial/ComPort.h"
#include "serial/StatusConsole.h"
#include "serial/Transport.h"

namespace zrk {

BootRomHandshake::BootRomHandshake(SharedState& state, StatusConsole& console, Transport& transport,
                                   ComPort& port, ConsoleKeys& keys, WaitDialogView& view)
    : m_state(state), m_console(console), m_transport(transport), m_port(port), m_keys(keys), m_view(view) {}

bool BootRomHandshake::run() {
    if (!waitForBootId())
        return false;
    m_transport.ArmReplyTimer(true);
    m_console.PrintStatus(QStringLiteral("Sending 'A' .. "));
    // A board announces itself until it is answered. What it said in the meantime, when we were late, must
    // not pass for its answer; it is the announcement once more, and not shown again. With the protocols
    // muted the user talks to the board by hand, and what lies there is an answer.
    if (!m_state.DebugMode)
        m_port.skip('5');
    m_transport.SendString(QStringLiteral("A"));
    m_console.PrintStatus(QStringLiteral("done!/n"));

    m_console.PrintStatus(QStringLiteral("Expect 2-nd BootId .. "));
    if (!m_transport.ExpectChar(QStringLiteral("5")))
        return false;
    m_console.PrintStatus(QStringLiteral(" .. found!/n"));

    m_console.PrintStatus(QStringLiteral("Sending 'U','3'.. "));
    m_transport.SendString(QStringLiteral("U"));
    m_transport.SendString(QStringLiteral("3"));
    m_console.PrintStatus(QStringLiteral("done!/n"));

    m_console.PrintStatus(QStringLiteral("Expect 'R' .. "));
    if (!m_transport.ExpectChar(QStringLiteral("R")))
        return false;
    m_console.PrintStatus(QStringLiteral(" .. found!/n"));
    m_transport.ArmReplyTimer(false);
    return true;
}

bool BootRomHandshake::waitForBootId() {
    m_console.PrintStatus(QStringLiteral("Waiting for BootID .. "));
    // Loading the dialog clears old requests; one that came since the operation began must not be lost.
    if (!m_state.CancelRequested) {
        WaitDialog dialog(m_state, m_console, m_transport, m_port, m_keys, m_view);
        dialog.showModal();
    }
    if (m_state.CancelRequested) {
        m_console.PrintStatus(QStringLiteral("cancelled!/n"));
        return false;
    }
    m_console.PrintStatus(QStringLiteral(" .. found!/n"));
    return true;
}

} // namespace zrk
