#pragma once

#include "app/Binder.h"
#include "app/FormResize.h"
#include "app/LoaderWidgets.h"
#include "app/SnapBack.h"

#include <QMainWindow>

namespace zrk {

class LoaderForm;
class PortCatalog;
class ScreenSwitch;
struct Loader;

/// `frmLoader`: builds the widgets, binds them to the loader's controls and leads what the user does to
/// the loader's handlers. Holds no state of its own but the layout's.
class MainWindow final : public QMainWindow {
    Q_OBJECT

  public:
    /// Loader and catalog must outlive the window; `store` is the file that keeps settings from one run to
    /// the next; `showAbout` opens the About box.
    MainWindow(Loader& loader, const PortCatalog& catalog, const QString& store,
               std::function<void()> showAbout);
    ~MainWindow() override;

    /// The entries of the File menu that record; what they do is up to the program.
    [[nodiscard]] QAction& traceEntry() const { return *m_widgets.mnuRecordTrace; }
    [[nodiscard]] QAction& logEntry() const { return *m_widgets.mnuLogToFile; }
    [[nodiscard]] QAction& logTimesEntry() const { return *m_widgets.mnuLogTimes; }

    /// Called before the window closes: the last chance to report a failure.
    void onClosing(std::function<void()> listener) { m_whenClosing = std::move(listener); }

    /// Makes the window, once it is shown, fit into `available` with its frame. Where the controls alone do
    /// not fit, the top left of the window stays in sight. The status bar's panels get their places for that
    /// width and keep them from then on.
    void fitInto(const QRect& available);

    /// Closes the window, as its close button does.
    void mnuExit_Click();
    /// Opens the About box; the event loop runs until it is closed.
    void mnuAbout_Click();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void shrinkInto(const QRect& available);
    void buildMenus(const QString& store);
    void callWhenOver();
    void frmLoader_Form_Resize();

    Loader& m_loader;
    LoaderWidgets m_widgets;
    LoaderForm* m_panel;
    Binder m_binder;
    ScreenSwitch* m_screenSwitch = nullptr;
    FormResize m_formResize;
    SnapBack m_snapBack{*this};
    std::function<void()> m_showAbout;
    std::function<void()> m_whenClosing;
};

} // namespace zrk
