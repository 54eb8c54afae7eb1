#include "machine/LinePace.h"

#include <algorithm>
#include <limits>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::nanoseconds kWorthAWakeUp = 20ms;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

} // namespace

std::size_t LinePace::allowance(TimePoint now) const {
    if (m_rate == 0)
        return std::numeric_limits<std::size_t>::max();
    // A slow line's lead is less than a byte; then it is one byte at a time.
    const std::size_t lead = std::max<std::size_t>(1, bytesIn(kLead));
    const std::size_t underWay = onLine(now);
    return lead > underWay ? lead - underWay : 0;
}

void LinePace::sent(std::size_t count, TimePoint asked, TimePoint now) {
    if (m_rate == 0)
        return;
    const std::chrono::nanoseconds underWay = ahead(asked);
    if (now - asked >= underWay)
        m_lineFree = now + underWay;
    m_lineFree += timeOf(count);
}

LinePace::TimePoint LinePace::nextAllowance(TimePoint now) const {
    const std::chrono::nanoseconds wait = ahead(now) - kLead + std::max(kWorthAWakeUp, timeOf(1));
    return now + std::max<std::chrono::nanoseconds>(0ns, wait);
}

std::size_t LinePace::onLine(TimePoint now) const {
    if (m_rate == 0)
        return 0;
    const std::chrono::nanoseconds rest = ahead(now);
    return bytesIn(rest) + (timeOf(bytesIn(rest)) < rest ? 1 : 0);
}

std::chrono::nanoseconds LinePace::ahead(TimePoint now) const {
    return std::max<std::chrono::nanoseconds>(0ns, m_lineFree - now);
}

std::size_t LinePace::bytesIn(std::chrono::nanoseconds time) const {
    return static_cast<std::size_t>(time.count() * static_cast<std::int64_t>(m_rate) / kNanosecondsPerSecond);
}

std::chrono::nanoseconds LinePace::timeOf(std::size_t bytes) const {
    return std::chrono::nanoseconds(static_cast<std::int64_t>(bytes) * kNanosecondsPerSecond / m_rate);
}

} // namespace zrk
