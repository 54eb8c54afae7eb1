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

    /// `parent` names the window to belong to each time. `run` shows the box to a person unless a test
    /// answers in their place.
    explicit WindowMessageBoxes(std::function<QWidget*()> parent, Runner run = {});

    Answer show(const MessageBox& box) override;

  private:
    std::function<QWidget*()> m_parent;
    Runner m_run;
};

} // namespace zrk
