#include "cli/TerminalBridge.h"

#include "cli/Output.h"
#include "loader/Loader.h"
#include "machine/StandardInput.h"

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr char kEndKey = '\x1D'; // Ctrl-]
constexpr std::chrono::milliseconds kSilence = 500ms;
constexpr std::chrono::milliseconds kLook = 100ms;

} // namespace

void TerminalBridge::run() {
    const auto body = [this] {
        m_loader.operation.begin();
        const Operation::End end = join();
        m_loader.operation.finish();
        return end;
    };
    m_loader.operation.run({body, [this] { m_loader.operation.finish(); }, Operation::Report::Nothing});
}

Operation::End TerminalBridge::join() {
    m_loader.terminal.switchTo(false);
    m_loader.port.OpenComPort();
    StandardInput input(m_loader.loop);
    m_output.tell(QStringLiteral("Terminal on COM%1 (%2): %3.")
                      .arg(m_loader.port.CommPort())
                      .arg(m_loader.port.deviceName(m_loader.port.CommPort()),
                           input.isTerminal()
                               ? QStringLiteral("Ctrl-] ends it, every other key goes to the board")
                               : QStringLiteral("ends behind the end of the input")));
    const auto look = m_loader.loop.createTimer([] {});
    look->start(kLook);
    auto lastHeard = m_loader.loop.now();
    while (!m_loader.state.CancelRequested) {
        const QByteArray heard = m_loader.port.receive();
        if (!heard.isEmpty()) {
            m_output.raw(heard);
            lastHeard = m_loader.loop.now();
        }
        if (!takeKeys(input))
            return Operation::End::Done;
        sendKeys();
        if (!input.hasEnded() || !m_toSend.isEmpty() || m_loader.port.unsentBytes() > 0)
            lastHeard = m_loader.loop.now();
        else if (m_loader.loop.now() - lastHeard >= kSilence)
            return Operation::End::Done;
        m_loader.loop.wait();
    }
    return Operation::End::Stopped;
}

/// False when the user has ended the terminal. Not more is taken than the line can follow.
bool TerminalBridge::takeKeys(StandardInput& input) {
    if (!m_toSend.isEmpty())
        return true;
    m_toSend = input.take();
    if (!input.isTerminal())
        return true;
    const qsizetype end = m_toSend.indexOf(kEndKey);
    if (end < 0)
        return true;
    m_toSend.truncate(end);
    sendKeys();
    return false;
}

/// As much as the port takes at once: a stopped line must not stop the program.
void TerminalBridge::sendKeys() {
    const QByteArray piece = m_toSend.left(m_loader.port.transmitRoom());
    m_loader.port.Output(QString::fromLatin1(piece));
    m_toSend.remove(0, piece.size());
}

} // namespace zrk
