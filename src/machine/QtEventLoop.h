#pragma once

#include "platform/EventLoop.h"

#include <QEventLoop>
#include <QObject>

#include <atomic>

namespace zrk {

/// The event loop of the thread that makes it; needs a QCoreApplication.
class QtEventLoop final : public EventLoop {
  public:
    QtEventLoop();
    ~QtEventLoop() override;

    void yield() override;
    void wait() override;
    void wake() override;
    void post(std::function<void()> task) override;
    [[nodiscard]] TimePoint now() const override { return std::chrono::steady_clock::now(); }
    [[nodiscard]] std::unique_ptr<Timer> createTimer(std::function<void()> tick) override;

  private:
    QEventLoop m_loop; // gives a thread that has none yet what its timers and wake-ups need
    // Wake-ups are posted to this object, because a posted event ends a blocking pass for certain;
    // at most one is under way, or a fast line would flood the queue.
    QObject m_receiver;
    std::atomic<bool> m_wakePending{false};
};

} // namespace zrk
