#include "app/MainWindow.h"

#include "app/Actions.h"
#include "app/AddressBoxes.h"
#include "app/ConsoleSaving.h"
#include "app/ConsoleTools.h"
#include "app/ConsoleView.h"
#include "app/FormScroller.h"
#include "app/GreyReasons.h"
#include "app/Identity.h"
#include "app/IniFiles.h"
#include "app/KeysHelp.h"
#include "app/LoaderForm.h"
#include "app/PastePause.h"
#include "app/ScreenReader.h"
#include "app/SlotDrop.h"
#include "app/SlotFrames.h"
#include "app/StatusPanels.h"
#include "app/WindowBinding.h"
#include "app/terminal/ScreenSwitch.h"
#include "app/terminal/ScreenView.h"
#include "loader/Loader.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGroupBox>
#include <QLayout>
#include <QMenuBar>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace zrk {
namespace {

constexpr double kTwipsPerInch = 1440.0;

/// A converter of sizes in pixels to twips and back.
class Twips {
  public:
    explicit Twips(const QWidget& widget)
        : m_perPixelY(kTwipsPerInch / widget.logicalDpiY()),
          m_perPixelX(kTwipsPerInch / widget.logicalDpiX()) {}

    [[nodiscard]] FormSize of(QSize pixels) const {
        return {pixels.height() * m_perPixelY, pixels.width() * m_perPixelX};
    }
    [[nodiscard]] QSize pixels(FormSize twips) const {
        return {qRound(twips.width / m_perPixelX), qRound(twips.height / m_perPixelY)};
    }

  private:
    double m_perPixelY;
    double m_perPixelX;
};

} // namespace

MainWindow::MainWindow(Loader& loader, const PortCatalog& catalog, const QString& store,
                       std::function<void()> showAbout)
    : m_loader(loader), m_panel(new LoaderForm(m_widgets, this)), m_binder(loader.state.OperationActive),
      m_showAbout(std::move(showAbout)) {
    setObjectName(QStringLiteral("frmLoader"));
    setWindowTitle(applicationTitle());
    buildMenus(store);
    buildStatusBar(m_widgets, *this);
    setCentralWidget(new FormScroller(m_panel, this));
    m_widgets.consoleTools = new ConsoleTools({m_widgets.txtStatus, m_widgets.scrStatus},
                                              m_widgets.fraControl, [&loader] { saveConsole(loader); });
    bindWindow(m_binder, m_widgets, loader, catalog);
    m_screenSwitch = new ScreenSwitch(m_widgets, loader, store, this);
    m_widgets.consoleTools->addScreenEntry(m_screenSwitch->entry());
    addAction(m_screenSwitch->entry()); // for its key
    QMenu* pastePause = makePastePauseMenu(loader.keys, store, this);
    m_widgets.txtStatus->setPasteMenu(pastePause);
    m_widgets.scrStatus->setPasteMenu(pastePause);
    bindGreyReasons(m_binder, m_widgets, loader);
    callWhenOver();
    nameForScreenReader(m_binder, m_widgets, loader.controls);
    setTabOrders(m_widgets);

    auto* addresses = new AddressBoxes(m_widgets, loader.addresses, this);
    wireActions(m_widgets, loader, *addresses, {[this] { mnuExit_Click(); }, [this] { mnuAbout_Click(); }});
    new SlotDrop(
        m_widgets, [&loader] { return !loader.state.OperationActive; },
        [&loader](int slot, const QString& path) {
            loader.state.Remark = {};
            loader.imageSlots.fill(slot, path);
        },
        this);

    m_panel->placeControls(m_widgets, screen()->availableSize());
    // The resize handler, not the contents, decides how small the window gets.
    layout()->setSizeConstraint(QLayout::SetNoConstraint);
    resize(sizeHint());
    placeStatusPanels(m_widgets, width());
    m_screenSwitch->shownView()->setFocus();
}

MainWindow::~MainWindow() {
    unbindWindow(m_loader);
}

