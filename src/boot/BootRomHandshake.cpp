#include "boot/BootRomHandshake.h"

#include "boot/WaitDialog.h"

namespace zrk {

BootRomHandshake::BootRomHandshake(Link& link, WaitDialogView& view) : m_link(link), m_view(view) {}

bool BootRomHandshake::run() {
    if (!waitForBootId())
        return false;
    m_link.transport.ArmReplyTimer(true);
    m_link.console.PrintStatus(QStringLiteral("Sending 'A' .. "));
    // A board repeats its announcement until it is answered. Announcements that came before a late answer
    // must not count as its reply, and are not shown again. With the protocols muted the user answers by
    // hand, and what lies there is a reply.
    if (!m_link.state.DebugMode)
        m_link.port.skip('5');
    m_link.transport.SendString(QStringLiteral("A"));
    m_link.console.PrintStatus(QStringLiteral("done!/n"));

    m_link.console.PrintStatus(QStringLiteral("Expect 2-nd BootId .. "));
    if (!m_link.transport.ExpectChar(QStringLiteral("5")))
        return false;
    m_link.console.PrintStatus(QStringLiteral(" .. found!/n"));

    m_link.console.PrintStatus(QStringLiteral("Sending 'U','3'.. "));
    m_link.transport.SendString(QStringLiteral("U"));
    m_link.transport.SendString(QStringLiteral("3"));
    m_link.console.PrintStatus(QStringLiteral("done!/n"));

    m_link.console.PrintStatus(QStringLiteral("Expect 'R' .. "));
    if (!m_link.transport.ExpectChar(QStringLiteral("R")))
        return false;
    m_link.console.PrintStatus(QStringLiteral(" .. found!/n"));
    m_link.transport.ArmReplyTimer(false);
    return true;
}

bool BootRomHandshake::waitForBootId() {
    m_link.console.PrintStatus(QStringLiteral("Waiting for BootID .. "));
    // Loading the dialog clears old requests; one that came since the operation began must not be lost.
    if (!m_link.state.CancelRequested) {
        WaitDialog dialog(m_link, m_view);
        dialog.showModal();
    }
    if (m_link.state.CancelRequested) {
        m_link.console.PrintStatus(QStringLiteral("cancelled!/n"));
        return false;
    }
    m_link.console.PrintStatus(QStringLiteral(" .. found!/n"));
    return true;
}

} // namespace zrk
