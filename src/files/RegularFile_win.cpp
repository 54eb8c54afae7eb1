#include "files/RegularFile.h"

#include <QFileInfo>

namespace zrk {
namespace {

QString unusableName(const QString& name) {
    return name.isEmpty() || name.contains(QChar::Null) // Qt would complain on standard error
               ? QStringLiteral("Its name is empty or contains a NUL character")
               : QString();
}

} // namespace

QString openForReading(QFile& file, Links links) {
    if (QString why = unusableName(file.fileName()); !why.isEmpty())
        return why;
    const QFileInfo info(file.fileName());
    if ((info.exists() && !info.isFile()) || (links == Links::Refuse && info.isSymLink()))
        return QStringLiteral("It is not a regular file");
    return file.open(QIODevice::ReadOnly) ? QString() : file.errorString();
}

QString openRecord(QFile& file, OldRecord old) {
    if (QString why = unusableName(file.fileName()); !why.isEmpty())
        return why;
    const QFileInfo info(file.fileName());
    if (info.isSymLink())
        return QStringLiteral("it is a link");
    if (info.exists() && !info.isFile())
        return QStringLiteral("it is not a regular file");
    const auto mode = old == OldRecord::Empty ? QIODevice::Truncate : QIODevice::Append;
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered | mode) ? QString() : file.errorString();
}

} // namespace zrk
