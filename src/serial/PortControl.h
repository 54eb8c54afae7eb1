#pragma once

#include "controls/Desk.h"
#include "platform/EventLoop.h"

namespace zrk {

class ComPort;
class StatusConsole;
class TerminalMode;

/// The Cancel button, the closing of the main window, and the watch over an idle open port.
class PortControl {
  public:
    PortControl(Desk& desk, ComPort& port, StatusConsole& console, TerminalMode& terminal);

    /// Requests a stop while an operation runs; otherwise closes the port, resets the start buttons and
    /// leaves terminal mode. Yields if idle.
    void cmdCancel_Click();

    /// Requests a stop and closes the port, because the main window is about to close. Returns 1 if the
    /// window has to stay open because an operation runs, else 0.
    [[nodiscard]] int Form_Unload();

    /// Closes an idle open port whose device is gone, with one line in the console, and in terminal mode
    /// opens it again, with another line, when the same device is back. Runs twice a second. Operations find
    /// out by themselves.
    void watchIdlePort();

  private:
    void closeLost();
    void reopen();
    void resetStartButtons();

    Desk& m_desk;
    ComPort& m_port;
    StatusConsole& m_console;
    TerminalMode& m_terminal;
    bool m_isPulled = false; ///< from a terminal, which goes on when the device is back
    std::unique_ptr<Timer> m_watch;
};

} // namespace zrk
