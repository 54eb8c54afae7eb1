#pragma once

#include <string_view>

namespace zrkboard {

// The simulated board cannot run machine code. So a text anywhere in an image's bytes names the program that
// it stands for.
constexpr std::string_view kPrimaryBootMarker = "ZRK SIMULATED PRIMARY BOOT";
constexpr std::string_view kFlashProgrammerMarker = "ZRK SIMULATED PG_SIBL";

} // namespace zrkboard
