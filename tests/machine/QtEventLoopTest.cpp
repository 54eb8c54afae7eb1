#include "machine/QtEventLoop.h"

#include <QCoreApplication>
#include <QEvent>

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace std::chrono_literals;

// There the system's clock and its timers count in other steps than ours.
#ifdef _WIN32
constexpr auto kClockStep = 16ms;
#else
constexpr auto kClockStep = 0ms;
#endif

TEST(QtEventLoop, NoTimerIsEarly) {
    zrk::QtEventLoop loop;
    std::vector<std::unique_ptr<zrk::Timer>> timers;
    int left = 0;
    for (auto interval = 101ms; interval < 200ms; interval += 3ms, ++left) {
        timers.push_back(
            loop.createTimer([&left, &loop, begin = loop.now(), interval, seen = false]() mutable {
                left -= seen ? 0 : 1;
                EXPECT_TRUE(seen || loop.now() - begin >= interval - kClockStep);
                seen = true;
            }));
        timers.back()->start(interval);
    }
    while (left > 0)
        loop.wait();
}

/// A window that gets its clicks from the window system, past the loop's own post().
struct ClickedWindow : QObject {
    int clicks = 0;
    bool event(QEvent* event) override {
        clicks += event->type() == QEvent::User ? 1 : 0;
        return true;
    }
    void click() { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }
};

TEST(QtEventLoop, AYieldSoonAfterATurnIsCheapButNoClickWaitsLong) {
    auto now = zrk::EventLoop::TimePoint{} + 1h;
    zrk::QtEventLoop loop([&now] { return now; });
    ClickedWindow window;
    loop.yield();
    // One byte every 100 us for a second; a click every 7 ms.
    for (int byte = 1; byte <= 10'000; ++byte) {
        now += 100us;
        if (byte % 70 == 0)
            window.click();
        loop.yield();
        if (byte % 70 == 50) {
            EXPECT_EQ(window.clicks, byte / 70) << "seen within 5 ms";
        }
    }
    EXPECT_EQ(window.clicks, 142);

    now += 1s;
    loop.yield();
    window.click();
    loop.yield();
    EXPECT_EQ(window.clicks, 142) << "a turn for every byte would cost more than the bytes";
    int tasks = 0;
    loop.post([&] { ++tasks; });
    loop.yield();
    EXPECT_EQ(tasks, 1) << "at once";
    EXPECT_EQ(window.clicks, 143) << "with all else that is pending";
    window.click();
    loop.wake();
    loop.yield();
    EXPECT_EQ(window.clicks, 144) << "the port has news";
    window.click();
    loop.wait();
    EXPECT_EQ(window.clicks, 145);
    window.click();
    loop.yield();
    EXPECT_EQ(window.clicks, 145) << "a wait counts as a turn";
}

} // namespace
