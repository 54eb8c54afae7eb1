#pragma once

#include "controls/ConsoleText.h"
#include "platform/EventLoop.h"

namespace zrk {

/// The one place where the loader reports what it does.
class StatusConsole {
  public:
    StatusConsole(ConsoleText& txtStatus, EventLoop& loop) : m_txtStatus(txtStatus), m_loop(loop) {}

    /// Appends the text, each "/n" in it as CR LF, at the end of the console. Yields once, so clicks and
    /// timer ticks can run inside the call.
    void PrintStatus(const QString& text);

    /// Appends a foreign text, such as one with a path in it, as it stands. Yields once.
    void PrintPlain(const QString& text);

    /// Appends what the board answered, as it stands. Yields once.
    void PrintAnswer(const QString& answer);

  private:
    ConsoleText& m_txtStatus;
    EventLoop& m_loop;
};

} // namespace zrk
