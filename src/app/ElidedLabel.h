#pragma once

#include <QLabel>

namespace zrk {

/// A label of any width that shortens a longer text, which its tool tip then shows whole. A plain label would
/// force its window to the width of its text.
class ElidedLabel : public QLabel {
    Q_OBJECT

  public:
    explicit ElidedLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

    [[nodiscard]] QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace zrk
