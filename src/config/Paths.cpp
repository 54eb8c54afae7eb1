#include "config/Paths.h"

#include "files/RegularFile.h"

namespace zrk {

Paths::Paths(QString folder, QChar separator) : m_folder(std::move(folder)), m_separator(separator) {}

QString Paths::ResolvePath(const QString& path) const {
    if (path.size() > 1 && path[1] == QLatin1Char(':'))
        return path;
    if (m_separator == QLatin1Char('\\'))
        return joined(path);
    // Files written for one system are used on the other, so "\" is a separator here, too.
    QString native = path;
    native.replace(QLatin1Char('\\'), m_separator);
    return path.startsWith(m_separator) ? native : joined(native);
}

qsizetype Paths::nameStart(const QString& path) const {
    const qsizetype native = path.lastIndexOf(m_separator);
    return (native >= 0 ? native : path.lastIndexOf(QLatin1Char('\\'))) + 1;
}

QString Paths::FileNameOf(const QString& path) const {
    return path.mid(nameStart(path));
}

QString Paths::FolderOf(const QString& path) const {
    return path.left(nameStart(path));
}

bool FileExists(const QString& path, bool rejectEmpty) {
    QFile file(path);
    if (!openForReading(file).isEmpty())
        return false;
    // The kernel's own files have no size, and reading some of them blocks.
    char first = 0;
    return !rejectEmpty || (file.size() > 0 && file.read(&first, 1) == 1);
}

} // namespace zrk
