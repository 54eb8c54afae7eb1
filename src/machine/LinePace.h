#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace zrk {

/// A pace by the clock for a sender, because no buffer before a line pushes back reliably: a serial server or
/// a pseudo-terminal takes seconds' worth of bytes at once. The sender may be a lead ahead of what the line
/// can have sent; a shorter hiccup of the machine costs the line nothing.
class LinePace {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// With the transmit queue it keeps the last byte within 0.4 s of its hand-over.
    static constexpr std::chrono::milliseconds kLead{340};

    /// Takes the rate in bytes a second; 0 = no pacing.
    explicit LinePace(std::uint32_t bytesPerSecond) : m_rate(bytesPerSecond) {}

    /// Returns how many bytes may be sent now.
    [[nodiscard]] std::size_t allowance(TimePoint now) const;

    /// Records that the device, asked at one time, has taken so many bytes now. If that took longer than the
    /// line had bytes for, the line stood still, and what was on its way then still is.
    void sent(std::size_t count, TimePoint asked, TimePoint now);

    /// Returns when some milliseconds' worth of bytes may be sent, which are worth a wake-up.
    [[nodiscard]] TimePoint nextAllowance(TimePoint now) const;

    /// Returns how many sent bytes the line cannot have carried by now.
    [[nodiscard]] std::size_t onLine(TimePoint now) const;

  private:
    [[nodiscard]] std::chrono::nanoseconds ahead(TimePoint now) const;
    [[nodiscard]] std::size_t bytesIn(std::chrono::nanoseconds time) const;
    [[nodiscard]] std::chrono::nanoseconds timeOf(std::size_t bytes) const;

    std::uint32_t m_rate;
    TimePoint m_lineFree{}; ///< when the line can have sent all that was handed on
};

} // namespace zrk
