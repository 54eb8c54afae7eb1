#pragma once

#include "board/Time.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zrkboard {

// The receive buffer of a USB adapter. It passes its bytes to the PC when it is full, or when its latency
// timer, which the first byte starts, has run out.
class AdapterBuffer {
  public:
    // With a latency of 0, bytes pass at once, as without an adapter.
    explicit AdapterBuffer(Duration latency) : m_latency(latency) {}

    // Adds bytes that have come over the line by now.
    void push(std::span<const std::uint8_t> bytes, TimePoint now);

    // Takes the bytes that the PC gets by now.
    [[nodiscard]] std::vector<std::uint8_t> take(TimePoint now);

    // Returns when the timer runs out; empty if nothing waits.
    [[nodiscard]] std::optional<TimePoint> nextThrough() const;

    [[nodiscard]] bool empty() const { return m_waiting.empty(); }
    void clear() { m_waiting.clear(); }

  private:
    Duration m_latency;
    TimePoint m_since;
    std::vector<std::uint8_t> m_waiting;
};

} // namespace zrkboard
