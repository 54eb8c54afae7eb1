#pragma once

#include <cstddef>

namespace zrk {

/// Opens the null device for each standard stream that the program was started without; else the next opened
/// file, for example a board's port, gets the stream's number and with it the program's text. Reading such an
/// input and writing such an output fail as before. Call it before anything opens a file.
void fillMissingStreams();

/// Writes some of the bytes and blocks until the file takes at least one. Returns how many, or -1 if the file
/// takes no more.
[[nodiscard]] std::ptrdiff_t writeSome(int descriptor, const char* bytes, std::size_t count);

/// Returns whether both lead to the same reader, as on one terminal or in one pipe.
[[nodiscard]] bool leadToOneFile(int one, int other);

} // namespace zrk
