#include "app/WindowFileDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace zrk {
namespace {

/// Returns the filter as the dialog needs it: it hides the pattern in the last parentheses, so an entry reads
/// as requested; a GTK desktop's own dialog cuts at the first ones and leaves the words before them.
QString dialogFilter(const FileFilter& filter) {
    // "*.*" means every file only if it matches a name without a dot, too.
    const QString pattern = filter.pattern == QLatin1String("*.*") ? QStringLiteral("*") : filter.pattern;
    return QStringLiteral("%1 (%2)").arg(filter.name, pattern);
}

} // namespace

WindowFileDialog::WindowFileDialog(std::function<QWidget*()> parent, Runner run)
    : m_parent(std::move(parent)), m_run(std::move(run)) {
    if (!m_run)
        m_run = [](QFileDialog& dialog) { return dialog.exec() == QDialog::Accepted; };
}

QString WindowFileDialog::openFile(const FileRequest& request) {
    QStringList filters;
    for (const FileFilter& filter : request.filters)
        filters.append(dialogFilter(filter));
    QFileDialog dialog(m_parent(), request.title, m_lastFolder.isEmpty() ? request.folder : m_lastFolder);
    dialog.setAcceptMode(request.isToBeWritten ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(request.isToBeWritten ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(filters);
    dialog.selectNameFilter(filters.value(request.filterIndex - 1));
    if (!request.name.isEmpty())
        dialog.selectFile(request.name);
    if (!m_run(dialog) || dialog.selectedFiles().isEmpty())
        return {};
    const QString chosen = dialog.selectedFiles().constFirst();
    m_lastFolder = QFileInfo(chosen).path();
    return QDir::toNativeSeparators(chosen);
}

} // namespace zrk
