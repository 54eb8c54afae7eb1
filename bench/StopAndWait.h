#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zrkbench {

/// A protocol that sends a block and waits for an answer of one byte.
///   XMODEM   start, number, its complement, data, CRC-16 (high byte first)
///   plain    data
struct StopAndWait {
    const char* name;
    std::uint8_t start; ///< 0: plain
    std::size_t data;

    [[nodiscard]] std::size_t blockSize() const { return start == 0 ? data : data + 5; }

    /// Makes the block of that number, from 1, of an image whose size is a multiple of a block's.
    [[nodiscard]] std::vector<std::uint8_t> block(std::size_t number,
                                                  std::span<const std::uint8_t> image) const;
    [[nodiscard]] bool isRight(std::span<const std::uint8_t> block) const;
};

/// Measures the image's bytes a second, from its first byte to the last answer, at 115200 baud behind an
/// adapter. Throws std::runtime_error.
[[nodiscard]] double rateOf(const StopAndWait& protocol, std::chrono::milliseconds latency);

} // namespace zrkbench
