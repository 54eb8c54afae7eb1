#include "serial/ConsoleKeys.h"

#include "controls/Controls.h"
#include "platform/MessageBoxes.h"
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

ConsoleKeys::ConsoleKeys(SharedState& state, Controls& controls, ComPort& port, MessageBoxes& boxes,
                         EventLoop& loop)
    : m_state(state), m_controls(controls), m_port(port), m_boxes(boxes), m_loop(loop),
      m_pump(loop.createTimer([this] { pump(); })) {}

void ConsoleKeys::txtStatus_KeyDown(int keyCode, bool alt, bool shift, bool control) {
    if (keyCode == kKeyB && alt && !shift && !control)
        PulseDtr();
}

int ConsoleKeys::txtStatus_KeyPress(int character) {
    if (character >= 0 && character <= kHighestCode)
        sendTyped(QByteArray(1, static_cast<char>(character)));
    return 0;
}

void ConsoleKeys::paste(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\r"));
    lines.replace(QLatin1Char('\n'), QLatin1Char('\r'));
    lines.removeIf([](QChar c) { return c.unicode() > kHighestCode; });
    sendTyped(lines.toLatin1());
}

void ConsoleKeys::sendTyped(const QByteArray& bytes) {
    if (!m_state.TerminalMode || !m_port.isOpen())
        return;
    m_typedAhead += bytes;
    pump();
}

void ConsoleKeys::pump() {
    try {
        if (!m_state.TerminalMode || !m_port.isOpen())
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
    m_port.setDtrEnable(false);
    const auto end = m_loop.now() + kPulse;
    const auto timer = m_loop.createTimer([] {});
    timer->start(kPulse);
    while (m_loop.now() < end)
        m_loop.wait();
    if (m_port.isOpen())
        m_port.setDtrEnable(true);
    m_pulsing = false;
}

void ConsoleKeys::cmdOutput_Click() {
    try {
        // In terminal mode the board may stop the line for as long as it likes, so nothing may wait for it.
        if (m_state.TerminalMode && m_port.transmitRoom() < m_controls.txtOut.Text.value().size() &&
            fitsOneByteCodes(m_controls.txtOut.Text))
            sendTyped(m_controls.txtOut.Text.value().toLatin1());
        else
            m_port.Output(m_controls.txtOut.Text);
    } catch (const RuntimeFailure& failure) {
        showPortError(m_state, m_boxes, m_port.CommPort(), PortErrorHint::OtherIo, failure);
    }
}

} // namespace zrk
