#pragma once

namespace zrk {

struct Desk;

/// Asks for a file and writes the console's whole text into it: what the board sent byte by byte, as far as
/// the console keeps it. A failure is told and leaves a file that was there as it was.
void saveConsole(Desk& desk);

} // namespace zrk
