#pragma once

#include "files/OpenFaults.h"

#include <QByteArray>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zrk {

/// Says why the path cannot be a record; "" for a regular file and for none. Opening a device can act, so it is
/// not opened to find out that it is one.
[[nodiscard]] inline QString specialFileProblem(const QByteArray& path) {
    struct stat status {};
    if (::lstat(path.constData(), &status) != 0 || S_ISREG(status.st_mode))
        return {};
    return S_ISLNK(status.st_mode) ? QStringLiteral("it is a link")
                                   : QStringLiteral("it is not a regular file");
}

/// Says why no file of this path can be made in its folder; "" if one can.
[[nodiscard]] inline QString folderProblem(const QString& path) {
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    return ::faccessat(AT_FDCWD, folder.constData(), W_OK | X_OK, AT_EACCESS) == 0 ? QString()
                                                                                   : systemText(errno);
}

} // namespace zrk
