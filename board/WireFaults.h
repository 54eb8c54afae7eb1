#pragma once

#include "board/Time.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zrkboard {

// What a bad wire can do at one byte. At most one of these happens there.
enum class WireFault {
    Flip,        // one bit is another
    Loss,        // the byte does not arrive
    Double,      // it arrives twice
    Delay,       // it and all behind it arrive up to 3 s later
    Replace,     // any other byte arrives instead
    Noise,       // 1 to 8 bytes of anything arrive before it
    Silence,     // it and up to 1023 behind it do not arrive
    HangUp,      // the adapter is gone
    WrongAnswer, // to the loader only: another one of the board's answers arrives instead
};
constexpr std::size_t kWireFaults = 9;

// flip, loss, double, delay, replace, noise, silence, hang-up, wrong-answer.
[[nodiscard]] std::string_view wireFaultName(WireFault fault);

// The probability of each fault at each byte, by the order of WireFault.
using WireOdds = std::array<double, kWireFaults>;

struct WireFaults {
    std::uint64_t seed = 0;
    WireOdds toBoard{};
    WireOdds toLoader{};
};

// Reads SEED[,KIND=PROBABILITY...], KIND being a fault's name, for one direction only behind "to-board-" or
// "to-loader-". With the seed alone every fault happens now and then: more than half of all bring-ups of
// 10 KiB meet one. Throws std::invalid_argument with a sentence for the user.
[[nodiscard]] WireFaults parseWireFaults(std::string_view text);

// One direction of a bad wire. What happens to a byte depends on the seed and on how many bytes were there
// before it, on nothing else: neither on time, nor on how the bytes come together, nor on their values.
class BadDirection {
  public:
    // `stream` tells the directions of one seed apart.
    BadDirection(std::uint64_t seed, std::uint64_t stream, const WireOdds& odds)
        : m_seed(seed), m_stream(stream), m_odds(odds) {}

    struct Passed {
        std::optional<WireFault> fault;  // also for each byte that a silence takes
        std::vector<std::uint8_t> bytes; // what arrives
        Duration delay = Duration::zero();
    };
    [[nodiscard]] Passed pass(std::uint8_t byte);

    // How many bytes have been there, so the next one's number counting from 0.
    [[nodiscard]] std::uint64_t position() const { return m_position; }
    // "10240 bytes, 1 flip, 2 loss" or "10240 bytes, no fault".
    [[nodiscard]] std::string summary() const;

  private:
    std::uint64_t m_seed;
    std::uint64_t m_stream;
    WireOdds m_odds;
    std::uint64_t m_position = 0;
    std::uint64_t m_silentBefore = 0; // bytes of a lower number do not arrive
    std::array<std::uint64_t, kWireFaults> m_counts{};
};

} // namespace zrkboard
