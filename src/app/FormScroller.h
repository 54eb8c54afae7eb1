#pragma once

#include <QScrollArea>

namespace zrk {

/// The scroll area of the main window. On a screen or in a window that is too narrow, it shows a part, which
/// follows the keyboard from control to control.
class FormScroller final : public QScrollArea {
    Q_OBJECT

  public:
    FormScroller(QWidget* panel, QWidget* parent);
    ~FormScroller() override;

    [[nodiscard]] QSize sizeHint() const override { return widget()->sizeHint(); }

  protected:
    bool focusNextPrevChild(bool next) override;

  private:
    void showWhole(const QWidget* control);
};

} // namespace zrk
