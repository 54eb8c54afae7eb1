#pragma once

#include "platform/EventLoop.h"

#include <QString>

namespace zrk {

struct Loader;
class TerminalMessages;

/// Shows the progress of transfers and of long waits on standard error: on a terminal one line that is
/// written over, behind the unfinished line of the console if that is there too; elsewhere a plain line now
/// and then.
class ProgressLines {
  public:
    ProgressLines(Loader& loader, const TerminalMessages& messages, EventLoop& loop);
    ~ProgressLines();
    ProgressLines(const ProgressLines&) = delete;
    ProgressLines& operator=(const ProgressLines&) = delete;

    /// Takes the line away again; whoever writes to the terminal calls this first.
    void clearLine();

  private:
    void tick();
    [[nodiscard]] QString progressText() const;
    [[nodiscard]] QString unfinishedLine() const;
    void write(const QString& text);

    Loader& m_loader;
    const TerminalMessages& m_messages;
    EventLoop& m_loop;
    std::unique_ptr<Timer> m_timer;
    bool m_overwrites; ///< standard error is a terminal
    bool m_shared;     ///< and the console's text goes to it as well
    qsizetype m_shownLength = 0;
    QString m_behind; ///< the console's text that the shown line begins with
    EventLoop::TimePoint m_lastLine;
};

} // namespace zrk
