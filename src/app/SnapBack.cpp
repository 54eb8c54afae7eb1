#include "app/SnapBack.h"

#include <QResizeEvent>
#include <QScopedValueRollback>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <chrono>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kInsistence = 200ms;
constexpr std::chrono::milliseconds kForgotten = 3s;
constexpr int kMostAttempts = 6;

std::chrono::milliseconds pauseAfter(int attempts) {
    constexpr int kMostDoublings = 3;
    return 250ms * (1 << std::clamp(attempts - 1, 0, kMostDoublings));
}

} // namespace

SnapBack::SnapBack(QWidget& window) : m_window(window) {
    m_retry.setSingleShot(true);
    m_retry.callOnTimeout(this, [this] { goBack(); });
}

void SnapBack::refuse(QSize lastGood) {
    if (m_goingBack)
        return;
    m_lastGood = lastGood;
    const auto quiet = m_isAnswered ? kInsistence : kForgotten;
    if (m_window.size() != m_refused || m_sinceAttempt.elapsed() >= quiet.count())
        m_attempts = 0;
    m_refused = m_window.size();
    // The same size at once as the answer means that it is held, so another request at once is useless.
    if (m_attempts == 0 || m_sinceAttempt.elapsed() >= kInsistence.count())
        goBack();
    else
        m_retry.start(pauseAfter(m_attempts));
}

void SnapBack::accept() {
    if (!m_goingBack && m_window.size() != m_lastGood)
        m_retry.stop();
}

void SnapBack::goBack() {
    if (m_attempts >= kMostAttempts)
        return;
    ++m_attempts;
    m_isAnswered = false;
    if (QWindow* native = m_window.windowHandle())
        native->installEventFilter(this);
    {
        const QScopedValueRollback goingBack(m_goingBack, true);
        // After an ignored request the window believes that it has the size: request another one.
        if (m_window.size() == m_lastGood)
            m_window.resize(m_lastGood + QSize(0, 1));
        m_window.resize(m_window.width(), m_lastGood.height());
        m_window.resize(m_lastGood.width(), m_window.height());
    }
    m_sinceAttempt.start();
    if (!m_isAnswered)
        m_retry.start(pauseAfter(m_attempts));
}

// Follows the sizes that the system gives the window. The answer to an older request may come after the
// window was given another size.
bool SnapBack::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::Resize && static_cast<QResizeEvent*>(event)->size() == m_lastGood &&
        m_window.size() == m_lastGood) {
        m_isAnswered = true;
        m_retry.stop();
    }
    return false;
}

} // namespace zrk
