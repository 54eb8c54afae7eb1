#include "serial/ConsoleKeys.h"

#include "platform/RuntimeFailure.h"
#include "serial/ComPort.h"
#include "serial/PortErrors.h"

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr int kKeyB = 66;
constexpr std::chrono::milliseconds kPulse = 100ms;
constexpr std::chrono::milliseconds kPumpInterval = 10ms;
constexpr ushort kHighestCode = 0xFF;

} // namespace

ConsoleKeys::ConsoleKeys(Desk& desk, ComPort& port)
    : m_desk(desk), m_port(port), m_pump(desk.loop.createTimer([this] { pump(); })) {}

void ConsoleKeys::txtStatus_KeyDown(int keyCode, bool alt, bool shift, bool control) {
    if (keyCode == kKeyB && alt && !shift && !control)
        PulseDtr();
}

int ConsoleKeys::txtStatus_KeyPress(int character) {
    if (character >= 0 && character <= kHighestCode)
        send(QByteArray(1, static_cast<char>(character)));
    return 0;
}

void ConsoleKeys::paste(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\r"));
    lines.replace(QLatin1Char('\n'), QLatin1Char('\r'));
    lines.removeIf([](QChar c) { return c.unicode() > kHighestCode; });
    send(lines.toLatin1());
}

void ConsoleKeys::send(const QByteArray& bytes) {
    if (!m_desk.state.TerminalMode || !m_port.isOpen())
        return;
    m_typedAhead += bytes;
    pump();
}

void ConsoleKeys::pump() {
    try {
        if (!m_desk.state.TerminalMode || !m_port.isOpen())
            m_typedAhead.clear();
        const qsizetype piece = m_typedAhead.isEmpty() ? 0 : qMin(m_port.transmitRoom(), m_typedAhead.size());
        if (piece > 0) {
            m_port.Output(QString::fromLatin1(m_typedAhead.first(piece)));
            m_typedAhead.remove(0, piece);
        }
    } catch (const RuntimeFailure&) {
        m_typedAhead.clear(); // the watch over the idle port reports the lost device
    }
    if (m_typedAhead.isEmpty())
        m_pump->stop();
    else if (!m_pump->isActive())
        m_pump->start(kPumpInterval);
}

void ConsoleKeys::PulseDtr() {
    if (m_pulsing || !m_port.isOpen())
        return;
    m_pulsing = true;
    try {
        (void)switchDtrOffAndOn();
    } catch (const RuntimeFailure& failure) {
        showPortError(m_desk, m_port.CommPort(), PortErrorHint::OtherIo, failure);
    }
    m_pulsing = false;
}

bool ConsoleKeys::switchDtrOffAndOn() {
    const bool isThere = m_port.setDtrEnable(false);
    const auto end = m_desk.loop.now() + kPulse;
    const auto timer = m_desk.loop.wakeEvery(kPulse);
    while (m_desk.loop.now() < end)
        m_desk.loop.wait();
    if (m_port.isOpen())
        m_port.setDtrEnable(true);
    return isThere;
}

void ConsoleKeys::cmdOutput_Click() {
    try {
        // In terminal mode the board may stop the line as long as it likes, so never block.
        const bool mustWait =
            !m_typedAhead.isEmpty() || m_port.transmitRoom() < m_desk.controls.txtOut.Text.value().size();
        if (m_desk.state.TerminalMode && mustWait && fitsOneByteCodes(m_desk.controls.txtOut.Text))
            send(m_desk.controls.txtOut.Text.value().toLatin1());
        else
            m_port.Output(m_desk.controls.txtOut.Text);
    } catch (const RuntimeFailure& failure) {
        showPortError(m_desk, m_port.CommPort(), PortErrorHint::OtherIo, failure);
    }
}

} // namespace zrk
