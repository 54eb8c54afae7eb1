#pragma once

namespace zrk {

struct Desk;

/// Asks for a file and writes the console's whole text into it: the board's output byte by byte, as far as
/// the console keeps it. Reports a failure and leaves an existing file unchanged. Yields.
void saveConsole(Desk& desk);

} // namespace zrk
