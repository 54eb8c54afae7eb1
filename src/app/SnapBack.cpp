#include "app/SnapBack.h"

#include <QWidget>

#include <algorithm>
#include <chrono>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kInsistence = 200ms;
constexpr std::chrono::milliseconds kPause = 250ms;
constexpr int kMostDoublings = 3; // of the pause
constexpr int kMostAttempts = 10;

} // namespace

SnapBack::SnapBack(QWidget& window) : m_window(window) {
    m_retry.setSingleShot(true);
    m_retry.callOnTimeout(&m_window, [this] { goBack(); });
}

void SnapBack::refuse(QSize lastGood) {
    m_lastGood = lastGood;
    if (m_window.size() != m_refused)
        m_attempts = 0;
    m_refused = m_window.size();
    if (m_attempts >= kMostAttempts)
        return;
    // The same size at once as the answer means that it is held, and asking at once again is no use.
    if (m_attempts == 0 || m_sinceAttempt.elapsed() >= kInsistence.count())
        goBack();
    else
        m_retry.start(kPause * (1 << std::min(m_attempts - 1, kMostDoublings)));
}

void SnapBack::accept() {
    m_retry.stop();
    if (m_window.size() != m_lastGood)
        m_attempts = 0;
}

void SnapBack::goBack() {
    if (m_window.isMinimized())
        return;
    ++m_attempts;
    m_sinceAttempt.start();
    m_window.resize(m_window.width(), m_lastGood.height());
    m_window.resize(m_lastGood.width(), m_window.height());
}

} // namespace zrk
