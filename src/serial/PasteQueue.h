#pragma once

#include "platform/EventLoop.h"

#include <QByteArray>

#include <chrono>

namespace zrk {

/// A pasted text on its way to the board, line by line.
class PasteQueue {
  public:
    using TimePoint = EventLoop::TimePoint;

    /// Sets how long to wait after each line, from the next line on; 0: not at all.
    void setPause(std::chrono::milliseconds pause) { m_pause = pause; }

    /// Adds bytes, whose lines end with CR.
    void add(const QByteArray& bytes);

    [[nodiscard]] bool isEmpty() const { return m_bytes.isEmpty(); }
    [[nodiscard]] qsizetype size() const { return m_bytes.size(); }

    /// Takes what may go out at this time: at most so many bytes, with a pause at most to the end of a line.
    [[nodiscard]] QByteArray take(qsizetype most, TimePoint now);

    /// Drops the rest and returns what ends the paste for a program that asked for its marks.
    [[nodiscard]] QByteArray stop();

    /// Counts the lines since the queue was empty: all, and those that have gone out.
    [[nodiscard]] qsizetype lines() const { return m_lines; }
    [[nodiscard]] qsizetype linesSent() const { return m_linesSent; }

  private:
    QByteArray m_bytes;
    std::chrono::milliseconds m_pause{0};
    TimePoint m_next; ///< when the next line may begin
    qsizetype m_lines = 0;
    qsizetype m_linesSent = 0;
    bool m_isMarked = false; ///< its beginning has gone out with a mark, which the end must have, too
};

/// Counts the lines of bytes whose lines end with CR; an unfinished one at the end counts.
[[nodiscard]] qsizetype pastedLines(const QByteArray& bytes);

} // namespace zrk
