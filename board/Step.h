#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zrkboard {

// The answers of the board that a fault can change.
enum class Step {
    BootId,       // boot ROM: "5", again and again
    SecondBootId, // boot ROM: "5" after "A"
    Ready,        // boot ROM: "R"
    Running,      // primary boot: "X"
    Accept,       // primary boot: "o" or "E"
    Loaded,       // primary boot: "t"
    Awake,        // flash programmer: "F"
    Version,      // flash programmer: version information frame
    AckHeader,
    AckData,
    AckEnd,
    AckComplete,
};

// Returns the step's name on the command line and in the log: bootid, second-bootid, R, X, accept, t, F,
// version, ack-header, ack-data, ack-end, ack-complete.
[[nodiscard]] std::string_view stepName(Step step);

// Finds a step by its name in any case; empty if no step has it.
[[nodiscard]] std::optional<Step> stepNamed(std::string_view name);

// Returns all names, separated by a comma and a blank, for messages and help.
[[nodiscard]] std::string allStepNames();

} // namespace zrkboard
