#pragma once

#include "platform/MessageBoxes.h"

#include <functional>

class QMessageBox;
class QWidget;

namespace zrk {

/// Message boxes of the desktop, modal to and centred on the window that they belong to.
class WindowMessageBoxes final : public MessageBoxes {
  public:
    /// Runs a box and returns the button that ended it, a QMessageBox::StandardButton.
    using Runner = std::function<int(QMessageBox&)>;

    /// `parent` returns the window that a box belongs to. `run` shows the box to a user unless a test answers
    /// it.
    explicit WindowMessageBoxes(std::function<QWidget*()> parent, Runner run = {});

    Answer show(const MessageBox& box) override;

  private:
    std::function<QWidget*()> m_parent;
    Runner m_run;
};

} // namespace zrk
