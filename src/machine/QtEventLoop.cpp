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

QtEventLoop::QtEventLoop(Clock clock) : m_clock(std::move(clock)) {}
QtEventLoop::~QtEventLoop() = default;

void QtEventLoop::yield() {
    if (m_hasNews || m_clock() - m_lastTurn >= kTurnInterval)
        turn(QEventLoop::AllEvents);
}

void QtEventLoop::wait() {
    turn(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtEventLoop::turn(QEventLoop::ProcessEventsFlags flags) {
    m_hasNews = false;
    m_loop.processEvents(flags);
    m_lastTurn = m_clock();
}

void QtEventLoop::wake() {
    if (m_wakePending.exchange(true))
        return;
    QMetaObject::invokeMethod(
        &m_receiver, [this] { m_wakePending = false; }, Qt::QueuedConnection);
    m_hasNews = true;
}

void QtEventLoop::post(std::function<void()> task) {
    QMetaObject::invokeMethod(&m_receiver, std::move(task), Qt::QueuedConnection);
    m_hasNews = true;
}

std::unique_ptr<Timer> QtEventLoop::createTimer(std::function<void()> tick) {
    return std::make_unique<QtTimer>(std::move(tick));
}

} // namespace zrk
