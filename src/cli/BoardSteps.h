#pragma once

#include "cli/Steps.h"

namespace zrk {

// The steps that load, start and program the board, and what each needs.

void requireNothing(const Plan& plan, const QString& argument);

void requireForLoad(const Plan& plan, const QString& argument);
[[nodiscard]] ExitStatus load(const StepRun& run);

void requireForDownload(const Plan& plan, const QString& argument);
[[nodiscard]] ExitStatus download(const StepRun& run);

void requireForStart(const Plan& plan, const QString& argument);
[[nodiscard]] ExitStatus start(const StepRun& run);

/// Would do nothing where DTR is held.
void requireForReset(const Plan& plan, const QString& argument);
[[nodiscard]] ExitStatus reset(const StepRun& run);

[[nodiscard]] ExitStatus check(const StepRun& run);

void requireForFlash(const Plan& plan, const QString& argument);
[[nodiscard]] ExitStatus flash(const StepRun& run);

} // namespace zrk
