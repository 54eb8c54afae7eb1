#include "board/Memory.h"

#include "board/Text.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace zrkboard {

namespace {

constexpr std::uint64_t kStoredPage = 64ULL * 1024;

// Returns the part of [offset, offset + length) that lies in the page of its first byte.
std::uint64_t withinPage(std::uint64_t offset, std::uint64_t length) {
    return std::min(length, kStoredPage - offset % kStoredPage);
}

void requireInside(const Memory& memory, std::uint64_t address, std::uint64_t length) {
    if (!memory.contains(address, length))
        throw std::out_of_range("no memory of " + std::to_string(length) + " bytes at " + hex(address, 8));
}

} // namespace

bool Memory::contains(std::uint64_t address, std::uint64_t length) const {
    return address >= m_base && address < m_base + m_size && length <= m_base + m_size - address;
}

std::vector<std::uint8_t> Memory::read(std::uint64_t address, std::size_t length) const {
    requireInside(*this, address, length);
    std::vector<std::uint8_t> bytes(length);
    readAt(address - m_base, bytes);
    return bytes;
}

void Memory::write(std::uint64_t address, std::span<const std::uint8_t> bytes) {
    requireInside(*this, address, bytes.size());
    writeAt(address - m_base, bytes);
}

void PagedMemory::fill(std::uint8_t value) {
    m_pages.clear();
    m_filling = value;
}

void PagedMemory::readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
    while (!bytes.empty()) {
        const std::uint64_t part = withinPage(offset, bytes.size());
        const auto page = m_pages.find(offset / kStoredPage);
        if (page == m_pages.end())
            std::fill_n(bytes.begin(), part, m_filling);
        else
            std::copy_n(page->second.begin() + static_cast<std::ptrdiff_t>(offset % kStoredPage), part,
                        bytes.begin());
        bytes = bytes.subspan(part);
        offset += part;
    }
}

void PagedMemory::writeAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const std::uint64_t part = withinPage(offset, bytes.size());
        auto& page = m_pages[offset / kStoredPage];
        if (page.empty())
            page.assign(kStoredPage, m_filling);
        std::copy_n(bytes.begin(), part, page.begin() + static_cast<std::ptrdiff_t>(offset % kStoredPage));
        bytes = bytes.subspan(part);
        offset += part;
    }
}

} // namespace zrkboard
