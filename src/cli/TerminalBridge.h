#pragma once

#include "platform/EventLoop.h"
#include "serial/Operation.h"

#include <QByteArray>

namespace zrk {

class Output;
class StandardInput;
struct Loader;

/// A connection of the board with standard input and output, byte for byte, in either direction.
class TerminalBridge {
  public:
    TerminalBridge(Loader& loader, Output& output) : m_loader(loader), m_output(output) {}

    /// Opens the port if it is closed and runs until Ctrl-] or the end of the input, yielding. After the end
    /// of an input other than a terminal it waits until the board has been silent for half a second.
    /// Operation keeps the outcome.
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
