#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QSize>
#include <QTimer>

class QWidget;

namespace zrk {

/// A way back to a window's last good size. A window manager may keep another size for a while, for example
/// while the user drags, and need not even answer; so the request is repeated some times.
class SnapBack final : public QObject {
  public:
    /// The window must outlive this.
    explicit SnapBack(QWidget& window);

    /// Requests the last good size, because the window has one that is too small.
    void refuse(QSize lastGood);

    /// Accepts the window's present size.
    void accept();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void goBack();

    QWidget& m_window;
    QSize m_lastGood;
    QSize m_refused;
    QElapsedTimer m_sinceAttempt;
    QTimer m_retry;
    int m_attempts = 0;
    bool m_goingBack = false;
    bool m_isAnswered = false; ///< the system has given the window its last good size
};

} // namespace zrk
