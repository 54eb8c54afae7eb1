#pragma once

#include "platform/FileDialog.h"

#include <functional>

class QFileDialog;
class QWidget;

namespace zrk {

/// The platform's own file dialog, on top of the main window. It opens in the requested folder, and after a
/// choice in the folder of the chosen file.
class WindowFileDialog final : public FileDialog {
  public:
    /// Runs the dialog; returns true if a file was accepted.
    using Runner = std::function<bool(QFileDialog&)>;

    explicit WindowFileDialog(std::function<QWidget*()> parent, Runner run = {});

    [[nodiscard]] QString openFile(const FileRequest& request) override;

  private:
    std::function<QWidget*()> m_parent;
    Runner m_run;
    QString m_lastFolder; ///< of the file chosen last, where the next dialog starts
};

} // namespace zrk
