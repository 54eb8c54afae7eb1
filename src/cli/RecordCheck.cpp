#include "cli/RecordCheck.h"

#include "cli/Options.h"
#include "files/PrintableText.h"
#include "files/Record.h"

#include <QDir>
#include <QFileInfo>

namespace zrk {
namespace {

/// Says why transcripts cannot be kept in this folder, which a run makes if it does not exist.
QString folderProblem(const QString& folder) {
    QFileInfo nearest(QDir::cleanPath(QFileInfo(folder).absoluteFilePath()));
    const bool isThere = nearest.exists();
    while (!nearest.exists() && !nearest.isRoot())
        nearest = QFileInfo(nearest.path());
    if (nearest.isDir() && nearest.isWritable())
        return {};
    return (isThere ? QStringLiteral("--log %1: it is not a folder, or you may not write to it.")
                    : QStringLiteral("--log %1: the folder cannot be made."))
        .arg(printableText(folder));
}

QString cannotWrite(const PlannedRecord& record, const QString& why) {
    return (record.isTrace
                ? QStringLiteral("--trace: The trace %1 cannot be written: %2. Choose another file.")
                : QStringLiteral("--log: The transcript %1 cannot be written: %2. Choose another "
                                 "folder."))
        .arg(printableText(record.path), why);
}

/// One form of the name, so that two names of one file are the same.
QString placeOf(const QString& path) {
    const QFileInfo file(path);
    const QString folder = QFileInfo(file.path()).canonicalFilePath();
    return QDir(folder.isEmpty() ? QDir::cleanPath(file.absolutePath()) : folder).filePath(file.fileName());
}

} // namespace

QList<PlannedRecord> recordsOf(const CliOptions& options) {
    QList<PlannedRecord> records;
    if (!options.transcriptFile.isEmpty())
        records += {false, options.transcriptFile};
    if (!options.traceFile.isEmpty())
        records += {true, options.traceFile};
    return records;
}

QString recordsProblem(const QList<PlannedRecord>& records, const QStringList& inputs) {
    QStringList places;
    for (const PlannedRecord& record : records) {
        const QString folder = QFileInfo(record.path).path();
        if (!record.isTrace && !QFileInfo(folder).isDir()) {
            if (QString problem = folderProblem(folder); !problem.isEmpty())
                return problem;
        } else if (const QString why = recordProblem({record.path, inputs}); !why.isEmpty()) {
            return cannotWrite(record, why);
        }
        const QString place = placeOf(record.path);
        if (places.contains(place))
            return cannotWrite(record, QStringLiteral("it is another record of this run"));
        places += place;
    }
    return {};
}

} // namespace zrk
