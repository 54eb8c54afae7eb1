#include "cli/RecordCheck.h"

#include "files/PrintableText.h"

#include <QDir>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace zrk {
namespace {

bool isWritableFolder(const QFileInfo& folder) {
    return folder.isDir() && folder.isWritable();
}

} // namespace

QString folderProblem(const QString& folder) {
    if (folder.isEmpty())
        return {};
    QFileInfo nearest(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()));
    const bool isThere = nearest.exists();
    while (!nearest.exists() && !nearest.isRoot())
        nearest = QFileInfo(nearest.path());
    if (isWritableFolder(nearest))
        return {};
    return isThere ? QStringLiteral("--log %1: it is no folder, or nothing can be written there.")
                         .arg(printableText(folder))
                   : cannotMakeFolder(folder);
}

QString cannotMakeFolder(const QString& folder) {
    return QStringLiteral("--log %1: the folder cannot be made.").arg(printableText(folder));
}

QString cannotWriteTrace(const QString& file, const QString& why) {
    return QStringLiteral("--trace: The trace %1 cannot be written: %2.").arg(printableText(file), why);
}

QString inputProblem(const QString& file, const QStringList& inputs) {
    const auto native = [](const QString& name) { return QFileInfo(name).filesystemFilePath(); };
    for (const QString& input : inputs) {
        std::error_code fault;
        if (!input.isEmpty() && std::filesystem::equivalent(native(file), native(input), fault))
            return QStringLiteral("--trace %1: this run reads that file. Choose another one.")
                .arg(printableText(file));
    }
    return {};
}

QString traceProblem(const QString& file, const QStringList& inputs) {
    const QFileInfo info(file);
    if (file.isEmpty())
        return {};
    if (QString problem = inputProblem(file, inputs); !problem.isEmpty())
        return problem;
    const auto problem = [&file](const QString& why) { return cannotWriteTrace(file, why); };
    if (info.isSymLink())
        return problem(QStringLiteral("it is a link"));
    if (!info.exists())
        return isWritableFolder(QFileInfo(info.path()))
                   ? QString()
                   : problem(QStringLiteral("nothing can be written to its folder"));
    if (!info.isFile())
        return problem(QStringLiteral("it is not a regular file"));
    return info.isWritable() ? QString() : problem(QStringLiteral("no permission"));
}

} // namespace zrk
