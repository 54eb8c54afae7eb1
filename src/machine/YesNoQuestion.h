#pragma once

namespace zrk {

class EventLoop;

/// A yes-or-no question that is answered with a line on the terminal of standard input.
class YesNoQuestion {
  public:
    explicit YesNoQuestion(EventLoop& loop) : m_loop(loop) {}

    /// Returns whether standard input is a terminal.
    [[nodiscard]] bool isPossible() const;

    /// Waits, yielding, for a line; returns true for "y" or "yes" in any case. An empty line or any other
    /// answer is No. A terminal that is gone, or withdraw(), answers Yes.
    [[nodiscard]] bool askYesNo();

    /// Ends a question under way with Yes.
    void withdraw();

  private:
    EventLoop& m_loop;
    bool m_withdrawn = false;
};

} // namespace zrk
