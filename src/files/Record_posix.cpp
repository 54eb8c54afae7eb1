#include "files/Descriptor.h"
#include "files/OpenFaults_posix.h"
#include "files/Record.h"

#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zrk {
namespace {

constexpr int kRecordFlags = O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

bool isInput(const struct stat& file, const QStringList& inputs) {
    for (const QString& name : inputs) {
        struct stat input {};
        if (::stat(QFile::encodeName(name).constData(), &input) == 0 && input.st_dev == file.st_dev &&
            input.st_ino == file.st_ino)
            return true;
    }
    return false;
}

/// Says why an open file cannot be the record, and locks it if it can.
QString problemOf(int file, const RecordFile& record) {
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode))
        return QStringLiteral("it is not a regular file");
    if (isInput(status, record.inputs))
        return QStringLiteral("the loader reads that file");
    // Its owner may read it, whatever its mode is.
    if (status.st_uid != ::geteuid())
        return QStringLiteral("it belongs to another account");
    if (::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return QStringLiteral("a run of this program is writing it");
    return {};
}

QString noFile(const QByteArray& path, int error) {
    QString why = specialFileProblem(path);
    return why.isEmpty() ? systemText(error) : why;
}

/// Returns the file made or opened, and locked; negative, with the reason, if it is refused.
Descriptor openLocked(const RecordFile& record, QString& why) {
    const QByteArray path = QFile::encodeName(record.path);
    if (specialFileProblem(path).isEmpty()) {
        Descriptor made(::open(path.constData(), kRecordFlags | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR));
        if (made.number() >= 0) {
            (void)::flock(made.number(), LOCK_EX | LOCK_NB);
            return made;
        }
        if (errno != EEXIST) {
            why = noFile(path, errno);
            return Descriptor(-1);
        }
    }
    Descriptor opened(specialFileProblem(path).isEmpty() ? ::open(path.constData(), kRecordFlags) : -1);
    why = opened.number() < 0 ? noFile(path, errno) : problemOf(opened.number(), record);
    return why.isEmpty() ? std::move(opened) : Descriptor(-1);
}

} // namespace

QString openRecord(QFile& file, const RecordFile& record, OldRecord old) {
    QString why = nameProblem(record.path);
    if (!why.isEmpty())
        return why;
    Descriptor opened = openLocked(record, why);
    if (opened.number() < 0)
        return why;
    (void)::fchmod(opened.number(), S_IRUSR | S_IWUSR); // some disks have no modes
    if (old == OldRecord::Empty && ::ftruncate(opened.number(), 0) != 0)
        return systemText(errno);
    if (old == OldRecord::Continue && ::fcntl(opened.number(), F_SETFL, O_APPEND) != 0)
        return systemText(errno);
    const QIODevice::OpenMode append = old == OldRecord::Continue ? QIODevice::Append : QIODevice::NotOpen;
    if (!file.open(opened.number(), QIODevice::WriteOnly | QIODevice::Unbuffered | append,
                   QFileDevice::AutoCloseHandle))
        return file.errorString();
    (void)opened.release();
    return {};
}

QString recordProblem(const RecordFile& record) {
    if (QString why = nameProblem(record.path); !why.isEmpty())
        return why;
    const QByteArray path = QFile::encodeName(record.path);
    if (QString why = specialFileProblem(path); !why.isEmpty())
        return why;
    const Descriptor opened(::open(path.constData(), kRecordFlags));
    if (opened.number() >= 0)
        return problemOf(opened.number(), record);
    return errno == ENOENT ? folderProblem(record.path) : noFile(path, errno);
}

} // namespace zrk
