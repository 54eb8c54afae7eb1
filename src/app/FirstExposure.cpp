#include "app/FirstExposure.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <chrono>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kLongestWait = 1s;

class FirstExposure final : public QObject {
  public:
    FirstExposure(QWindow& window, std::function<void()> then) : QObject(&window), m_then(std::move(then)) {
        m_limit.setSingleShot(true);
        m_limit.callOnTimeout(this, [this] { finish(); });
        m_limit.start(window.isExposed() ? 0ms : kLongestWait);
        window.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        // Other events, such as the place on the screen, are handled first.
        if (event->type() == QEvent::Expose && static_cast<QWindow*>(watched)->isExposed())
            m_limit.start(0ms);
        return false;
    }

  private:
    void finish() {
        deleteLater();
        parent()->removeEventFilter(this);
        m_then();
    }

    std::function<void()> m_then;
    QTimer m_limit;
};

} // namespace

void onceOnScreen(QWidget& window, std::function<void()> then) {
    new FirstExposure(*window.windowHandle(), std::move(then));
}

} // namespace zrk
