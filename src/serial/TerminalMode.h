#pragma once

#include "controls/Desk.h"
#include "platform/EventLoop.h"

#include <QByteArray>

#include <functional>
#include <memory>

namespace zrk {

class ComPort;
class StatusConsole;

/// The switch between the two uses of the port, and the terminal's receiving side.
class TerminalMode {
  public:
    TerminalMode(Desk& desk, ComPort& port, StatusConsole& console);

    /// Switches the port and the controls to terminal (true) or programmed mode; in the present mode it only
    /// moves the focus. A failure is shown, closes the port and forces programmed mode, with `Enable` set to
    /// false; in DebugMode it passes through as RuntimeFailure instead. Yields.
    void SetTerminalMode(bool& Enable);
    /// Does the same; returns the resulting mode. Yields.
    bool switchTo(bool enable) {
        SetTerminalMode(enable);
        return enable;
    }

    /// Switches to programmed mode, even if the port fails. Yields.
    void leave();

    /// Toggles terminal mode and opens the port for it, yielding. Does nothing while an operation runs.
    /// Reports a port that cannot be opened, in DebugMode in the console, and leaves terminal mode off.
    void cmdTerminal_Click();

    /// Takes what has arrived, ends a script's wait, shows the text: every 200 ms in terminal mode.
    void timCommReceive_Timer();

    /// Sets the listener that gets every byte of the board in terminal mode, once.
    void onReceived(std::function<void(const QByteArray&)> listener) { m_received = std::move(listener); }

    /// Passes what has arrived on to the listener; the console shows it with the next tick.
    void passOn();

    /// Appends a text of the board to the console, with backspaces and line ends translated.
    void ShowReceived(const QString& s);

  private:
    void noteHeard(const QString& s);
    void apply(bool enable);
    void applyTerminal();
    void applyProgrammed();

    Desk& m_desk;
    ComPort& m_port;
    StatusConsole& m_console;
    std::unique_ptr<Timer> m_timCommReceive;
    std::function<void(const QByteArray&)> m_received;
    unsigned m_switches = 0; ///< calls of SetTerminalMode so far
    bool m_AppliedTerminalMode = false;
};

} // namespace zrk
