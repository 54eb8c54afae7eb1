#pragma once

#include "app/AboutBox.h"
#include "app/AppOptions.h"
#include "app/MainWindow.h"
#include "app/SystemInfo.h"
#include "app/WaitDialogWindow.h"
#include "app/WindowFileDialog.h"
#include "app/WindowMessageBoxes.h"
#include "loader/Loader.h"
#include "machine/DetachedStarter.h"
#include "machine/MachinePorts.h"
#include "machine/QtEventLoop.h"
#include "platform/Registry.h"

#include <QPointer>

#include <memory>

namespace zrk {

/// The window program: everything it consists of, wired together.
class App {
  public:
    explicit App(const AppOptions& options);

    /// Shows the window; what start-up has to tell follows on top of it.
    void start();

  private:
    /// The window that a message box belongs to: the wait dialog or the About box while it is open.
    [[nodiscard]] QWidget* topWindow();
    void showAbout();
    void bringUp();

    QString m_iniPath;
    bool m_bringsUp;
    QtEventLoop m_loop;
    MachinePorts m_ports;
    WindowMessageBoxes m_boxes;
    WindowFileDialog m_fileDialog;
    std::unique_ptr<Registry> m_registry;
    DetachedStarter m_starter;
    SystemInfo m_systemInfo;
    WindowWaitDialog m_waitDialog;
    Loader m_loader;
    MainWindow m_window;
    QPointer<QWidget> m_about; ///< while it is open
};

} // namespace zrk
