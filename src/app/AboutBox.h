#pragma once

#include <QDialog>

class QLabel;

namespace zrk {

class SystemInfo;

/// `frmAbout`: the tool's title, version and icon, and a way to the desktop's System Information.
class AboutBox final : public QDialog {
    Q_OBJECT

  public:
    AboutBox(SystemInfo& systemInfo, QWidget* parent);

    /// Fills the caption and the labels; runs each time the box is opened.
    void Form_Load();

  private:
    QLabel* m_lblTitle;
    QLabel* m_lblVersion;
};

} // namespace zrk
