#pragma once

#include "board/program/ProgramOptions.h"

#include <span>
#include <string>

namespace zrkboard {

// Reads the arguments after the program's name, as --option VALUE or --option=VALUE. Throws
// std::invalid_argument with a sentence for the user.
[[nodiscard]] ProgramOptions parseCommandLine(std::span<const std::string> arguments);

[[nodiscard]] std::string helpText();
[[nodiscard]] std::string versionText();

} // namespace zrkboard
