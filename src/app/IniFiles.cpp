#include "app/IniFiles.h"

#include "app/LoaderWidgets.h"
#include "config/Paths.h"
#include "files/PrintableText.h"
#include "loader/Loader.h"
#include "platform/FileDialog.h"

#include <QAction>
#include <QDir>
#include <QMenu>
#include <QSettings>

#include <utility>

namespace zrk {
namespace {

const QString kRecentKey = QStringLiteral("recentIniFiles");

} // namespace

IniFiles::IniFiles(QMenu& file, Loader& loader, QString store)
    : QObject(&file), m_loader(loader), m_store(std::move(store)),
      m_open(named(file.addAction(QStringLiteral("&Open INI file...")), QStringLiteral("mnuOpenIni"))),
      m_recent(named(file.addMenu(QStringLiteral("&Recent INI files")), QStringLiteral("mnuRecentIni"))) {
    connect(m_open, &QAction::triggered, this, &IniFiles::mnuOpenIni_Click);
    connect(m_recent, &QMenu::aboutToShow, this, &IniFiles::fillRecent);
}

QAction* IniFiles::recentEntry() const {
    return m_recent->menuAction();
}

void IniFiles::mnuOpenIni_Click() {
    FileRequest request;
    request.title = QStringLiteral("Open INI file");
    request.filters = {{QStringLiteral("INI Files (.INI)"), QStringLiteral("*.INI *.ini")},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    request.folder = Paths(QString()).FolderOf(m_loader.state.IniPath);
    const QString path = m_loader.fileDialog.openFile(request);
    if (!path.isEmpty())
        open(path);
}

void IniFiles::open(const QString& path) {
    // An operation may have begun during the dialog.
    if (m_loader.state.OperationActive)
        return;
    QStringList paths = recent();
    paths.removeAll(path);
    if (!FileExists(path, true)) {
        keepRecent(paths);
        m_loader.tell(QStringLiteral("Cannot read %1: it is missing, empty or you may not read it.\r\n"
                                     "The slots stay as they are.")
                          .arg(printableText(path)),
                      MessageIcon::Exclamation, QStringLiteral("Open INI file"));
        return;
    }
    const QString before = m_loader.state.IniPath;
    if (before != path && FileExists(before, true)) {
        paths.removeAll(before);
        paths.prepend(before);
    }
    keepRecent(QStringList{path} + paths);
    m_loader.iniLoader.openIni(path);
}

void IniFiles::fillRecent() {
    m_recent->clear();
    int number = 0;
    for (const QString& path : recent()) {
        QString shown = printableText(QDir::toNativeSeparators(path));
        shown.replace(QLatin1Char('&'), QLatin1String("&&"));
        m_recent->addAction(QStringLiteral("&%1 %2").arg(++number).arg(shown), this,
                            [this, path] { open(path); });
    }
    if (number == 0)
        m_recent->addAction(QStringLiteral("None yet"))->setEnabled(false);
}

QStringList IniFiles::recent() const {
    return QSettings(m_store, QSettings::IniFormat).value(kRecentKey).toStringList().mid(0, kMostRecent);
}

void IniFiles::keepRecent(const QStringList& paths) const {
    QSettings(m_store, QSettings::IniFormat).setValue(kRecentKey, paths.mid(0, kMostRecent));
}

} // namespace zrk
