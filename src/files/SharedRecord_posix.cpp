#include "files/Descriptor.h"
#include "files/OpenFaults_posix.h"
#include "files/SharedRecord.h"

#include <QFile>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace zrk {
namespace {

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
        return systemText(errno);
    const auto size = static_cast<std::size_t>(line.size());
    const ssize_t taken = ::write(file, line.constData(), size);
    const int error = taken < 0 ? errno : ENOSPC; // a short write has no reason
    if (taken == static_cast<ssize_t>(size))
        return ::fsync(file) == 0 || errno == EINVAL ? QString() : systemText(errno);
    if (taken > 0 && ::ftruncate(file, before.st_size) != 0)
        return systemText(errno);
    return systemText(error);
}

QString pathProblem(const QString& path) {
    QString why = nameProblem(path);
    return why.isEmpty() ? specialFileProblem(QFile::encodeName(path)) : why;
}

} // namespace

QString appendToShared(const QString& path, const QByteArray& line) {
    if (QString why = pathProblem(path); !why.isEmpty())
        return why;
    const QByteArray name = QFile::encodeName(path);
    const int flags = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const Descriptor file(::open(name.constData(), flags, S_IRUSR | S_IWUSR));
    if (file.number() < 0)
        return systemText(errno);
    struct stat status {};
    if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return QStringLiteral("it is not a regular file");
    if (line.isEmpty())
        return {};
    if (!lockInTime(file.number()))
        return QStringLiteral("another process holds its lock");
    return writeWhole(file.number(), line);
}

QString sharedRecordProblem(const QString& path) {
    if (QString why = pathProblem(path); !why.isEmpty())
        return why;
    const QByteArray name = QFile::encodeName(path);
    if (::access(name.constData(), W_OK) == 0)
        return {};
    return errno == ENOENT ? folderProblem(path) : systemText(errno);
}

} // namespace zrk
