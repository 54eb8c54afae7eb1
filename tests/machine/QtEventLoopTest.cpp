#include "machine/QtEventLoop.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace std::chrono_literals;

TEST(QtEventLoop, NoTimerIsEarly) {
    zrk::QtEventLoop loop;
    std::vector<std::unique_ptr<zrk::Timer>> timers;
    int left = 0;
    for (auto interval = 101ms; interval < 200ms; interval += 3ms, ++left) {
        timers.push_back(
            loop.createTimer([&left, &loop, begin = loop.now(), interval, seen = false]() mutable {
                left -= seen ? 0 : 1;
                EXPECT_TRUE(seen || loop.now() - begin >= interval);
                seen = true;
            }));
        timers.back()->start(interval);
    }
    while (left > 0)
        loop.wait();
}

} // namespace
