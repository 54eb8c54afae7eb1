#pragma once

#include "cli/ExitStatus.h"
#include "controls/SlotTable.h"

#include <QStringList>

#include <span>
#include <vector>

namespace zrk {

class Output;
class Plan;
struct CliOptions;
struct Loader;
struct StepFacts;

/// The parameters of a step's run.
struct StepRun {
    Loader& loader;
    Output& output;
    const CliOptions& options;
    const QString& argument;
    const StepFacts* next;    ///< the next step that uses the port; null for none
    const bool& limitReached; ///< the limit of the whole run has run out

    /// Returns whether a limit of its own ended the step, not that of the whole run.
    [[nodiscard]] bool ranOut() const;
};

/// Notes the option of this limit for the result, if a limit of its own ended the step.
void noteLimit(const StepRun& run, const char* limitOption);

/// Prints the failure of the last operation unless a message box has, with the option whose limit ran out,
/// and returns its status.
ExitStatus toldEnd(const StepRun& run, const char* limitOption = "");

/// All facts about one step of the command line. A new step is a row in Steps.cpp.
struct StepFacts {
    const char* name = "";
    const char* argument = ""; ///< what has to follow the name, for example "FILE"; "" for nothing
    const char* help = "";
    bool usesPort = false;
    bool checksAddresses = false;     ///< refuses wrong SDRAM addresses by itself at its start
    bool commandsPrimaryBoot = false; ///< begins with a command to the primary boot, which has to run
    bool awaitsProgram = false;       ///< needs a program on the board that prints something
    bool ownsStreams = false;         ///< takes standard input and output for itself
    bool standsAlone = false;         ///< goes with no other step
    std::vector<Slot> images = {};    ///< those it sends when they are selected, in the order of sending
    bool isBasic = false;             ///< is on the first page of the help
    void (*require)(const Plan&,
                    const QString& argument) = nullptr; ///< throws UsageError when it lacks something
    ExitStatus (*run)(const StepRun&) = nullptr;
};

/// A step as the user gave it.
struct StepCall {
    const StepFacts* facts = nullptr;
    QString argument;
};

using StepList = std::vector<StepCall>;

/// Returns whether the step sends the slot's image, if it is selected.
[[nodiscard]] bool sends(const StepFacts& step, int slot);

/// Returns whether the step sends the slot's image, or shows it.
[[nodiscard]] bool concerns(const StepFacts& step, int slot);

/// Returns all steps, in the order of the help.
[[nodiscard]] std::span<const StepFacts> allSteps();

/// Returns the steps that these words name, each with its argument. Throws UsageError for an unknown name and
/// for a missing argument.
[[nodiscard]] StepList stepsOf(const QStringList& words);

/// Returns "load, start, check and flash", or with another word before the last.
[[nodiscard]] QString stepNames(const QString& lastWord);

} // namespace zrk
