#pragma once

#include "platform/EventLoop.h"

#include <QString>

namespace zrk {

struct Loader;

/// Shows the progress of transfers and of long waits on standard error: on a terminal one line that is
/// written over, elsewhere a plain line now and then.
class ProgressLines {
  public:
    ProgressLines(Loader& loader, EventLoop& loop);
    ~ProgressLines();
    ProgressLines(const ProgressLines&) = delete;
    ProgressLines& operator=(const ProgressLines&) = delete;

  private:
    void tick();
    [[nodiscard]] QString progressText() const;
    void write(const QString& text);
    void clearLine();

    Loader& m_loader;
    EventLoop& m_loop;
    std::unique_ptr<Timer> m_timer;
    bool m_overwrites;
    qsizetype m_shownLength = 0;
    EventLoop::TimePoint m_lastLine;
};

} // namespace zrk
