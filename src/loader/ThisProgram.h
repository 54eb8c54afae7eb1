#pragma once

#include "platform/ProgramFacts.h"

namespace zrk {

/// The running program's folder (with the system's separators), name and version.
/// Needs the QCoreApplication.
[[nodiscard]] ProgramFacts programFacts();

/// The version as users write it, for example "0.7.34".
[[nodiscard]] QString versionText();

} // namespace zrk
