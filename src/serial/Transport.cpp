#include "serial/Transport.h"

#include "serial/ComPort.h"
#include "serial/StatusConsole.h"

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kSentStatusInterval = 250ms;
constexpr std::chrono::milliseconds kReplyInterval = 5000ms;
constexpr std::chrono::milliseconds kReplyIntervalDebug = 10000ms;
constexpr qsizetype kRoomForClosingBytes = 16;
constexpr std::chrono::milliseconds kLetOutLook = 5ms;

/// Returns "'R' (0x52)", or "0x00" for an unprintable byte.
QString byteText(std::uint8_t byte) {
    QString code = QStringLiteral("0x") + QStringLiteral("%1").arg(byte, 2, 16, QLatin1Char('0')).toUpper();
    constexpr std::uint8_t kFirstVisible = 0x21;
    constexpr std::uint8_t kLastVisible = 0x7E;
    if (byte < kFirstVisible || byte > kLastVisible)
        return code;
    return QStringLiteral("'%1' (%2)").arg(QLatin1Char(static_cast<char>(byte))).arg(code);
}

} // namespace

Transport::Transport(Desk& desk, ComPort& port, StatusConsole& console)
    : m_desk(desk), m_port(port), m_console(console),
      m_timTimeOut(desk.loop.createTimer([this] { timTimeOut_Timer(); })),
      m_timSentStatus(desk.loop.createTimer([this] { tickSentStatus(); })),
      m_replyInterval(kReplyIntervalDebug) {}

void Transport::SendString(const QString& text) {
    m_desk.state.LastSent = QLatin1Char('\'') + text + QLatin1Char('\'');
    if (!m_desk.state.DebugMode)
        m_port.Output(text);
}

void Transport::SendByte(std::uint8_t byte) {
    if (!m_desk.state.DebugMode)
        m_port.Output(static_cast<char>(byte));
}

QString Transport::ReadChar() {
    // The first pass takes what is already there; the later ones sleep until an event comes.
    m_desk.loop.yield();
    while (!m_desk.state.CancelRequested && m_port.InBufferCount() < 1)
        m_desk.loop.wait();
    if (m_desk.state.CancelRequested)
        return QString(QChar(u'\0'));
    return m_port.Input().left(1);
}

bool Transport::ExpectChar(const QString& expected) {
    m_desk.state.LastChar = ReadChar();
    m_console.PrintAnswer(m_desk.state.LastChar);
    if (expected == m_desk.state.LastChar)
        return true;
    noteUnexpected(static_cast<std::uint8_t>(expected.at(0).unicode()), m_desk.state.LastChar);
    m_console.PrintStatus(QStringLiteral("invalid character received! Cancelling./n"));
    return false;
}

void Transport::noteUnexpected(std::uint8_t expected, const QString& got) {
    if (!m_desk.state.CancelRequested)
        m_desk.state.WrongAnswer =
            QStringLiteral("Expected %1, got %2.")
                .arg(byteText(expected), byteText(static_cast<std::uint8_t>(got.at(0).unicode())));
    else if (m_desk.state.StopReason == Outcome::TimedOut)
        m_desk.state.Unanswered += QStringLiteral(" Expected %1.").arg(byteText(expected));
}

void Transport::ArmReplyTimer(bool enable) {
    if (!enable) {
        m_timTimeOut->stop();
        return;
    }
    m_replyInterval = m_desk.state.DebugMode ? kReplyIntervalDebug : kReplyInterval;
    m_timTimeOut->start(m_replyInterval);
}

bool Transport::hasRoom() {
    return m_desk.state.DebugMode || m_port.transmitRoom() > kRoomForClosingBytes;
}

bool Transport::letOut(std::chrono::milliseconds limit, std::chrono::milliseconds stall) {
    const auto end = m_desk.loop.now() + limit;
    const auto timer = m_desk.loop.wakeEvery(kLetOutLook);
    auto lastProgress = m_desk.loop.now();
    qsizetype unsent = m_port.unsentBytes();
    while (unsent > 0 && m_desk.loop.now() < end && m_desk.loop.now() - lastProgress < stall) {
        m_desk.loop.wait();
        const qsizetype now = m_port.unsentBytes();
        if (now < unsent)
            lastProgress = m_desk.loop.now();
        unsent = now;
    }
    return unsent == 0 && !m_port.isLost();
}

void Transport::timTimeOut_Timer() {
    m_desk.state.requestStop(Outcome::TimedOut);
    // The timer goes on ticking during its own box; one box is enough.
    if (m_timeOutBoxOpen)
        return;
    m_timeOutBoxOpen = true;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(m_replyInterval).count();
    const QString unheard = m_desk.state.LastSent.isEmpty()
                                ? QStringLiteral("No response from the board")
                                : QStringLiteral("No answer to %1").arg(m_desk.state.LastSent);
    m_desk.state.Unanswered = QStringLiteral("%1 within %2 s.").arg(unheard).arg(seconds);
    m_desk.tell(QStringLiteral("No valid serial response received within  %1 second\r\n"
                               "Aborting operation")
                    .arg(seconds),
                MessageIcon::Exclamation, QStringLiteral("TimeOut"));
    m_timeOutBoxOpen = false;
}

void Transport::enableSentStatus(bool enable) {
    if (enable)
        m_timSentStatus->start(kSentStatusInterval);
    else
        m_timSentStatus->stop();
}

void Transport::tickSentStatus() {
    // A port that failed during a transfer leaves the display running; it must not overwrite what comes after
    // the operation.
    if (m_desk.state.OperationActive)
        timSentStatus_Timer();
    else
        enableSentStatus(false);
}

void Transport::timSentStatus_Timer() {
    m_desk.controls.staStatus.SecondPanel =
        QStringLiteral("bytes sent %1 / %2").arg(m_desk.state.BytesSent).arg(m_desk.state.BytesTotal);
    m_desk.controls.pgbDownload.Value =
        m_desk.state.BytesTotal > 0
            ? static_cast<double>(m_desk.state.BytesSent) / m_desk.state.BytesTotal * 100.0
            : 100.0;
}

} // namespace zrk
