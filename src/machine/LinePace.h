#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace zrk {

/// Paces a sender by the clock, because no buffer between it and a line can be trusted to push back: a serial
/// server or a pseudo-terminal takes seconds' worth of bytes at once. The sender may be a lead ahead of what
/// the line can have sent; so long a hiccup of the machine costs the line nothing.
class LinePace {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Together with the transmit queue it keeps the last byte within 0.4 s of its hand-over.
    static constexpr std::chrono::milliseconds kLead{340};

    /// In bytes a second; 0 is no pacing at all.
    explicit LinePace(std::uint32_t bytesPerSecond) : m_rate(bytesPerSecond) {}

    /// Bytes that may be handed on now.
    [[nodiscard]] std::size_t allowance(TimePoint now) const;

    /// The device, asked at one time, has taken so many bytes now. If it let us wait for longer than the line
    /// had bytes for, the line stood still, and what was on its way then still is.
    void sent(std::size_t count, TimePoint asked, TimePoint now);

    /// When the next bytes are worth a wake-up: some milliseconds' worth of the line may be handed on then.
    [[nodiscard]] TimePoint nextAllowance(TimePoint now) const;

    /// Bytes handed on that the line cannot have sent by now.
    [[nodiscard]] std::size_t onLine(TimePoint now) const;

  private:
    [[nodiscard]] std::chrono::nanoseconds ahead(TimePoint now) const;
    [[nodiscard]] std::size_t bytesIn(std::chrono::nanoseconds time) const;
    [[nodiscard]] std::chrono::nanoseconds timeOf(std::size_t bytes) const;

    std::uint32_t m_rate;
    TimePoint m_lineFree{}; ///< when the line can have sent all that was handed on
};

} // namespace zrk
