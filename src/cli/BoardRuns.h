#pragma once

#include "cli/Options.h"
#include "cli/Output.h"
#include "platform/ProgramFacts.h"

namespace zrk {

class Interrupts;

/// Runs the steps on every board: one on the calling thread, several each on a thread of its own, so that
/// none disturbs another. Returns the worst exit status. Throws UsageError as Session does; with several
/// boards before any of them is sent anything.
[[nodiscard]] int runBoards(const CliOptions& options, const ProgramFacts& facts, Printer& printer,
                            Interrupts& interrupts);

} // namespace zrk
