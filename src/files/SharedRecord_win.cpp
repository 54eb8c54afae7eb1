#include "files/OpenFaults.h"
#include "files/SharedRecord.h"

#include <QFile>
#include <QFileInfo>
#include <QLockFile>

namespace zrk {

QString appendToShared(const QString& path, const QByteArray& line) {
    if (QString why = sharedRecordProblem(path); !why.isEmpty())
        return why;
    constexpr int kLimit = 10'000; // ms
    QLockFile lock(path + QStringLiteral(".lock"));
    if (!lock.tryLock(kLimit))
        return QStringLiteral("another process holds its lock");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        return file.errorString();
    const qint64 before = file.size();
    if (file.write(line) == line.size() && file.flush())
        return {};
    QString why = file.errorString();
    file.resize(before);
    return why;
}

QString sharedRecordProblem(const QString& path) {
    if (QString why = nameProblem(path); !why.isEmpty())
        return why;
    const QFileInfo info(path);
    if (info.isSymLink())
        return QStringLiteral("it is a link");
    if (!info.exists())
        return QFileInfo(info.path()).isDir() ? QString() : QStringLiteral("there is no such folder");
    if (!info.isFile())
        return QStringLiteral("it is not a regular file");
    return info.isWritable() ? QString() : QStringLiteral("no permission");
}

} // namespace zrk
