#include "app/IniFiles.h"

#include "app/LoaderWidgets.h"
#include "config/IniText.h"
#include "config/Paths.h"
#include "files/PrintableText.h"
#include "loader/Loader.h"
#include "platform/FileDialog.h"
#include "platform/RuntimeFailure.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QSaveFile>
#include <QSettings>

#include <utility>

namespace zrk {
namespace {

const QString kRecentKey = QStringLiteral("recentIniFiles");

/// Writes all of it or nothing. Fails with File, or as iniTextOf does.
void writeIni(const QString& path, const Controls& controls) {
    const QFileInfo info(path);
    for (const TextBox& image : controls.txtFilNam) {
        const QString real = QFileInfo(image.Tag.value()).canonicalFilePath();
        if (!real.isEmpty() && real == info.canonicalFilePath())
            throw RuntimeFailure(
                FailureKind::File,
                QStringLiteral("%1 is the file of a slot. Choose another name for the INI file.")
                    .arg(printableText(path)));
    }
    const QByteArray text = iniTextOf(controls, info.absolutePath()).toUtf8();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        throw RuntimeFailure(FailureKind::File, QStringLiteral("Cannot write %1: %2. The file is unchanged.")
                                                    .arg(printableText(path), file.errorString()));
}

} // namespace

IniFiles::IniFiles(QMenu& file, Loader& loader, QString store)
    : QObject(&file), m_loader(loader), m_store(std::move(store)),
      m_open(named(file.addAction(QStringLiteral("&Open INI file...")), QStringLiteral("mnuOpenIni"))),
      m_recent(named(file.addMenu(QStringLiteral("&Recent INI files")), QStringLiteral("mnuRecentIni"))),
      m_save(named(file.addAction(QStringLiteral("&Save INI file as...")), QStringLiteral("mnuSaveIniAs"))) {
    connect(m_save, &QAction::triggered, this, &IniFiles::mnuSaveIniAs_Click);
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

void IniFiles::mnuSaveIniAs_Click() {
    FileRequest request;
    request.title = QStringLiteral("Save INI file as");
    request.filters = {{QStringLiteral("INI Files (.INI)"), QStringLiteral("*.INI *.ini")},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    request.folder = Paths(QString()).FolderOf(m_loader.state.IniPath);
    request.isToBeWritten = true;
    const QString path = m_loader.fileDialog.openFile(request);
    if (!path.isEmpty() && !m_loader.state.OperationActive)
        save(path);
}

void IniFiles::save(const QString& path) {
    for (int slot = 0; slot < kSlotCount; ++slot) { // an address that is being typed
        if (!m_loader.controls.txtFilNam[static_cast<std::size_t>(slot)].Tag.value().isEmpty())
            m_loader.addresses.txtStartAddress_Validate(slot);
    }
    try {
        writeIni(path, m_loader.controls);
    } catch (const RuntimeFailure& failure) {
        return m_loader.tell(failure.description(), MessageIcon::Exclamation,
                             QStringLiteral("Save INI file as"));
    }
    m_loader.iniLoader.usePath(path);
    QStringList paths = recent();
    paths.removeAll(path);
    keepRecent(QStringList{path} + paths);
    m_loader.state.Remark = {QStringLiteral("The slots have been saved to %1").arg(printableText(path)),
                             RemarkSeverity::Done};
}

void IniFiles::fillRecent() {
    m_recent->clear();
    int number = 0;
    for (const QString& path : recent()) {
        QString shown = printableText(QDir::toNativeSeparators(path));
        shown.replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction* entry = m_recent->addAction(QStringLiteral("&%1 %2").arg(++number).arg(shown), this,
                                             [this, path] { open(path); });
        entry->setCheckable(true);
        entry->setChecked(path == m_loader.state.IniPath);
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
