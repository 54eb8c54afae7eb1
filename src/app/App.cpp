#include "app/App.h"

#include "app/FileRecording.h"
#include "app/FirstExposure.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QScreen>
#include <QStandardPaths>

#include <utility>

namespace zrk {
namespace {

constexpr int kCancelled = 130; // what the command line ends with, too

/// Returns the file that keeps the window's settings from one run to the next.
QString windowStore() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/zrk-loader/window.conf");
}

} // namespace

App::App(const AppOptions& options)
    : m_ini(chooseIni(options.iniPath, programFacts())), m_portNumber(options.portNumber),
      m_bringsUp(options.bringUp), m_interrupt(m_loop, [this](bool /*ended*/) { leave(); }),
      m_ports(m_loop, PortNames(options.ports), {.lineRate = options.lineRate}),
      m_tracedPorts(m_loop, m_ports), m_catalog(PortNames(options.ports)),
      m_boxes([this] { return topWindow(); }), m_fileDialog([this] { return &m_window; }),
      m_waitDialog([this] { return &m_window; }),
      m_loader({m_loop, m_tracedPorts, m_boxes, m_fileDialog, m_waitDialog}, m_ini.folder),
      m_log(m_loop, m_loader.controls.txtStatus), m_registry(createRegistry()),
      m_systemInfo(*m_registry, m_starter, m_loader),
      m_window(m_loader, m_catalog, windowStore(), [this] { showAbout(); }) {
    m_loader.activity.limitRate(options.lineRate.value_or(TransferRate::kLineBytesPerSecond));
    recordTrace(m_window.traceEntry(), m_tracedPorts, m_loader);
    logToFile(m_window.logEntry(), m_window.logTimesEntry(), m_log, m_loader, windowStore());
    m_window.onClosing([this] {
        endRecords();
        m_loop.yield(); // reports a failure of their last bytes
    });
    // At the end of the user's session this may be the last call that the program gets.
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &m_window, [this] { endRecords(); });
}

App::~App() {
    m_loader.port.CloseComPort();
    endRecords();
}

void App::endRecords() {
    m_tracedPorts.stopTrace();
    m_log.stop();
}

/// Ends what runs, as by Cancel, and then the program: the user is not there to be asked.
void App::leave() {
    (void)m_loader.portControl.Form_Unload();
    QCoreApplication::exit(kCancelled);
}

void App::start() {
    m_loader.startUp.Form_Load(programFacts(), m_ini.path);
    m_loader.controls.cmbComPort.ListIndex = m_portNumber - 1;
    showWindow();
    if (m_bringsUp)
        bringUp();
}

void App::showWindow() {
    if (std::exchange(m_isShown, true))
        return;
    m_window.show();
    QEventLoop untilOnScreen;
    onceOnScreen(m_window, [&untilOnScreen] { untilOnScreen.quit(); });
    untilOnScreen.exec(QEventLoop::ExcludeUserInputEvents);
    m_window.fitInto(m_window.screen()->availableGeometry());
}

void App::bringUp() {
    if (m_loader.controls.cmdStartPrimary.Enabled)
        m_loader.bringUp.cmdStartPrimary_Click();
    if (m_loader.controls.cmdStartSecondary.Enabled)
        m_loader.bringUp.cmdStartSecondary_Click();
}

QWidget* App::topWindow() {
    showWindow();
    if (QWidget* waiting = m_waitDialog.openWindow())
        return waiting;
    return m_about.isNull() ? static_cast<QWidget*>(&m_window) : m_about.data();
}

void App::showAbout() {
    AboutBox about(m_systemInfo, &m_window);
    m_about = &about;
    about.exec();
}

} // namespace zrk
