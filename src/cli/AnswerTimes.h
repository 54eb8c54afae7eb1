#pragma once

#include "controls/ConsoleText.h"
#include "platform/EventLoop.h"

namespace zrk {

class Output;

/// The times of --verbose: what the board has answered in each line of the console, and when.
class AnswerTimes {
  public:
    AnswerTimes(EventLoop& loop, Output& output) : m_loop(loop), m_output(output), m_begin(loop.now()) {}

    /// Takes a piece of the console's text as it comes.
    void note(const QString& text, TextOrigin origin);

  private:
    void report();

    EventLoop& m_loop;
    Output& m_output;
    EventLoop::TimePoint m_begin;
    EventLoop::TimePoint m_asked;    ///< when the loader's own text came last
    EventLoop::TimePoint m_answered; ///< when the board's came last
    QByteArray m_answer;             ///< of the line that is not whole yet
};

} // namespace zrk
