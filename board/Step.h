#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zrkboard {

// Each answer of the board that can be made to go wrong.
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

// The step's name on the command line and in the log: bootid, second-bootid, R, X, accept, t, F, version,
// ack-header, ack-data, ack-end, ack-complete.
[[nodiscard]] std::string_view stepName(Step step);

// Case does not matter. Empty when no step has that name.
[[nodiscard]] std::optional<Step> stepNamed(std::string_view name);

// All names, separated by a comma and a blank, for messages and help.
[[nodiscard]] std::string allStepNames();

} // namespace zrkboard
