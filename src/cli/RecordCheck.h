#pragma once

#include <QString>
#include <QStringList>

namespace zrk {

// Why a run cannot keep its records. The problems are what can be seen without making anything; "" for none,
// also for an empty name. Full sentences.

/// Says why transcripts cannot be kept in this folder, which a run makes if it does not exist.
[[nodiscard]] QString folderProblem(const QString& folder);

/// Says why this file cannot be the trace of a run that reads these inputs.
[[nodiscard]] QString traceProblem(const QString& file, const QStringList& inputs);

/// Says that the trace is one of the inputs, under any name: writing it would destroy the input.
[[nodiscard]] QString inputProblem(const QString& file, const QStringList& inputs);

[[nodiscard]] QString cannotMakeFolder(const QString& folder);
[[nodiscard]] QString cannotWriteTrace(const QString& file, const QString& why);

} // namespace zrk
