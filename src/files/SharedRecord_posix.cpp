#include "files/Descriptor.h"
#include "files/SharedRecord.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace zrk {
namespace {

QString textOf(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

/// The others hold it for one write.
bool lockInTime(int file) {
    constexpr std::chrono::seconds kLimit{10};
    constexpr std::chrono::milliseconds kPause{10};
    const auto end = std::chrono::steady_clock::now() + kLimit;
    while (::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(kPause);
    }
    return true; // also where the file system has no locks; O_APPEND keeps the lines apart there
}

/// One write, so that not even a process without the lock comes in between.
QString writeWhole(int file, const QByteArray& line) {
    struct stat before {};
    if (::fstat(file, &before) != 0)
        return textOf(errno);
    const auto size = static_cast<std::size_t>(line.size());
    const ssize_t taken = ::write(file, line.constData(), size);
    const int error = taken < 0 ? errno : ENOSPC; // a short write has no reason
    if (taken == static_cast<ssize_t>(size))
        return ::fsync(file) == 0 || errno == EINVAL ? QString() : textOf(errno);
    if (taken > 0 && ::ftruncate(file, before.st_size) != 0)
        return textOf(errno);
    return textOf(error);
}

/// Opening a device can act, so it is not opened to find out that it is one.
QString kindProblem(const QByteArray& path) {
    struct stat status {};
    if (path.isEmpty() || path.contains('\0'))
        return QStringLiteral("its name is empty or holds a NUL character");
    if (::lstat(path.constData(), &status) != 0 || S_ISREG(status.st_mode))
        return {};
    return S_ISLNK(status.st_mode) ? QStringLiteral("it is a link") : QStringLiteral("it is no regular file");
}

} // namespace

QString appendToShared(const QString& path, const QByteArray& line) {
    const QByteArray name = QFile::encodeName(path);
    if (QString why = kindProblem(name); !why.isEmpty())
        return why;
    const int flags = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const Descriptor file(::open(name.constData(), flags, S_IRUSR | S_IWUSR));
    if (file.number() < 0)
        return textOf(errno);
    struct stat status {};
    if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return QStringLiteral("it is no regular file");
    if (line.isEmpty())
        return {};
    if (!lockInTime(file.number()))
        return QStringLiteral("another process holds its lock");
    return writeWhole(file.number(), line);
}

QString sharedRecordProblem(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    if (QString why = kindProblem(name); !why.isEmpty())
        return why;
    if (::access(name.constData(), W_OK) == 0)
        return {};
    if (errno != ENOENT)
        return textOf(errno);
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    return ::access(folder.constData(), W_OK | X_OK) == 0 ? QString() : textOf(errno);
}

} // namespace zrk
