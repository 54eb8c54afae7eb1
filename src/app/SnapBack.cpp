#include "app/SnapBack.h"

#include <QScopedValueRollback>
#include <QWidget>

#include <algorithm>
#include <chrono>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kInsistence = 200ms;
constexpr std::chrono::milliseconds kPause = 250ms;
constexpr int kMostDoublings = 3; // of the pause
constexpr int kMostAttempts = 6;

} // namespace

SnapBack::SnapBack(QWidget& window) : m_window(window) {
    m_retry.setSingleShot(true);
    m_retry.callOnTimeout(&m_window, [this] { goBack(); });
}

void SnapBack::refuse(QSize lastGood) {
    if (m_goingBack)
        return;
    m_lastGood = lastGood;
    if (m_window.size() != m_refused)
        m_attempts = 0;
    m_refused = m_window.size();
    // The same size at once as the answer means that it is held, and asking at once again is no use.
    if (m_attempts == 0 || m_sinceAttempt.elapsed() >= kInsistence.count())
        goBack();
}

void SnapBack::accept() {
    if (m_goingBack || m_window.size() == m_lastGood)
        return;
    m_retry.stop();
    m_attempts = 0;
}

void SnapBack::goBack() {
    if (m_attempts >= kMostAttempts)
        return;
    const QScopedValueRollback goingBack(m_goingBack, true);
    // A request that went unheard leaves the window believing that it has the size: ask for another one.
    if (m_window.size() == m_lastGood)
        m_window.resize(m_lastGood + QSize(0, 1));
    m_window.resize(m_window.width(), m_lastGood.height());
    m_window.resize(m_lastGood.width(), m_window.height());
    m_sinceAttempt.start();
    m_retry.start(kPause * (1 << std::min(m_attempts++, kMostDoublings)));
}

} // namespace zrk
