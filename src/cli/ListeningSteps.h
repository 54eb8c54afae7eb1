#pragma once

#include "cli/Steps.h"

namespace zrk {

// The steps that use the program on the board, and what each needs.

void requireText(const Plan& plan, const QString& argument);

/// Passes the board's output to standard output as it comes, until the text has come.
[[nodiscard]] ExitStatus expect(const StepRun& run);

void requireScript(const Plan& plan, const QString& argument);
[[nodiscard]] ExitStatus script(const StepRun& run);

/// Compares what was sent into SDRAM during this run with the output of the board's checksum command.
void requireVerify(const Plan& plan, const QString& argument);
[[nodiscard]] ExitStatus verify(const StepRun& run);

/// Connects the board with standard input and output, byte for byte.
[[nodiscard]] ExitStatus terminal(const StepRun& run);

} // namespace zrk
