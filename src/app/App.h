#pragma once

#include "app/AboutBox.h"
#include "app/AppOptions.h"
#include "app/ConsoleLog.h"
#include "app/MainWindow.h"
#include "app/SystemInfo.h"
#include "app/WaitForCommForm.h"
#include "app/WindowFileDialog.h"
#include "app/WindowMessageBoxes.h"
#include "loader/Loader.h"
#include "loader/ThisProgram.h"
#include "machine/DetachedStarter.h"
#include "machine/InterruptSignal.h"
#include "machine/MachineCatalog.h"
#include "machine/MachinePorts.h"
#include "machine/QtEventLoop.h"
#include "machine/TracedPorts.h"
#include "platform/Registry.h"

#include <QPointer>

#include <memory>

namespace zrk {

/// The window program: all of its parts, wired together.
class App {
  public:
    explicit App(const AppOptions& options);
    ~App();
    App(const App&) = delete;
    App& operator=(const App&) = delete;

    /// Starts up, then shows the window, which is complete from its first frame on. A message box of start-up
    /// shows the window first, to be centred on it. Yields, so the event loop must be running.
    void start();

    /// Completes trace and log. The destructor does so, too.
    void endRecords();

  private:
    /// Returns the window that a message box belongs to: the wait dialog or the About box while it is open.
    [[nodiscard]] QWidget* topWindow();
    void showAbout();
    /// Shows the window, the first time, and returns when it has its place on the screen. Yields.
    void showWindow();
    void bringUp();
    void leave();

    IniChoice m_ini;
    int m_portNumber;
    bool m_bringsUp;
    QtEventLoop m_loop;
    InterruptSignal m_interrupt;
    MachinePorts m_ports;
    TracedPorts m_tracedPorts;
    MachineCatalog m_catalog;
    WindowMessageBoxes m_boxes;
    WindowFileDialog m_fileDialog;
    WindowWaitDialog m_waitDialog;
    Loader m_loader;
    ConsoleLog m_log;
    std::unique_ptr<Registry> m_registry;
    DetachedStarter m_starter;
    SystemInfo m_systemInfo;
    MainWindow m_window;
    bool m_isShown = false;
    QPointer<QWidget> m_about; ///< while it is open
};

} // namespace zrk
