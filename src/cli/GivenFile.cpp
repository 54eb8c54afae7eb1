#include "cli/GivenFile.h"

#include "files/RegularFile.h"

#include <QFileInfo>

namespace zrk {

QString fileProblem(const QString& path) {
    if (QFileInfo(path).isDir())
        return QStringLiteral("it is a folder");
    QFile file(path);
    QString why = openForReading(file);
    if (why.isEmpty())
        return file.size() > 0 ? QString() : QStringLiteral("it is empty");
    why[0] = why[0].toLower(); // within a sentence
    return why;
}

GivenFile GivenFile::parse(const QString& value) {
    const qsizetype comma = QFileInfo(value).isFile() ? -1 : value.lastIndexOf(QLatin1Char(','));
    if (comma < 0)
        return {value, QStringLiteral("0")};
    return {value.left(comma), value.mid(comma + 1).trimmed()};
}

} // namespace zrk
