#include "app/App.h"

#include "app/FirstExposure.h"
#include "loader/ThisProgram.h"

#include <QDir>
#include <QFileInfo>
#include <QScreen>

namespace zrk {
namespace {

/// Where relative image paths and the file dialogs start: the INI file's folder, else the program's.
QString imageFolder(const QString& iniPath) {
    if (iniPath.isEmpty())
        return programFacts().folder;
    return QDir::toNativeSeparators(QFileInfo(iniPath).absolutePath());
}

} // namespace

App::App(const AppOptions& options)
    : m_iniPath(QDir::toNativeSeparators(options.iniPath)), m_bringsUp(options.bringUp),
      m_ports(m_loop, PortNames(options.ports), {.lineRate = options.lineRate}),
      m_boxes([this] { return topWindow(); }), m_fileDialog([this] { return &m_window; }),
      m_registry(createRegistry()), m_systemInfo(*m_registry, m_starter, m_boxes),
      m_waitDialog([this] { return &m_window; }),
      m_loader({m_loop, m_ports, m_boxes, m_fileDialog, m_waitDialog}, imageFolder(options.iniPath)),
      m_window(m_loader, m_boxes, [this] { showAbout(); }) {}

void App::start() {
    m_window.show();
    // A message box that start-up brings is centred on the window, wherever that is.
    onceOnScreen(m_window, [this] {
        m_window.fitInto(m_window.screen()->availableGeometry());
        m_loader.startUp.Form_Load(programFacts(), m_loader.paths(), m_iniPath);
        if (m_bringsUp)
            bringUp();
    });
}

void App::bringUp() {
    if (m_loader.controls.cmdStartPrimary.Enabled)
        m_loader.bringUp.cmdStartPrimary_Click();
    if (m_loader.controls.cmdStartSecondary.Enabled)
        m_loader.bringUp.cmdStartSecondary_Click();
}

QWidget* App::topWindow() {
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
