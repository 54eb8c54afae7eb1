#include "board/Nand.h"

namespace zrkboard {

namespace {

constexpr std::uint8_t kErased = 0xFF;

}

Nand::Nand() : Nand(std::make_unique<PagedMemory>(0, kNandSize, kErased)) {}

Nand::Nand(std::unique_ptr<Memory> cells) : m_cells(std::move(cells)) {}

bool Nand::contains(std::uint64_t address, std::uint64_t length) const {
    return m_cells->contains(address, length);
}

std::vector<std::uint8_t> Nand::read(std::uint64_t address, std::size_t length) const {
    return m_cells->read(address, length);
}

void Nand::erase() {
    m_cells->fill(kErased);
}

void Nand::program(std::uint64_t address, std::span<const std::uint8_t> bytes) {
    std::vector<std::uint8_t> cells = m_cells->read(address, bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        cells[i] = static_cast<std::uint8_t>(cells[i] & bytes[i]);
    m_cells->write(address, cells);
}

} // namespace zrkboard
