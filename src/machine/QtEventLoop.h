#pragma once

#include "platform/EventLoop.h"

#include <QEventLoop>
#include <QObject>

#include <atomic>

namespace zrk {

/// The event loop of the thread that makes it; needs a QCoreApplication.
///
/// A transfer yields after every byte, and a whole turn costs more than a hundred bytes, most of all if the
/// window system has to be asked. So a yield within kTurnInterval of the last turn returns at once unless it
/// was woken or has a task to run; a click waits no longer than that.
class QtEventLoop final : public EventLoop {
  public:
    static constexpr std::chrono::milliseconds kTurnInterval{2};
    using Clock = std::function<TimePoint()>;

    explicit QtEventLoop(Clock clock = std::chrono::steady_clock::now);
    ~QtEventLoop() override;

    void yield() override;
    void wait() override;
    void wake() override;
    void post(std::function<void()> task) override;
    [[nodiscard]] TimePoint now() const override { return m_clock(); }
    [[nodiscard]] std::unique_ptr<Timer> createTimer(std::function<void()> tick) override;

  private:
    void turn(QEventLoop::ProcessEventsFlags flags);

    const Clock m_clock;
    QEventLoop m_loop; // gives a new thread what its timers and wake-ups need
    // Wake-ups are posted to this object, because a posted event ends a blocking pass for certain; at most
    // one is under way, or a fast line would flood the queue.
    QObject m_receiver;
    std::atomic<bool> m_wakePending{false};
    std::atomic<bool> m_hasNews{true}; ///< a wake-up or a task came since the last turn began
    TimePoint m_lastTurn;
};

} // namespace zrk
