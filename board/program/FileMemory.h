#pragma once

#include "board/Memory.h"
#include "board/program/FileDescriptor.h"

#include <string>

namespace zrkboard {

// A memory that is a file and stays when the program ends. Byte n of the file is at address n.
class FileMemory : public Memory {
  public:
    // A missing file is created, a short one extended, with `filling`. Throws std::runtime_error when it
    // cannot be opened or is longer than the memory.
    FileMemory(std::string path, std::uint64_t size, std::uint8_t filling);

    void fill(std::uint8_t value) override;

  protected:
    void readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const override;
    void writeAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override;

  private:
    void fillFrom(std::uint64_t offset, std::uint8_t value);

    std::string m_path;
    FileDescriptor m_file;
};

} // namespace zrkboard
