#pragma once

#include "cli/Steps.h"

namespace zrk {

// The steps that talk to the program on the board, and what each needs.

void requireText(const Plan& plan, const QString& argument);

/// Hands the board's output to standard output as it comes, until the text has come.
[[nodiscard]] ExitStatus expect(const StepRun& run);

void requireScript(const Plan& plan, const QString& argument);
[[nodiscard]] ExitStatus script(const StepRun& run);

/// Compares what was sent into SDRAM during this run with what the board's own command says of it.
void requireVerify(const Plan& plan, const QString& argument);
[[nodiscard]] ExitStatus verify(const StepRun& run);

/// Joins the board with standard input and output, byte for byte.
[[nodiscard]] ExitStatus terminal(const StepRun& run);

} // namespace zrk
