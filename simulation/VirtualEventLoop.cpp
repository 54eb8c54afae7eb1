#include "simulation/VirtualEventLoop.h"

#include <optional>

namespace zrksim {

using namespace std::chrono_literals;

namespace {

class VirtualTimer final : public zrk::Timer {
  public:
    VirtualTimer(VirtualEventLoop& loop, VirtualEventLoop::Action tick)
        : m_loop(loop), m_tick(std::move(tick)) {}
    ~VirtualTimer() override { disarm(); }
    VirtualTimer(const VirtualTimer&) = delete;
    VirtualTimer& operator=(const VirtualTimer&) = delete;

    void start(std::chrono::milliseconds interval) override {
        disarm();
        m_next = m_loop.schedule(m_loop.now() + interval, [this, interval] {
            m_next.reset();
            start(interval);
            m_tick();
        });
    }
    void stop() override { disarm(); }
    [[nodiscard]] bool isActive() const override { return m_next.has_value(); }

  private:
    void disarm() {
        if (m_next)
            m_loop.cancel(*m_next);
        m_next.reset();
    }

    VirtualEventLoop& m_loop;
    VirtualEventLoop::Action m_tick;
    std::optional<VirtualEventLoop::Event> m_next;
};

} // namespace

std::unique_ptr<zrk::Timer> VirtualEventLoop::createTimer(Action tick) {
    return std::make_unique<VirtualTimer>(*this, std::move(tick));
}

VirtualEventLoop::Event VirtualEventLoop::schedule(TimePoint when, Action action) {
    const Event event{std::max(when, m_now), m_nextNumber++};
    m_events.emplace(event, std::move(action));
    return event;
}

void VirtualEventLoop::runFirst() {
    const auto first = m_events.extract(m_events.begin());
    m_now = std::max(m_now, first.key().first);
    first.mapped()();
}

void VirtualEventLoop::yield() {
    m_woken = false;
    // What is added meanwhile waits for the next turn, so a repeating event cannot hold up this one.
    const std::uint64_t end = m_nextNumber;
    while (!m_events.empty() && m_events.begin()->first.first <= m_now &&
           m_events.begin()->first.second < end)
        runFirst();
}

void VirtualEventLoop::wait() {
    if (!m_woken) {
        if (m_events.empty() || m_events.begin()->first.first > TimePoint{} + 1h)
            throw StuckLoop("the loop waits, and no event will come");
        m_now = std::max(m_now, m_events.begin()->first.first);
    }
    yield();
}

void VirtualEventLoop::runFor(Duration time) {
    const TimePoint end = m_now + time;
    while (!m_events.empty() && m_events.begin()->first.first <= end)
        runFirst();
    m_now = std::max(m_now, end);
}

} // namespace zrksim
