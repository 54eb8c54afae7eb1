#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace zrk {

struct CliOptions;

/// A file that a run keeps of a board.
struct PlannedRecord {
    bool isTrace = false; ///< else a transcript
    QString path;
};

/// Returns the records of the board that these options are for.
[[nodiscard]] QList<PlannedRecord> recordsOf(const CliOptions& options);

/// Says why a run that reads these inputs cannot keep all of the records, as far as that shows without making
/// anything; "" if it can. A full sentence.
[[nodiscard]] QString recordsProblem(const QList<PlannedRecord>& records, const QStringList& inputs);

} // namespace zrk
