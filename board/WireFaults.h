#pragma once

#include "board/Time.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zrkboard {

// The faults of a bad wire. A byte meets at most one of them.
enum class WireFault {
    Flip,        // one bit is another
    Loss,        // the byte does not arrive
    Double,      // it arrives twice
    Delay,       // it and all after it arrive up to 3 s later
    Replace,     // any other byte arrives instead
    Noise,       // 1 to 8 bytes of anything arrive before it
    Silence,     // it and up to 1023 after it do not arrive
    HangUp,      // the adapter is gone
    WrongAnswer, // to the loader only: another answer of the board arrives instead
};
constexpr std::size_t kWireFaults = 9;

// Returns flip, loss, double, delay, replace, noise, silence, hang-up or wrong-answer.
[[nodiscard]] std::string_view wireFaultName(WireFault fault);

// The probability of each fault at each byte, by the order of WireFault.
using WireOdds = std::array<double, kWireFaults>;

struct WireFaults {
    std::uint64_t seed = 0;
    WireOdds toBoard{};
    WireOdds toLoader{};
};

// Reads SEED[,KIND=PROBABILITY...], KIND being a fault's name, after "to-board-" or "to-loader-" for one
// direction only. With the seed alone every fault happens now and then: more than half of all bring-ups of 10
// KiB meet one. Throws std::invalid_argument with a sentence for the user.
[[nodiscard]] WireFaults parseWireFaults(std::string_view text);

// One direction of a bad wire. What happens to a byte depends only on the seed and on how many bytes came
// before it: not on time, nor on how the bytes come together, nor on their values.
class BadDirection {
  public:
    // `stream` is a number that differs between the directions of one seed.
    BadDirection(std::uint64_t seed, std::uint64_t stream, const WireOdds& odds)
        : m_seed(seed), m_stream(stream), m_odds(odds) {}

    struct Passed {
        std::optional<WireFault> fault;  // also for each byte that a silence takes
        std::vector<std::uint8_t> bytes; // what arrives
        Duration delay = Duration::zero();
    };
    [[nodiscard]] Passed pass(std::uint8_t byte);

    // Returns the number of bytes so far, which is the next one's number from 0.
    [[nodiscard]] std::uint64_t position() const { return m_position; }
    // Returns "10240 bytes, 1 flip, 2 loss" or "10240 bytes, no fault", for example.
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
