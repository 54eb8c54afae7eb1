#include "files/OpenFaults.h"
#include "files/Record.h"

#include <QFileInfo>

#include <algorithm>
#include <filesystem>

namespace zrk {

QString openRecord(QFile& file, const RecordFile& record, OldRecord old) {
    if (QString why = recordProblem(record); !why.isEmpty())
        return why;
    file.setFileName(record.path);
    const auto mode = old == OldRecord::Empty ? QIODevice::Truncate : QIODevice::Append;
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered | mode) ? QString() : file.errorString();
}

QString recordProblem(const RecordFile& record) {
    if (QString why = nameProblem(record.path); !why.isEmpty())
        return why;
    const QFileInfo info(record.path);
    const auto isIt = [&info](const QString& input) {
        std::error_code fault;
        return !input.isEmpty() && std::filesystem::equivalent(info.filesystemFilePath(),
                                                               QFileInfo(input).filesystemFilePath(), fault);
    };
    if (info.isSymLink())
        return QStringLiteral("it is a link");
    if (info.exists() && !info.isFile())
        return QStringLiteral("it is not a regular file");
    if (std::any_of(record.inputs.cbegin(), record.inputs.cend(), isIt))
        return QStringLiteral("the loader reads that file");
    if (info.exists() ? info.isWritable() : QFileInfo(info.path()).isDir())
        return {};
    return info.exists() ? QStringLiteral("no permission") : QStringLiteral("its folder does not exist");
}

} // namespace zrk
