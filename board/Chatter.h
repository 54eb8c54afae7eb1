#pragma once

#include "board/Chip.h"

#include <optional>

namespace zrkboard {

// Numbered lines at the full speed of the line for some time, a load for a terminal. Pauses while the output
// is held by XOFF.
class Chatter {
  public:
    explicit Chatter(Chip& chip) : m_chip(chip) {}

    void start(Duration length);
    void stop() { m_next.reset(); }
    [[nodiscard]] bool running() const { return m_next.has_value(); }

    [[nodiscard]] std::optional<TimePoint> deadline() const { return m_next; }
    void tick();

  private:
    Chip& m_chip;
    std::optional<TimePoint> m_next;
    TimePoint m_end;
    unsigned m_lines = 0;
};

} // namespace zrkboard
