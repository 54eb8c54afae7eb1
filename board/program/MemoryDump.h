#pragma once

#include "board/Memory.h"

#include <string>

namespace zrkboard {

// Throws std::runtime_error if dumpMemory() could not write there. Changes nothing.
void checkDumpFile(const std::string& path);

// Writes the whole memory to a file, its first byte at offset 0; blocks of zeros become holes. Throws
// std::runtime_error.
void dumpMemory(const Memory& memory, const std::string& path);

} // namespace zrkboard
