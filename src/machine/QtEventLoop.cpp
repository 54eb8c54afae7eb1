#include "machine/QtEventLoop.h"

#include <QTimer>

namespace zrk {
namespace {

class QtTimer final : public Timer {
  public:
    explicit QtTimer(std::function<void()> tick) {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, std::move(tick));
    }

    void start(std::chrono::milliseconds interval) override { m_timer.start(interval); }
    void stop() override { m_timer.stop(); }
    [[nodiscard]] bool isActive() const override { return m_timer.isActive(); }

  private:
    QTimer m_timer;
};

} // namespace

QtEventLoop::QtEventLoop() = default;
QtEventLoop::~QtEventLoop() = default;

void QtEventLoop::yield() {
    m_loop.processEvents(QEventLoop::AllEvents);
}

void QtEventLoop::wait() {
    m_loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtEventLoop::wake() {
    if (m_wakePending.exchange(true))
        return;
    QMetaObject::invokeMethod(
        &m_receiver, [this] { m_wakePending = false; }, Qt::QueuedConnection);
}

void QtEventLoop::post(std::function<void()> task) {
    QMetaObject::invokeMethod(&m_receiver, std::move(task), Qt::QueuedConnection);
}

std::unique_ptr<Timer> QtEventLoop::createTimer(std::function<void()> tick) {
    return std::make_unique<QtTimer>(std::move(tick));
}

} // namespace zrk
