#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QSize>
#include <QTimer>

class QWidget;

namespace zrk {

/// Takes a window back to its last good size. A window manager may hold on to another size for a while, as
/// long as the user drags for instance, and need not even answer; so it is asked again some times.
class SnapBack final : public QObject {
  public:
    /// The window must outlive this.
    explicit SnapBack(QWidget& window);

    /// The window has a size that is too small.
    void refuse(QSize lastGood);

    /// The window has a size that it can keep.
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
