#include "boot/WaitDialog.h"

#include "boot/WaitDialogView.h"
#include "platform/RuntimeFailure.h"
#include "serial/ComPort.h"
#include "serial/ConsoleKeys.h"
#include "serial/StatusConsole.h"
#include "serial/Transport.h"

namespace zrk {
namespace {

/// Hides the view on every way out, a port failure included.
class ShownView {
  public:
    ShownView(WaitDialogView& view, WaitDialog& dialog) : m_view(view) { m_view.show(dialog); }
    ~ShownView() { m_view.hide(); }
    ShownView(const ShownView&) = delete;
    ShownView& operator=(const ShownView&) = delete;

  private:
    WaitDialogView& m_view;
};

} // namespace

WaitDialog::WaitDialog(SharedState& state, StatusConsole& console, Transport& transport, ComPort& port,
                       ConsoleKeys& keys, WaitDialogView& view)
    : m_state(state), m_console(console), m_transport(transport), m_port(port), m_keys(keys), m_view(view) {
    CancelButton.Caption = QStringLiteral("Cancel");
    cmdOut.Caption = QStringLiteral("Debug Send String:");
    txtOut.Text = QStringLiteral("4");
}

void WaitDialog::showModal() {
    Form_Load();
    const ShownView shown(m_view, *this);
    const WaitNote note = m_transport.noteWait(QStringLiteral("Waiting for the board's power-on"));
    Form_Activate();
    Form_Unload();
}

void WaitDialog::Form_Load() {
    m_state.withdrawStop();
    m_BootIdSeen = false;
    lblMsg.Caption = QStringLiteral("Cycle power off/on on the ZRK6924 demo board, \r\n"
                                    "Make sure that service jumper is installed\r\n\r\n"
                                    "Waiting for Boot_ID from ZRK6924....");
}

void WaitDialog::Form_Activate() {
    do {
        m_state.LastChar = m_transport.ReadChar();
        m_console.PrintStatus(m_state.LastChar);
    } while (m_state.LastChar != QLatin1String("5") && !m_state.CancelRequested);
    if (!m_state.CancelRequested)
        m_BootIdSeen = true;
}

void WaitDialog::CancelButton_Click() {
    m_state.requestStop(Outcome::Cancelled);
}

void WaitDialog::giveUp() {
    m_state.requestStop(Outcome::LimitReached);
}

void WaitDialog::cmdOut_Click() {
    m_state.DebugMode = true;
    try {
        m_port.Output(txtOut.Text);
    } catch (const RuntimeFailure& failure) {
        m_console.PrintPlain(QStringLiteral("\r\n") + failure.description() + QStringLiteral("\r\n"));
    }
}

void WaitDialog::Form_KeyDown(int keyCode, bool alt, bool shift, bool control) {
    m_keys.txtStatus_KeyDown(keyCode, alt, shift, control);
}

void WaitDialog::Form_Unload() {
    if (!m_BootIdSeen)
        m_state.requestStop(Outcome::Cancelled);
}

} // namespace zrk
