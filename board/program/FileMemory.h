#pragma once

#include "board/Memory.h"
#include "board/program/FileDescriptor.h"

#include <string>

namespace zrkboard {

// A memory in a file, which stays when the program ends. Byte n of the file is at address n.
class FileMemory final : public Memory {
  public:
    // Makes a memory full of `filling` from a missing or empty file. Throws std::runtime_error if it cannot
    // be opened or has any other size than the memory: such a file is not ours to change.
    FileMemory(std::string path, std::uint64_t size, std::uint8_t filling);

    void fill(std::uint8_t value) override;

  private:
    void readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const override;
    void writeAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override;

    void makeFilled(std::uint8_t filling);

    std::string m_path;
    FileDescriptor m_file;
};

} // namespace zrkboard
