#pragma once

#include "cli/ExitStatus.h"
#include "controls/SlotTable.h"

#include <QStringList>

#include <span>
#include <vector>

namespace zrk {

class Output;
class Plan;
struct Loader;

/// One step of the command line: all that is known about it. A new step is a row in Steps.cpp.
struct StepFacts {
    const char* name;
    const char* help;
    bool usesPort;
    bool checksAddresses;         ///< refuses wrong SDRAM addresses by itself, before it does anything
    std::vector<Slot> images;     ///< those it sends when they are selected, in the order of sending
    void (*require)(const Plan&); ///< throws UsageError when it lacks something
    ExitStatus (*run)(Loader&, Output&);
};

using StepList = std::vector<const StepFacts*>;

/// All steps, in the order of the help.
[[nodiscard]] std::span<const StepFacts> allSteps();

/// Throws UsageError for a name that is none.
[[nodiscard]] const StepFacts& stepNamed(const QString& name);

/// "load, start, check and flash", or with another word before the last.
[[nodiscard]] QString stepNames(const QString& lastWord);

} // namespace zrk
