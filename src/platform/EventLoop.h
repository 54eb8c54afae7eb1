#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace zrk {

/// A repeating timer. Starting a running timer begins a new period. The callback must not throw.
class Timer {
  public:
    virtual ~Timer() = default;
    virtual void start(std::chrono::milliseconds interval) = 0;
    virtual void stop() = 0;
    [[nodiscard]] virtual bool isActive() const = 0;
};

/// The event loop that the operations use. Everything runs on the one thread that calls it; only wake() and
/// post() may be called from others.
class EventLoop {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// The interval at which a wait checks whether its limit is over or it was cancelled.
    static constexpr std::chrono::milliseconds kLook{100};

    virtual ~EventLoop() = default;

    /// Runs what is pending (clicks, timer ticks, repaints) and returns without blocking. A call soon after
    /// another may leave clicks, ticks and repaints to a later one, for some milliseconds at most.
    virtual void yield() = 0;

    /// Blocks until an event comes, runs it and returns. Also returns if wake() was called since the last
    /// wait() or yield().
    virtual void wait() = 0;

    /// Makes a present or the next wait() return. Any thread may call it.
    virtual void wake() = 0;

    /// Runs the task once from the event loop, soon but not inside this call. Any thread may call it.
    virtual void post(std::function<void()> task) = 0;

    /// Returns the time of a clock that never goes back.
    [[nodiscard]] virtual TimePoint now() const = 0;

    /// Creates a stopped timer that calls `tick` after every interval while it is active.
    [[nodiscard]] virtual std::unique_ptr<Timer> createTimer(std::function<void()> tick) = 0;

    /// Makes wait() return after every `period` at the latest, for as long as the result lives.
    [[nodiscard]] std::unique_ptr<Timer> wakeEvery(std::chrono::milliseconds period) {
        std::unique_ptr<Timer> timer = createTimer([] {});
        timer->start(period);
        return timer;
    }
};

} // namespace zrk
