#pragma once

#include "cli/Steps.h"
#include "controls/Controls.h"
#include "machine/ProgramOptions.h"

#include <QStringList>

#include <array>
#include <chrono>
#include <optional>

namespace zrk {

/// What was asked for on the command line.
struct CliOptions {
    StepList steps;
    ProgramOptions program;
    std::array<QString, kSlotCount> slotValues; ///< "FILE[,ADDRESS]", empty where not given
    std::optional<std::chrono::milliseconds> waitLimit;
    bool erase = false;
};

/// The long option that fills a slot, for example "--primary".
[[nodiscard]] QString slotOption(int slot);

/// Reads the arguments, the first of which is the program. Throws UsageError. With `--help` or
/// `--version` it prints to standard output and returns nothing.
[[nodiscard]] std::optional<CliOptions> parseCommandLine(const QStringList& arguments,
                                                         const QString& version);

} // namespace zrk
