#include "machine/LinePace.h"

#include <gtest/gtest.h>

#include <limits>

namespace zrk {
namespace {

using namespace std::chrono_literals;
using TimePoint = LinePace::TimePoint;

constexpr std::uint32_t kRate = 11'520;
constexpr std::size_t kLead = 3'916; // 0.34 s of the line

/// Sends all that is allowed; returns how much.
std::size_t handOn(LinePace& pace, TimePoint now) {
    const std::size_t count = pace.allowance(now);
    pace.sent(count, now, now);
    return count;
}

TEST(LinePace, IsNeverMoreThanItsLeadAheadAndNeverBehind) {
    LinePace pace(kRate);
    TimePoint now{1h};
    const TimePoint begin = now;
    std::size_t sent = handOn(pace, now);
    EXPECT_EQ(sent, kLead);
    while (sent < 2'000'000) {
        ASSERT_EQ(pace.allowance(now), 0U);
        now = pace.nextAllowance(now);
        sent += handOn(pace, now);
        const double line = std::chrono::duration<double>(now - begin).count() * kRate;
        ASSERT_LE(static_cast<double>(sent), line + kLead + 1);
        ASSERT_GE(static_cast<double>(sent), line + kLead - 2);
    }
}

TEST(LinePace, CatchesUpAHiccupWithinItsLeadAndWakesRarely) {
    LinePace pace(kRate);
    TimePoint now{1h};
    (void)handOn(pace, now);
    EXPECT_GE(pace.nextAllowance(now) - now, 19ms);
    EXPECT_EQ(handOn(pace, now += 250ms), 2'880U);
    EXPECT_EQ(pace.onLine(now), kLead);
    EXPECT_EQ(handOn(pace, now += 10min), kLead) << "after idleness no more than the lead";
    EXPECT_EQ(pace.onLine(now + 339'930us), 1U) << "a byte that is not through counts";
    EXPECT_EQ(pace.onLine(now + 339'931us), 0U);
    pace.sent(100, now, now + 10s); // the device took it only after the line had stood still
    EXPECT_EQ(pace.onLine(now + 10s), kLead + 100);

    LinePace slow(1);
    EXPECT_EQ(handOn(slow, now), 1U);
    EXPECT_EQ(handOn(slow, slow.nextAllowance(now)), 1U);
    EXPECT_EQ(LinePace(0).allowance(now), std::numeric_limits<std::size_t>::max()) << "no line, no pace";
}

} // namespace
} // namespace zrk
