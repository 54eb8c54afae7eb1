#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

namespace zrkboard {

// A range of bytes at the board's addresses.
class Memory {
  public:
    Memory(std::uint64_t base, std::uint64_t size) : m_base(base), m_size(size) {}
    virtual ~Memory() = default;
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;

    [[nodiscard]] std::uint64_t base() const { return m_base; }
    [[nodiscard]] std::uint64_t size() const { return m_size; }

    // Whether all of [address, address + length) lies in this memory; an empty range counts by its address.
    [[nodiscard]] bool contains(std::uint64_t address, std::uint64_t length) const;

    // Both throw std::out_of_range for a range that is not wholly inside.
    [[nodiscard]] std::vector<std::uint8_t> read(std::uint64_t address, std::size_t length) const;
    void write(std::uint64_t address, std::span<const std::uint8_t> bytes);

    virtual void fill(std::uint8_t value) = 0;

  protected:
    // The offsets are from base() and have been checked.
    virtual void readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const = 0;
    virtual void writeAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) = 0;

  private:
    std::uint64_t m_base;
    std::uint64_t m_size;
};

// A memory that keeps only pages that were written, so 64 MiB cost nothing until they are used.
class PagedMemory : public Memory {
  public:
    PagedMemory(std::uint64_t base, std::uint64_t size, std::uint8_t filling)
        : Memory(base, size), m_filling(filling) {}

    void fill(std::uint8_t value) override;

  protected:
    void readAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const override;
    void writeAt(std::uint64_t offset, std::span<const std::uint8_t> bytes) override;

  private:
    std::uint8_t m_filling;
    std::map<std::uint64_t, std::vector<std::uint8_t>> m_pages;
};

} // namespace zrkboard