void MainWindow::fitInto(const QRect& available) {
    if (!available.contains(frameGeometry()))
        shrinkInto(available);
    placeStatusPanels(m_widgets, std::min(width(), sizeHint().width()));
}

void MainWindow::shrinkInto(const QRect& available) {
    const QSize frame = frameGeometry().size() - size();
    // A lower height would be refused.
    const int lowest = height() - m_widgets.txtStatus->height();
    const QSize room = available.size() - frame;
    resize(std::min(width(), room.width()), std::min(height(), std::max(lowest, room.height())));
    const QRect placed = frameGeometry();
    move(std::max(available.x(), std::min(placed.x(), available.right() + 1 - placed.width())),
         std::max(available.y(), std::min(placed.y(), available.bottom() + 1 - placed.height())));
}

void MainWindow::buildMenus(const QString& store) {
    QMenu* file = named(new QMenu(this), QStringLiteral("mnuFile"));
    m_widgets.mnuFile = menuBar()->addMenu(file);
    m_widgets.mnuLoadIni = named(file->addAction(QString()), QStringLiteral("mnuLoadIni"));
    m_widgets.mnuWriteIni = named(file->addAction(QString()), QStringLiteral("mnuWriteIni"));
    m_widgets.mnuExecScript = named(file->addAction(QString()), QStringLiteral("mnuExecScript"));
    named(file->addSeparator(), QStringLiteral("sep"));
    m_widgets.mnuExit = named(file->addAction(QString()), QStringLiteral("mnuExit"));
    m_widgets.mnuExit->setMenuRole(QAction::QuitRole);
    file->addSeparator();
    const auto* iniFiles = new IniFiles(*file, m_loader, store);
    m_widgets.mnuOpenIni = iniFiles->openEntry();
    m_widgets.mnuRecentIni = iniFiles->recentEntry();
    m_widgets.mnuSaveIniAs = iniFiles->saveEntry();
    file->addSeparator();
    m_widgets.mnuLogToFile = named(file->addAction(QString()), QStringLiteral("mnuLogToFile"));
    m_widgets.mnuLogTimes = named(file->addAction(QString()), QStringLiteral("mnuLogTimes"));
    m_widgets.mnuRecordTrace = named(file->addAction(QString()), QStringLiteral("mnuRecordTrace"));
    m_widgets.mnuAbout = named(menuBar()->addAction(QString()), QStringLiteral("mnuAbout"));
    auto* help = named(menuBar()->addAction(QStringLiteral("&Help")), QStringLiteral("mnuHelp"));
    connect(help, &QAction::triggered, this, [this] { showKeysHelp(this); });
}

/// Alerts a user who works in another window.
void MainWindow::callWhenOver() {
    m_binder.follow(m_loader.state.OperationActive, [this] {
        if (!m_loader.state.OperationActive && isVisible())
            QApplication::alert(this);
    });
}

void MainWindow::mnuExit_Click() {
    close();
}

void MainWindow::mnuAbout_Click() {
    m_showAbout();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(m_loader.transfer.mayBeEnded() && m_loader.portControl.Form_Unload() == 0);
    if (event->isAccepted() && m_whenClosing)
        m_whenClosing();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    frmLoader_Form_Resize();
}

void MainWindow::frmLoader_Form_Resize() {
    const Twips twips(*this);
    QGroupBox& frame = *m_widgets.fraControl;
    ConsoleView& text = *m_widgets.txtStatus;
    const FormResize::Step step = m_formResize.frmLoader_Form_Resize(
        isMinimized(), twips.of(size()), {twips.of(frame.size()), twips.of(text.size())});
    if (step.place) {
        frame.resize(twips.pixels(step.place->frame));
        text.resize(twips.pixels(step.place->text));
        m_widgets.scrStatus->setGeometry(text.geometry());
        m_snapBack.accept();
    } else if (step.snapBack) {
        m_snapBack.refuse(twips.pixels(*step.snapBack));
    }
}

} // namespace zrk
