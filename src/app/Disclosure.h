#pragma once

#include <QWidget>

class QHBoxLayout;
class QToolButton;

namespace zrk {

/// A small button that unfolds a row of rarely needed controls beside it. The folded row keeps its place, so
/// nothing around it moves.
class Disclosure : public QWidget {
    Q_OBJECT

  public:
    explicit Disclosure(const QString& title, QWidget* parent);

    /// Puts the row to the left of the button instead of to its right.
    void unfoldToTheLeft();

    [[nodiscard]] QToolButton* toggle() const { return m_toggle; }

    void addWidget(QWidget* widget, int stretch = 0);

  private:
    QToolButton* m_toggle;
    QHBoxLayout* m_line;
    QHBoxLayout* m_row;
    QWidget* m_content;
};

} // namespace zrk
