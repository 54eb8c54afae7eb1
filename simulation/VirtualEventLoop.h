#pragma once

#include "platform/EventLoop.h"

#include <cstdint>
#include <map>
#include <stdexcept>
#include <utility>

namespace zrksim {

using Duration = zrk::EventLoop::TimePoint::duration;
using TimePoint = zrk::EventLoop::TimePoint;

/// A wait that no event would ever end. It is not a RuntimeFailure, so no operation swallows it.
struct StuckLoop : std::logic_error {
    using std::logic_error::logic_error;
};

/// An event loop with a clock of its own, which stands still while code runs and jumps to the next event in
/// wait(). The order of events is the same in every run.
class VirtualEventLoop final : public zrk::EventLoop {
  public:
    using Action = std::function<void()>;
    using Event = std::pair<TimePoint, std::uint64_t>;

    void yield() override;

    /// Throws StuckLoop if no event is left or after an hour of virtual time: a loader's own timers always
    /// tick, so an endless wait shows as endless time.
    void wait() override;
    void wake() override { m_woken = true; }
    void post(Action task) override { after(Duration::zero(), std::move(task)); }
    [[nodiscard]] TimePoint now() const override { return m_now; }
    [[nodiscard]] std::unique_ptr<zrk::Timer> createTimer(Action tick) override;

    /// Returns the time since the loop was made.
    [[nodiscard]] Duration elapsed() const { return m_now - TimePoint{}; }

    Event schedule(TimePoint when, Action action);
    void cancel(const Event& event) { m_events.erase(event); }

    /// Runs the action so much later than now.
    void after(Duration delay, Action action) { schedule(m_now + delay, std::move(action)); }

    /// Runs the action so long after the loop was made.
    void at(Duration time, Action action) { schedule(TimePoint{} + time, std::move(action)); }

    /// Runs all that is due within the time, as in an idle program or an open message box.
    void runFor(Duration time);

    /// Moves the clock on while nothing runs, as in a call that blocks.
    void skipTo(TimePoint time) { m_now = std::max(m_now, time); }

  private:
    void runFirst();

    TimePoint m_now{};
    std::map<Event, Action> m_events;
    std::uint64_t m_nextNumber = 0;
    bool m_woken = false;
};

} // namespace zrksim
