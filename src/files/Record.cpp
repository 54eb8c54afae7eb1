#include "files/Record.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace zrk {
namespace {

QString limitText(qint64 bytes) {
    constexpr qint64 kMiB = qint64{1} << 20;
    return bytes < kMiB ? QStringLiteral("%1 bytes").arg(bytes) : QStringLiteral("%1 MiB").arg(bytes / kMiB);
}

/// Returns as many of the bytes as fit, up to the last line's end among them.
QByteArray linesWithin(const QByteArray& bytes, qint64 room) {
    if (bytes.size() <= room)
        return bytes;
    const QByteArray part = bytes.first(std::max<qint64>(room, 0));
    return part.first(part.lastIndexOf('\n') + 1);
}

} // namespace

QString appendToRecord(QFile& file, const QByteArray& all, qint64 longest) {
    const qint64 before = file.size();
    const QByteArray bytes = linesWithin(all, longest - before);
    qint64 taken = file.write(bytes);
    if (taken > 0 && taken < bytes.size()) // after a short write the next one has the reason
        taken += std::max<qint64>(file.write(bytes.sliced(taken)), 0);
    if (taken == bytes.size())
        return taken == all.size() ? QString()
                                   : QStringLiteral("it has reached its limit of %1").arg(limitText(longest));
    QString why = file.errorString();
    const qint64 written = file.size() - before; // also where a failed write has written something
    if (written > 0)
        file.resize(before + bytes.lastIndexOf('\n', written - 1) + 1);
    return why;
}

/// A rename replaces a link that another account puts there meanwhile, and does not follow it.
QString replaceRecord(const RecordFile& record, const QByteArray& bytes) {
    if (QString why = recordProblem(record); !why.isEmpty())
        return why;
    QTemporaryFile file(QFileInfo(record.path).path() + QStringLiteral("/.zrk-save-XXXXXX"));
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush())
        return file.errorString();
    const QFileInfo written(file.fileName());
    file.close();
    if (file.error() != QFileDevice::NoError)
        return file.errorString();
    std::error_code fault;
    std::filesystem::rename(written.filesystemFilePath(), QFileInfo(record.path).filesystemFilePath(), fault);
    if (fault)
        return QString::fromStdString(fault.message());
    file.setAutoRemove(false);
    return {};
}

} // namespace zrk
