#pragma once

#include <QDialog>

class QLabel;

namespace zrk {

class SystemInfo;

/// `frmAbout`: the loader's title, version and icon, and a button for the desktop's System Information.
class AboutBox final : public QDialog {
    Q_OBJECT

  public:
    AboutBox(SystemInfo& systemInfo, QWidget* parent);

    /// Fills the caption and the labels; runs each time the box is opened.
    void Form_Load();
    /// Closes the box.
    void cmdOK_Click();
    /// Starts the System Information program; a message box reports a failure, and the box stays open.
    void cmdSysInfo_Click();

  private:
    SystemInfo& m_systemInfo;
    QLabel* m_lblTitle;
    QLabel* m_lblVersion;
};

} // namespace zrk
