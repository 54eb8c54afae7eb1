#pragma once

#include "platform/EventLoop.h"

#include <QString>

namespace zrk {

class Output;
class MessageLines;
struct Loader;

/// Has the progress of transfers and of long waits shown: on a terminal four times a second, elsewhere as a
/// line now and then.
class ProgressLines {
  public:
    ProgressLines(Loader& loader, Output& output, const MessageLines& messages);

  private:
    void tick();
    [[nodiscard]] QString progressText() const;

    Loader& m_loader;
    Output& m_output;
    const MessageLines& m_messages;
    std::unique_ptr<Timer> m_timer;
    EventLoop::TimePoint m_lastLine;
};

} // namespace zrk
