#include "cli/TerminalBridge.h"

#include "cli/Output.h"
#include "loader/Loader.h"
#include "machine/PortMessages.h"
#include "machine/StandardInput.h"

#include <algorithm>
#include <optional>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr char kEndKey = '\x1D'; // Ctrl-]
constexpr std::chrono::milliseconds kSilence = 500ms;
constexpr std::chrono::milliseconds kLongestAnswer = 5s;
constexpr std::chrono::milliseconds kLastKeys = 1s;
constexpr qsizetype kMostUnsent = qsizetype{256} * 1024;

} // namespace

void TerminalBridge::run() {
    m_loader.operation.runMarked([this] { return join(); });
}

Operation::End TerminalBridge::join() {
    m_loader.terminal.switchTo(false);
    m_loader.port.OpenComPort();
    StandardInput input(m_loader.loop);
    const int number = m_loader.port.CommPort();
    m_output.tell(QStringLiteral("Terminal on %1: %2.")
                      .arg(port_messages::portName(number, m_loader.port.deviceName(number)),
                           input.isTerminal()
                               ? QStringLiteral("Ctrl-] ends it, every other key goes to the board")
                               : QStringLiteral("ends after the end of the input")),
                  Severity::Notice);
    const auto look = m_loader.loop.wakeEvery(EventLoop::kLook);
    auto lastHeard = m_loader.loop.now();
    std::optional<EventLoop::TimePoint> ended; // by the user, or at the input's end
    while (!m_loader.state.CancelRequested) {
        // Unread data at the port holds up the board if the line supports that.
        const bool isBehind = m_output.printer().isBehind();
        const QByteArray heard = isBehind ? QByteArray() : m_loader.port.receive();
        if (!heard.isEmpty())
            m_output.raw(heard);
        if (isBehind || !heard.isEmpty())
            lastHeard = m_loader.loop.now();
        if (m_output.printer().wasLost())
            m_loader.state.requestStop(Outcome::Internal);
        if (!ended && takeKeys(input))
            ended = m_loader.loop.now();
        sendKeys();
        if (ended && isOver(input, *ended, lastHeard))
            return Operation::End::Done;
        m_loader.loop.wait();
    }
    return Operation::End::Stopped;
}

/// Returns true at the end: of the input, or by the key, which also counts while the line takes nothing.
bool TerminalBridge::takeKeys(StandardInput& input) {
    if (m_toSend.size() >= kMostUnsent)
        return false;
    const qsizetype before = m_toSend.size();
    m_toSend += input.take();
    if (!input.isTerminal())
        return input.hasEnded();
    const qsizetype end = m_toSend.indexOf(kEndKey, before);
    if (end >= 0)
        m_toSend.truncate(end);
    return end >= 0;
}

/// Returns whether it is over: earlier input still goes out if the line takes it. After the end of a pipe
/// this waits for the answer until the board is silent, but not for ever.
bool TerminalBridge::isOver(const StandardInput& input, EventLoop::TimePoint ended,
                            EventLoop::TimePoint lastHeard) const {
    const auto now = m_loader.loop.now();
    const bool allSent = m_toSend.isEmpty() && m_loader.port.unsentBytes() == 0;
    if (input.isTerminal())
        return allSent || now - ended >= kLastKeys;
    return now - ended >= kLongestAnswer || (allSent && now - std::max(lastHeard, ended) >= kSilence);
}

/// Sends as much as the port takes at once: a stopped line must not block the program.
void TerminalBridge::sendKeys() {
    const QByteArray piece = m_toSend.left(m_loader.port.transmitRoom());
    m_loader.port.Output(QString::fromLatin1(piece));
    m_toSend.remove(0, piece.size());
}

} // namespace zrk
