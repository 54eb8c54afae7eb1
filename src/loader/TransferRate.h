#pragma once

#include "controls/SharedState.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace zrk {

/// Follows a transfer's byte count and words its rate and time left.
class TransferRate {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::uint32_t kLineBytesPerSecond = 11520; // 115200 baud, ten bits a byte

    /// What the line carries at most; a driver takes bytes in bursts that are no rate. 0: no line.
    void limitTo(std::uint32_t bytesPerSecond) { m_line = bytesPerSecond; }

    /// A transfer of `total` bytes begins.
    void begin(std::int64_t total, TimePoint now);

    /// The count at a time, in bytes since begin().
    void update(std::int64_t sent, TimePoint now);

    /// For example "11.5 KB/s, 9 s left"; "stalled for 4 s" when nothing has gone out for 3 s or more.
    [[nodiscard]] QString text(TimePoint now) const;

    /// The same without the rate: "9 s left", "stalled for 4 s".
    [[nodiscard]] QString leftText(TimePoint now) const;

    /// text() of a transfer in a row of them, with the time that the row still takes.
    [[nodiscard]] QString seriesText(const Series& series, TimePoint now) const;

    /// Bytes a second over the last seconds; nothing at the beginning, at the end and while stalled.
    [[nodiscard]] std::optional<double> rate(TimePoint now) const;
    /// "11.5 KB/s"; "" when there is no rate.
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

/// The time that so many bytes take on the line at 115200 baud, for example "about 11 s".
[[nodiscard]] QString lineTimeText(std::int64_t bytes);

} // namespace zrk
