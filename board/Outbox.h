#pragma once

#include "board/Time.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace zrkboard {

struct TimedBytes {
    TimePoint when;
    std::vector<std::uint8_t> bytes;
};

// A queue of bytes that the board sends, each piece at its time and never before an earlier one.
class Outbox {
  public:
    void push(std::vector<std::uint8_t> bytes, TimePoint when);

    // Moves what is due up to now to the released pieces; nothing while held.
    void release(TimePoint now);
    [[nodiscard]] std::vector<TimedBytes> take();

    // Follows XOFF and XON.
    void hold(bool held) { m_held = held; }
    [[nodiscard]] bool held() const { return m_held; }

    // Returns when the next piece goes out by itself; empty while held.
    [[nodiscard]] std::optional<TimePoint> nextDue() const;

    // Drops what has not been released and ends a hold.
    void clear();

  private:
    std::deque<TimedBytes> m_pending;
    std::vector<TimedBytes> m_released;
    bool m_held = false;
};

} // namespace zrkboard
