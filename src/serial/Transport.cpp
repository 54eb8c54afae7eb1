#include "serial/Transport.h"

#include "platform/MessageBoxes.h"
#include "serial/ComPort.h"
#include "serial/StatusConsole.h"

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kSentStatusInterval = 250ms;
constexpr std::chrono::milliseconds kReplyInterval = 5000ms;
constexpr std::chrono::milliseconds kReplyIntervalDebug = 10000ms;
constexpr qsizetype kRoomForClosingBytes = 16;
constexpr std::chrono::milliseconds kLetOutLimit = 2000ms;
constexpr std::chrono::milliseconds kLetOutStall = 300ms;
constexpr std::chrono::milliseconds kLetOutLook = 5ms;

} // namespace

Transport::Transport(SharedState& state, Controls& controls, ComPort& port, StatusConsole& console,
                     MessageBoxes& boxes, EventLoop& loop)
    : m_state(state), m_controls(controls), m_port(port), m_console(console), m_boxes(boxes), m_loop(loop),
      m_timTimeOut(loop.createTimer([this] { timTimeOut_Timer(); })),
      m_timSentStatus(loop.createTimer([this] { tickSentStatus(); })), m_replyInterval(kReplyIntervalDebug) {}

void Transport::SendString(const QString& text) {
    if (!m_state.DebugMode)
        m_port.Output(text);
}

void Transport::SendByte(std::uint8_t byte) {
    if (!m_state.DebugMode)
        m_port.Output(static_cast<char>(byte));
}

QString Transport::ReadChar() {
    // The first pass takes what is already there; the later ones sleep until something happens.
    m_loop.yield();
    while (!m_state.CancelRequested && m_port.InBufferCount() < 1)
        m_loop.wait();
    if (m_state.CancelRequested)
        return QString(QChar(u'\0'));
    return m_port.Input().left(1);
}

bool Transport::ExpectChar(const QString& expected) {
    m_state.LastChar = ReadChar();
    m_console.PrintStatus(m_state.LastChar);
    if (expected == m_state.LastChar)
        return true;
    m_console.PrintStatus(QStringLiteral("invalid character received! Cancelling./n"));
    return false;
}

void Transport::ArmReplyTimer(bool enable) {
    if (!enable) {
        m_timTimeOut->stop();
        return;
    }
    m_replyInterval = m_state.DebugMode ? kReplyIntervalDebug : kReplyInterval;
    m_timTimeOut->start(m_replyInterval);
}

bool Transport::hasRoom() {
    return m_state.DebugMode || m_port.transmitRoom() > kRoomForClosingBytes;
}

void Transport::letOut() {
    const auto end = m_loop.now() + kLetOutLimit;
    const auto timer = m_loop.createTimer([] {});
    timer->start(kLetOutLook);
    auto lastProgress = m_loop.now();
    qsizetype unsent = m_port.unsentBytes();
    while (unsent > 0 && m_loop.now() < end && m_loop.now() - lastProgress < kLetOutStall) {
        m_loop.wait();
        const qsizetype now = m_port.unsentBytes();
        if (now < unsent)
            lastProgress = m_loop.now();
        unsent = now;
    }
}

void Transport::timTimeOut_Timer() {
    m_state.requestStop(Outcome::TimedOut);
    // The timer goes on ticking under its own open box; one box says it all.
    if (m_timeOutBoxOpen)
        return;
    m_timeOutBoxOpen = true;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(m_replyInterval).count();
    m_state.MessageText = QStringLiteral("No valid serial response received within  %1 second\r\n"
                                         "Aborting operation")
                              .arg(seconds);
    (void)m_boxes.show(
        {m_state.MessageText, MessageIcon::Exclamation, MessageButtons::Ok, QStringLiteral("TimeOut")});
    m_timeOutBoxOpen = false;
}

void Transport::enableSentStatus(bool enable) {
    if (enable)
        m_timSentStatus->start(kSentStatusInterval);
    else
        m_timSentStatus->stop();
}

void Transport::tickSentStatus() {
    // A port that failed under a transfer leaves the display running; it must not write over what
    // comes after the operation.
    if (m_state.OperationActive)
        timSentStatus_Timer();
    else
        enableSentStatus(false);
}

void Transport::timSentStatus_Timer() {
    m_controls.staStatus.SecondPanel =
        QStringLiteral("bytes sent %1 / %2").arg(m_state.BytesSent).arg(m_state.BytesTotal);
    m_controls.pgbDownload.Value =
        m_state.BytesTotal > 0 ? static_cast<double>(m_state.BytesSent) / m_state.BytesTotal * 100.0 : 100.0;
}

} // namespace zrk
