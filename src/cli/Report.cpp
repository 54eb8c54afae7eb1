#include "cli/Report.h"

#include "cli/Options.h"
#include "cli/UsageError.h"
#include "cli/VisibleText.h"
#include "files/PrintableText.h"
#include "files/SharedRecord.h"

#include <QFileInfo>

#include <filesystem>
#include <system_error>

namespace zrk {
namespace {

QString cannotWriteReport(const QString& path, const QString& why) {
    return QStringLiteral("--report: The report %1 cannot be written: %2. Choose another file.")
        .arg(printableText(path), why);
}

bool isSameFile(const QString& one, const QString& other) {
    std::error_code fault;
    if (QFileInfo(one).absoluteFilePath() == QFileInfo(other).absoluteFilePath())
        return true;
    return std::filesystem::equivalent(QFileInfo(one).filesystemFilePath(),
                                       QFileInfo(other).filesystemFilePath(), fault);
}

} // namespace

Report::Report(const CliOptions& options)
    : m_path(options.dryRun ? QString() : options.reportFile), m_tags(options.tags) {}

QString Report::problem(const CliOptions& options, const QStringList& inputs) {
    const QString& path = options.reportFile;
    if (path.isEmpty())
        return {};
    for (const QString& input : inputs) {
        if (!input.isEmpty() && isSameFile(path, input))
            return cannotWriteReport(path, QStringLiteral("this run reads that file"));
    }
    for (const QString& record : {options.traceFile, options.transcriptFile}) {
        if (!record.isEmpty() && isSameFile(path, record))
            return cannotWriteReport(path, QStringLiteral("it is another record of this run"));
    }
    const QString why = sharedRecordProblem(path);
    return why.isEmpty() ? QString() : cannotWriteReport(path, why);
}

void Report::begin() const {
    if (m_path.isEmpty())
        return;
    if (const QString why = appendToShared(m_path, {}); !why.isEmpty())
        throw UsageError(cannotWriteReport(m_path, why));
}

QString Report::append(QJsonObject record) const {
    if (m_path.isEmpty())
        return {};
    record.insert(QStringLiteral("tags"), m_tags);
    const QString why = appendToShared(m_path, jsonLine(record) + '\n');
    return why.isEmpty() ? QString()
                         : QStringLiteral("--report %1: The record of this board is missing: %2.")
                               .arg(printableText(m_path), why);
}

} // namespace zrk
