#include "board/PacedQueue.h"

#include "board/AdapterBuffer.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using zrkboard::PacedQueue;
using zrkboard::TimePoint;

namespace {

const std::vector<std::uint8_t> kBlock(512, 'x');
const TimePoint kStart = TimePoint() + 1234567ns;

} // namespace

// However often take() is called, the n-th byte is through n byte times after the first began.
TEST(PacedQueue, KeepsItsRateAtAnyLookingInterval) {
    for (const auto interval : {100us, 700us, 2000us, 33333us}) {
        PacedQueue line(11520);
        std::size_t through = 0;
        TimePoint now = kStart;
        line.push(kBlock, now);
        while (through < 1'000'000) {
            while (line.size() < 512)
                line.push(kBlock, now);
            through += line.take(now += interval).size();
            const double expected = std::chrono::duration<double>(now - kStart).count() * 11520;
            ASSERT_LE(static_cast<double>(through), expected + 1e-6);
            ASSERT_GT(static_cast<double>(through), expected - 1.000001);
        }
    }
}

TEST(PacedQueue, EachByteIsThroughWhenItSays) {
    PacedQueue line(11520);
    line.push(std::vector<std::uint8_t>{1, 2, 3}, kStart);
    EXPECT_TRUE(line.take(kStart).empty());
    const TimePoint all = line.allThrough().value();
    TimePoint now;
    for (std::uint8_t byte = 1; byte <= 3; ++byte) {
        now = line.nextThrough().value();
        EXPECT_TRUE(line.take(now - 1ns).empty());
        EXPECT_EQ(line.take(now), std::vector<std::uint8_t>{byte});
    }
    EXPECT_EQ(now, all);
    EXPECT_EQ(line.nextThrough(), std::nullopt);
    line.push(kBlock, now + 10s);
    EXPECT_EQ(line.take(now + 10s + 1ms).size(), 11U) << "an idle line saves nothing up";

    PacedQueue unpaced(0);
    unpaced.push(kBlock, kStart);
    EXPECT_EQ(unpaced.nextThrough(), kStart);
    EXPECT_EQ(unpaced.take(kStart).size(), 512U);
}

TEST(AdapterBuffer, HandsOverFullPacketsAtOnceAndTheRestWhenItsTimerRunsOut) {
    using namespace std::chrono_literals;
    zrkboard::AdapterBuffer adapter(16ms);
    const zrkboard::TimePoint start;
    const std::vector<std::uint8_t> bytes(130, 'x');
    EXPECT_FALSE(adapter.nextThrough());
    adapter.push({bytes.data(), 1}, start);
    adapter.push({bytes.data(), 1}, start + 10ms);
    EXPECT_EQ(adapter.take(start + 15ms).size(), 0U);
    EXPECT_EQ(adapter.nextThrough(), start + 16ms) << "the first byte starts the timer";
    EXPECT_EQ(adapter.take(start + 16ms).size(), 2U);
    EXPECT_TRUE(adapter.empty());
    adapter.push(bytes, start + 20ms);
    EXPECT_EQ(adapter.take(start + 20ms).size(), 124U) << "two packets of 62";
    EXPECT_EQ(adapter.take(start + 36ms).size(), 6U);
    zrkboard::AdapterBuffer none(0ms);
    none.push({bytes.data(), 1}, start);
    EXPECT_EQ(none.take(start).size(), 1U);
}
