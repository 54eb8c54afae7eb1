#pragma once

#include <QString>

#include <span>

namespace zrk {

/// An option of the command line.
struct OptionFacts {
    const char* name = "";
    char letter = 0;        ///< the short form; 0 for none
    const char* value = ""; ///< "" for a switch
    const char* help = "";
    const char* usedBy = ""; ///< the steps that use it; "" for all, kPortSteps for those that use the port
    bool isBasic = false;    ///< is on the first page of the help
};

inline constexpr const char* kPortSteps = "*";

/// Returns all options, in the order of the help.
[[nodiscard]] std::span<const OptionFacts> allOptions();

enum class HelpPage { First, All };

/// Returns the text of --help, no wider than a terminal. The first page is for one screen; the other has all
/// steps and options, the exit statuses, and examples.
[[nodiscard]] QString helpText(HelpPage page);

} // namespace zrk
