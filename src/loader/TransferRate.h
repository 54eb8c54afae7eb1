#pragma once

#include "controls/SharedState.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace zrk {

/// A transfer's rate and time left, in words, from its byte count.
class TransferRate {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::uint32_t kLineBytesPerSecond = 11520; // 115200 baud, ten bits a byte

    /// Sets what the line carries at most, since a driver takes bytes in bursts. 0: no line.
    void limitTo(std::uint32_t bytesPerSecond) { m_line = bytesPerSecond; }

    /// Begins a transfer of `total` bytes.
    void begin(std::int64_t total, TimePoint now);

    /// Records the count at a time, in bytes since begin().
    void update(std::int64_t sent, TimePoint now);

    /// Returns for example "11.5 KB/s, 9 s left"; "stalled for 4 s" if nothing has gone out for 3 s or more.
    [[nodiscard]] QString text(TimePoint now) const;

    /// Returns the same without the rate: "9 s left", "stalled for 4 s".
    [[nodiscard]] QString leftText(TimePoint now) const;

    /// Returns text() of a transfer in a series, with the time that the series still takes.
    [[nodiscard]] QString seriesText(const Series& series, TimePoint now) const;

    /// Returns bytes a second over the last seconds; empty at the beginning, at the end and while stalled.
    [[nodiscard]] std::optional<double> rate(TimePoint now) const;
    /// Returns "11.5 KB/s"; "" if there is no rate.
    [[nodiscard]] QString rateText(TimePoint now) const;

  private:
    [[nodiscard]] std::chrono::seconds silence(TimePoint now) const;
    [[nodiscard]] std::optional<std::chrono::seconds> timeFor(std::int64_t bytes, TimePoint now) const;

    struct Sample {
        TimePoint when;
        std::int64_t sent = 0;
    };

    std::uint32_t m_line = kLineBytesPerSecond;
    std::int64_t m_total = 0;
    std::int64_t m_sent = 0;
    TimePoint m_begun;
    TimePoint m_lastProgress;
    std::deque<Sample> m_window; ///< the last seconds, without the burst into the driver's buffer
};

/// Returns the time that so many bytes take on the line at 115200 baud, for example "about 11 s".
[[nodiscard]] QString lineTimeText(std::int64_t bytes);

} // namespace zrk
