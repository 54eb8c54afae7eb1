#pragma once

#include <QIcon>
#include <QLabel>

namespace zrk {

/// A label of any width that shortens a longer text, which its tool tip then shows whole. A plain label would
/// force its window to the width of its text.
class ElidedLabel : public QLabel {
    Q_OBJECT

  public:
    explicit ElidedLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

    /// Shows an icon before the text; a null icon takes no room.
    void setIcon(const QIcon& icon);

    [[nodiscard]] QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

  Q_SIGNALS:
    void clicked();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    QIcon m_icon;
};

} // namespace zrk
