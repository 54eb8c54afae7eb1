#pragma once

#include <QString>

#include <span>

namespace zrk {

/// One option of the command line.
struct OptionFacts {
    const char* name = "";
    char letter = 0;        ///< the short form; 0 for none
    const char* value = ""; ///< "" for a switch
    const char* help = "";
    const char* usedBy = ""; ///< the steps that it is for; "" for all, kPortSteps for those that use the port
};

inline constexpr const char* kPortSteps = "*";

/// All options, in the order of the help.
[[nodiscard]] std::span<const OptionFacts> allOptions();

/// The text of --help: what the steps and the options do, the exit statuses, and examples.
[[nodiscard]] QString helpText();

} // namespace zrk
