#include "machine/TransmitQueue.h"

#include <gtest/gtest.h>

#include <string>

namespace zrk {
namespace {

std::string text(std::span<const char> bytes) {
    return {bytes.begin(), bytes.end()};
}

TEST(TransmitQueue, KeepsOrderAndBoundWhileItsFrontIsBeingSent) {
    TransmitQueue queue(8);
    EXPECT_EQ(text(queue.front()), "");
    EXPECT_EQ(queue.append(std::string("abcde")), 5U);
    const auto front = queue.front();
    EXPECT_EQ(text(front), "abcde");

    EXPECT_EQ(queue.append(std::string("fghij")), 3U) << "what is being sent counts";
    EXPECT_EQ(text(front), "abcde") << "what is being sent stays where it is";
    EXPECT_EQ(queue.room(), 0U);

    queue.sent(2);
    EXPECT_EQ(queue.room(), 2U);
    EXPECT_EQ(text(queue.front()), "cde");
    queue.sent(3);
    EXPECT_EQ(text(queue.front()), "fgh");
    queue.sent(3);
    EXPECT_TRUE(queue.isEmpty());
    EXPECT_EQ(queue.room(), 8U);
}

} // namespace
} // namespace zrk
