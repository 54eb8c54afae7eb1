#pragma once

namespace zrkbench {

/// Bytes a second of a line at 115200 baud, with start and stop bit.
inline constexpr double kLineRate = 11520.0;

/// Seconds that such a line needs for a megabyte.
inline constexpr double kLineSecondsPerMegabyte = 1e6 / kLineRate;

} // namespace zrkbench
