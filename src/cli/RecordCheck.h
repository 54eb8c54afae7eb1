#pragma once

#include <QString>

namespace zrk {

// What stands against keeping records there, as far as that can be seen without making anything; "" for
// nothing, also for an empty name. Full sentences.

/// Of a folder that is made when it is not there.
[[nodiscard]] QString folderProblem(const QString& folder);

/// Of a file that is made, or written over.
[[nodiscard]] QString recordProblem(const QString& file);

} // namespace zrk
