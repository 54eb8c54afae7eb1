#pragma once

#include "board/Time.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

namespace zrkboard {

// One direction of a serial line: bytes go in at any speed and come out at the line's. The n-th byte of a
// busy spell is through n byte times after the spell began, so rare calls do not slow the line down.
class PacedQueue {
  public:
    // Takes the rate in bytes a second; 0 = no pacing.
    explicit PacedQueue(std::uint32_t rate) : m_rate(rate) {}

    void push(std::span<const std::uint8_t> bytes, TimePoint now);

    // Takes the bytes that are through by now.
    [[nodiscard]] std::vector<std::uint8_t> take(TimePoint now);

    // Returns when the next byte is through; empty if nothing is queued.
    [[nodiscard]] std::optional<TimePoint> nextThrough() const;
    // Returns when all that is queued now is through; empty if nothing is queued.
    [[nodiscard]] std::optional<TimePoint> allThrough() const;

    [[nodiscard]] std::size_t size() const { return m_queue.size(); }
    [[nodiscard]] bool empty() const { return m_queue.empty(); }
    void clear() { m_queue.clear(); }

  private:
    [[nodiscard]] TimePoint throughAt(std::uint64_t count) const;

    std::uint32_t m_rate;
    std::deque<std::uint8_t> m_queue;
    TimePoint m_spellBegan;
    std::uint64_t m_through = 0; // in this spell
};

} // namespace zrkboard
