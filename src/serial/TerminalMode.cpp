#include "serial/TerminalMode.h"

#include "platform/RuntimeFailure.h"
#include "serial/ComPort.h"
#include "serial/PortErrors.h"
#include "serial/StatusConsole.h"

#include <QScopeGuard>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kReceiveInterval = 200ms;
constexpr qsizetype kMostHeld = 1024; // more unread could bring the line to a standstill
constexpr qsizetype kMostHeard = 4096;
constexpr QChar kBackspace(u'\b');
constexpr QChar kLineFeed(u'\n');
constexpr QChar kCarriageReturn(u'\r');

} // namespace

TerminalMode::TerminalMode(Desk& desk, ComPort& port, StatusConsole& console)
    : m_desk(desk), m_port(port), m_console(console),
      m_timCommReceive(desk.loop.createTimer([this] { timCommReceive_Timer(); })) {}

void TerminalMode::SetTerminalMode(bool& Enable) {
    const bool handlerInstalled = !m_desk.state.DebugMode;
    ++m_switches;
    try {
        apply(Enable);
        return;
    } catch (const RuntimeFailure& failure) {
        if (!handlerInstalled)
            throw;
        m_desk.state.noteStop(outcomeOf(failure.kind()));
        showPortError(m_desk, m_port.CommPort(), PortErrorHint::OtherIo, failure);
    }
    m_port.CloseComPort();
    m_console.PrintStatus(QStringLiteral("/n--- closing port ---/n"));
    Enable = false;
    m_AppliedTerminalMode = true;
    try {
        apply(false);
    } catch (const RuntimeFailure&) {
        // The port is closed and the mode is noted; forcing it again would fail the same way.
    }
}

void TerminalMode::apply(bool enable) {
    if (enable != m_AppliedTerminalMode) {
        m_AppliedTerminalMode = enable;
        m_desk.state.TerminalMode = enable;
        if (enable)
            applyTerminal();
        else
            applyProgrammed();
    }
    m_desk.controls.txtStatus.SetFocus();
}

void TerminalMode::applyTerminal() {
    m_desk.controls.cmdTerminal.Caption = QStringLiteral("Disable Terminal mode");
    m_console.PrintStatus(QStringLiteral("/n--- Enabling terminal mode ---/n"));
    if (!m_AppliedTerminalMode)
        return; // a click inside the print has switched back already
    m_timCommReceive->start(kReceiveInterval);
    m_port.setHandshaking(Handshaking::XonXoff);
    m_port.setInputMode(ComPort::InputMode::Text);
    m_desk.controls.mnuExecScript.Enabled = true;
}

void TerminalMode::applyProgrammed() {
    m_desk.controls.cmdTerminal.Caption = QStringLiteral("Enable Terminal mode");
    m_console.PrintStatus(QStringLiteral("/n--- Switching to programmed mode ---/n"));
    if (m_AppliedTerminalMode)
        return; // a click inside the print has switched back already
    // Also if the port fails: the mode counts as switched, and what follows reads byte by byte.
    const auto switched = qScopeGuard([this] {
        m_timCommReceive->stop();
        m_port.setInputMode(ComPort::InputMode::Binary);
        m_desk.controls.mnuExecScript.Enabled = false;
    });
    m_port.setHandshaking(Handshaking::None);
}

void TerminalMode::cmdTerminal_Click() {
    if (m_desk.state.OperationActive)
        return;
    const bool inConsole = m_desk.state.DebugMode;
    unsigned switches = m_switches;
    try {
        m_desk.state.TerminalMode = !m_desk.state.TerminalMode;
        SetTerminalMode(m_desk.state.TerminalMode);
        switches = m_switches;
        if (m_desk.state.TerminalMode)
            m_port.OpenComPort();
    } catch (const RuntimeFailure& failure) {
        // An operation that began while the port was being opened has taken over the port and the mode.
        if (failure.kind() == FailureKind::Cancelled && m_switches != switches)
            return;
        m_desk.state.noteStop(outcomeOf(failure.kind()));
        if (!inConsole)
            showPortError(m_desk, m_port.CommPort(), PortErrorHint::OtherIo, failure);
        else if (failure.kind() != FailureKind::Cancelled)
            m_console.PrintPlain(QStringLiteral("\r\n") + failure.description());
        m_desk.state.TerminalMode = false;
        leave();
    }
}

void TerminalMode::leave() {
    try {
        switchTo(false);
    } catch (const RuntimeFailure&) {
        // A port failed under DebugMode; the mode is switched all the same.
    }
}

void TerminalMode::timCommReceive_Timer() {
    if (!m_port.isOpen())
        return;
    QString s;
    qsizetype seen = 0;
    try {
        const qsizetype unread = m_port.InBufferCount();
        if (unread < 1 || (m_desk.state.ReceivedIsHeld && unread < kMostHeld))
            return;
        seen = m_port.seenBytes();
        s = m_port.Input();
    } catch (const RuntimeFailure&) {
        return; // the watch over the idle port reports a lost device, once
    }
    noteHeard(s);
    if (m_received && seen < s.size())
        m_received(s.mid(seen).toLatin1());
    ShowReceived(s);
}

void TerminalMode::passOn() {
    if (!m_received || !m_timCommReceive->isActive() || m_desk.state.ReceivedIsHeld || !m_port.isOpen())
        return;
    try {
        if (const QByteArray fresh = m_port.lookAhead(); !fresh.isEmpty())
            m_received(fresh);
    } catch (const RuntimeFailure&) {
        // The watch over the idle port reports a lost device.
    }
}

/// Ends a script's wait, and keeps the rest for the next reader.
void TerminalMode::noteHeard(const QString& s) {
    SharedState& state = m_desk.state;
    const qsizetype found = state.AwaitedText.isEmpty() ? -1 : s.indexOf(state.AwaitedText);
    if (found >= 0) {
        state.HeardBehind = s.mid(found + state.AwaitedText.size());
        state.AwaitedText.clear();
    } else if (state.AwaitedText.isEmpty()) {
        state.HeardBehind = (state.HeardBehind + s).right(kMostHeard);
    }
}

void TerminalMode::ShowReceived(const QString& s) {
    // Each backspace removes the character before it; if none is left in this text, one character of the
    // console, however many backspaces lead the text.
    QString kept;
    kept.reserve(s.size());
    qsizetype removed = 0;
    for (const QChar c : s) {
        if (c != kBackspace)
            kept.append(c);
        else if (!kept.isEmpty())
            kept.chop(1);
        else if (!m_desk.controls.txtStatus.text().isEmpty())
            removed = 1;
    }
    QString shown;
    shown.reserve(kept.size() + kept.count(kCarriageReturn));
    for (const QChar c : kept) {
        if (c == kLineFeed)
            continue;
        shown.append(c);
        if (c == kCarriageReturn)
            shown.append(kLineFeed);
    }
    m_desk.controls.txtStatus.replaceEnd(removed, shown, TextOrigin::Board);
}

} // namespace zrk
