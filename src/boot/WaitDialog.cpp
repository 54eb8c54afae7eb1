#include "boot/WaitDialog.h"

#include "boot/WaitDialogView.h"
#include "platform/SecondsText.h"
#include "serial/BoardHint.h"
#include "serial/PatientOpening.h"

#include <QLocale>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr auto kHintAfter = 15s;

/// A guard that hides the view on every way out, a port failure included.
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

WaitDialog::WaitDialog(Link& link, WaitDialogView& view)
    : m_link(link), m_view(view), m_timer(link.loop.createTimer([this] { showSeen(); })),
      m_since(link.loop.now()) {
    CancelButton.Caption = QStringLiteral("Cancel");
    cmdOut.Caption = QStringLiteral("Debug Send String:");
    txtOut.Text = QStringLiteral("4");
}

void WaitDialog::showModal() {
    Form_Load();
    const ShownView shown(m_view, *this);
    const PendingWait note =
        m_link.transport.noteWait(Awaited::PowerOn, QStringLiteral("Waiting for the board's power-on"));
    m_timer->start(1s);
    Form_Activate();
    Form_Unload();
}

void WaitDialog::showSeen() {
    const auto waited = std::chrono::duration_cast<std::chrono::seconds>(m_link.loop.now() - m_since);
    const QString port = m_link.port.openedName();
    QString text = QStringLiteral("%1: %2, %3 byte%4 received.")
                       .arg(port, durationText(waited), QLocale().toString(m_received),
                            QLatin1String(m_received == 1 ? "" : "s"));
    const QString hint =
        waited < kHintAfter ? QString() : boardHint(Outcome::TimedOut, m_link.port.lastReceived(), port);
    if (!hint.isEmpty())
        text += QLatin1Char('\n') + hint;
    lblSeen.Caption = text;
}

void WaitDialog::Form_Load() {
    m_link.state.withdrawStop();
    m_BootIdSeen = false;
    lblMsg.Caption = QStringLiteral("Cycle power off/on on the ZRK6924 demo board, \r\n"
                                    "Make sure that service jumper is installed\r\n\r\n"
                                    "Waiting for Boot_ID from ZRK6924....");
    showSeen();
}

/// A board that feeds its own adapter takes the port away and brings it back when its power is cycled.
void WaitDialog::Form_Activate() {
    while (true) {
        try {
            showWhatDoesNotCount();
            return readUntilBootId();
        } catch (const RuntimeFailure& failure) {
            if (failure.kind() != FailureKind::PortLost || !reopen(failure.description()))
                throw;
        }
    }
}

bool WaitDialog::reopen(const QString& why) {
    const auto limit = m_view.reopeningLimit(why);
    if (!limit)
        return false;
    m_link.port.CloseComPort();
    (void)openWithin(m_link, limit);
    return true;
}

/// A board that is on announces itself all the time, and its power is about to be switched.
void WaitDialog::showWhatDoesNotCount() {
    bool counts = m_view.countsBootId();
    if (counts)
        return;
    while (!counts && !m_link.state.CancelRequested) {
        counts = m_view.countsBootId(); // not yet for what has come by now
        const QByteArray heard = m_link.port.receive();
        m_received += heard.size();
        if (!heard.isEmpty())
            m_link.console.PrintAnswer(QString::fromLatin1(heard));
        else if (!counts)
            m_link.loop.wait();
    }
}

void WaitDialog::readUntilBootId() {
    do {
        m_link.state.LastChar = m_link.transport.ReadChar();
        ++m_received;
        m_link.console.PrintAnswer(m_link.state.LastChar);
    } while (m_link.state.LastChar != QLatin1String("5") && !m_link.state.CancelRequested);
    if (!m_link.state.CancelRequested)
        m_BootIdSeen = true;
}

void WaitDialog::CancelButton_Click() {
    m_link.state.requestStop(Outcome::Cancelled);
}

void WaitDialog::giveUp(Outcome why) {
    m_link.state.requestStop(why);
}

void WaitDialog::cmdOut_Click() {
    m_link.state.DebugMode = true;
    try {
        m_link.port.Output(txtOut.Text);
    } catch (const RuntimeFailure& failure) {
        m_link.console.PrintPlain(QStringLiteral("\r\n") + failure.description() + QStringLiteral("\r\n"));
    }
}

void WaitDialog::Form_KeyDown(int keyCode, bool alt, bool shift, bool control) {
    m_link.keys.txtStatus_KeyDown(keyCode, alt, shift, control);
}

void WaitDialog::Form_Unload() {
    if (!m_BootIdSeen)
        m_link.state.requestStop(Outcome::Cancelled);
}

} // namespace zrk
