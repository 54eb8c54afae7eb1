#pragma once

#include "platform/EventLoop.h"
#include "serial/Operation.h"

#include <QByteArray>

namespace zrk {

class Output;
class StandardInput;
struct Loader;

/// Joins the board with standard input and output, byte for byte, in either direction.
class TerminalBridge {
  public:
    TerminalBridge(Loader& loader, Output& output) : m_loader(loader), m_output(output) {}

    /// Opens the port if it is closed and runs until Ctrl-] or the end of the input, yielding. Behind the end
    /// of an input that is no terminal it stays until the board has been silent for half a second. The
    /// outcome is at the gate.
    void run();

  private:
    [[nodiscard]] Operation::End join();
    [[nodiscard]] bool takeKeys(StandardInput& input);
    [[nodiscard]] bool isOver(const StandardInput& input, EventLoop::TimePoint ended,
                              EventLoop::TimePoint lastHeard) const;
    void sendKeys();

    Loader& m_loader;
    Output& m_output;
    QByteArray m_toSend;
};

} // namespace zrk
