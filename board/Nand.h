#pragma once

#include "board/Memory.h"

#include <memory>

namespace zrkboard {

constexpr std::uint64_t kNandSize = 64ULL * 1024 * 1024;

// NAND flash at addresses 0 to 0x03FFFFFF. As on the chip, erasing sets every bit and programming can only
// clear bits.
class Nand {
  public:
    // Makes a blank one in memory.
    Nand();
    // Uses cells that are stored elsewhere, with their contents; `cells` must hold kNandSize bytes from
    // address 0.
    explicit Nand(std::unique_ptr<Memory> cells);

    [[nodiscard]] bool contains(std::uint64_t address, std::uint64_t length) const;
    [[nodiscard]] std::vector<std::uint8_t> read(std::uint64_t address, std::size_t length) const;
    void erase();
    void program(std::uint64_t address, std::span<const std::uint8_t> bytes);

  private:
    std::unique_ptr<Memory> m_cells;
};

} // namespace zrkboard
