#pragma once

#include "cli/Steps.h"

namespace zrk {

/// Prints the machine's ports: a block of lines for each, with `--quiet` only the names of those that are not
/// missing, with `--json` an event for each.
[[nodiscard]] ExitStatus listPorts(const StepRun& run);

} // namespace zrk
