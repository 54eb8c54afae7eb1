#pragma once

#include <string_view>

namespace zrkboard {

// What a simulated board runs cannot be machine code, so an image says by a text anywhere within its bytes
// which program it stands for.
constexpr std::string_view kPrimaryBootMarker = "ZRK SIMULATED PRIMARY BOOT";
constexpr std::string_view kFlashProgrammerMarker = "ZRK SIMULATED PG_SIBL";

} // namespace zrkboard
