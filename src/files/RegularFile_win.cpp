#include "files/OpenFaults.h"
#include "files/RegularFile.h"

#include <QFileInfo>

namespace zrk {

QString openForReading(QFile& file, Links links) {
    if (QString why = nameProblem(file.fileName()); !why.isEmpty())
        return why;
    const QFileInfo info(file.fileName());
    if ((info.exists() && !info.isFile()) || (links == Links::Refuse && info.isSymLink()))
        return QStringLiteral("It is not a regular file");
    return file.open(QIODevice::ReadOnly) ? QString() : file.errorString();
}

} // namespace zrk
