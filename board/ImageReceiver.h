#pragma once

#include "board/Memory.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace zrkboard {

struct ImageHeader {
    std::uint32_t address = 0;
    std::uint32_t size = 0;
};

// Returns "126976 bytes to 0x80000004", for example.
[[nodiscard]] std::string describe(const ImageHeader& header);

// An image on its way into a memory, as boot ROM and primary boot take it: header, then code.
//
//     offset  width
//     0       4      start address, least significant byte first
//     4       4      size in bytes, least significant byte first
//     8       size   code
class ImageReceiver {
  public:
    enum class Event { None, HeaderComplete, ImageComplete };

    explicit ImageReceiver(Memory& memory) : m_memory(memory) {}

    // Takes a byte. After HeaderComplete the caller checks fits() and either stops or feeds the code; an
    // image of size 0 is complete with its header (see complete()).
    [[nodiscard]] Event receive(std::uint8_t byte);

    [[nodiscard]] bool expectsCode() const { return m_headerBytes == 8 && !complete(); }
    [[nodiscard]] bool complete() const { return m_headerBytes == 8 && m_codeBytes == m_header.size; }
    [[nodiscard]] const ImageHeader& header() const { return m_header; }
    [[nodiscard]] bool fits() const { return m_memory.contains(m_header.address, m_header.size); }

  private:
    Memory& m_memory;
    ImageHeader m_header;
    unsigned m_headerBytes = 0;
    std::uint32_t m_codeBytes = 0;
};

} // namespace zrkboard
