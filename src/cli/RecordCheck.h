#pragma once

#include <QString>
#include <QStringList>

namespace zrk {

// What stands against keeping records there, as far as that can be seen without making anything; "" for
// nothing, also for an empty name. Full sentences.

/// Of a folder that is made when it is not there.
[[nodiscard]] QString folderProblem(const QString& folder);

/// Of a file that is made, or written over, in a run that reads these inputs.
[[nodiscard]] QString recordProblem(const QString& file, const QStringList& inputs);

/// A record that is one of the inputs, by whatever name: writing it would destroy the input.
[[nodiscard]] QString inputProblem(const QString& file, const QStringList& inputs);

} // namespace zrk
