#include "files/Descriptor.h"
#include "files/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#endif

namespace zrk {
namespace {

QString systemText(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

QString unusableName(const QString& name) {
    return name.isEmpty() || name.contains(QChar::Null) // Qt would complain on standard error
               ? QStringLiteral("Its name is empty or contains a NUL character")
               : QString();
}

QIODevice::OpenMode openMode(OldRecord old) {
    const QIODevice::OpenMode mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
    return old == OldRecord::Continue ? mode | QIODevice::Append : mode;
}

/// Detects the kernel's interfaces: they look regular, but reading one can act, and none has a true length.
bool isOfTheKernel([[maybe_unused]] int file) {
#ifdef __linux__
    struct statfs system {};
    return ::fstatfs(file, &system) == 0 &&
           (system.f_type == SYSFS_MAGIC || system.f_type == PROC_SUPER_MAGIC);
#else
    return false;
#endif
}

} // namespace

QString openForReading(QFile& file, Links links) {
    if (QString why = unusableName(file.fileName()); !why.isEmpty())
        return why;
    const QByteArray path = QFile::encodeName(file.fileName());
    QString notRegular = QStringLiteral("It is not a regular file");
    struct stat status {};
    // First without opening it, because opening a device can act. Then again on the opened file: it can have
    // been replaced in between.
    if (::stat(path.constData(), &status) == 0 && !S_ISREG(status.st_mode))
        return notRegular;
    const int flags =
        O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | (links == Links::Refuse ? O_NOFOLLOW : 0);
    Descriptor opened(::open(path.constData(), flags));
    if (opened.number() < 0)
        return errno == ELOOP && links == Links::Refuse ? notRegular : systemText(errno);
    if (::fstat(opened.number(), &status) != 0 || !S_ISREG(status.st_mode) || isOfTheKernel(opened.number()))
        return notRegular;
    if (!file.open(opened.number(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return file.errorString();
    (void)opened.release();
    return {};
}

QString openRecord(QFile& file, OldRecord old) {
    if (QString why = unusableName(file.fileName()); !why.isEmpty())
        return why;
    const QByteArray path = QFile::encodeName(file.fileName());
    struct stat status {};
    if (::lstat(path.constData(), &status) == 0 && !S_ISREG(status.st_mode))
        return S_ISLNK(status.st_mode) ? QStringLiteral("it is a link")
                                       : QStringLiteral("it is not a regular file");
    const int flags = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC |
                      (old == OldRecord::Continue ? O_APPEND : 0);
    Descriptor opened(::open(path.constData(), flags, S_IRUSR | S_IWUSR));
    if (opened.number() < 0)
        return errno == ELOOP ? QStringLiteral("it is a link") : systemText(errno);
    if (::fstat(opened.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return QStringLiteral("it is not a regular file");
    if (::flock(opened.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return QStringLiteral("another run of this program is writing it");
    if (old == OldRecord::Empty && ::ftruncate(opened.number(), 0) != 0)
        return systemText(errno);
    if (!file.open(opened.number(), openMode(old), QFileDevice::AutoCloseHandle))
        return file.errorString();
    (void)opened.release();
    return {};
}

} // namespace zrk
