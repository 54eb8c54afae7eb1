#include "board/WireFaults.h"

#include "board/Text.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <stdexcept>

namespace zrkboard {

namespace {

constexpr std::array<std::string_view, kWireFaults> kFaultNames{
    "flip", "loss", "double", "delay", "replace", "noise", "silence", "hang-up", "wrong-answer"};

constexpr auto kWrongAnswer = static_cast<std::size_t>(WireFault::WrongAnswer);

// Some dozen bytes go to the loader where thousands go to the board.
constexpr double kUsualToBoard = 1e-5;
constexpr double kUsualToLoader = 2e-3;

constexpr std::uint64_t kLongestSilence = 1024;
constexpr std::uint64_t kLongestNoise = 8;
constexpr std::uint64_t kLongestDelay = 3000; // milliseconds

// SplitMix64 (public domain, Sebastiano Vigna): the same numbers on every machine, unlike the standard
// library's distributions, and good ones for neighbouring seeds.
class Numbers {
  public:
    explicit Numbers(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t next() {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }
    // Returns a number from 0 to below 1.
    double fraction() { return static_cast<double>(next() >> 11U) * 0x1p-53; }
    // Returns a number from 1 to most.
    std::uint64_t upTo(std::uint64_t most) { return 1 + next() % most; }

  private:
    std::uint64_t m_state;
};

std::uint8_t otherAnswer(std::uint8_t byte, Numbers& numbers) {
    constexpr std::string_view kAnswers = "5RXotEF\x06";
    for (;;) {
        const auto answer = static_cast<std::uint8_t>(kAnswers[numbers.next() % kAnswers.size()]);
        if (answer != byte)
            return answer;
    }
}

double probability(std::string_view text) {
    double value = -1.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !(value >= 0.0 && value <= 1.0))
        throw std::invalid_argument("\"" + std::string(text) + "\" is not a probability from 0 to 1");
    return value;
}

std::string allNames() {
    std::string all;
    for (const std::string_view name : kFaultNames)
        all += (all.empty() ? "" : ", ") + std::string(name);
    return all;
}

void setOdds(WireFaults& faults, std::string_view item) {
    const auto equals = item.find('=');
    std::string_view name = item.substr(0, equals);
    const auto only = [&name](std::string_view prefix) {
        const bool has = name.starts_with(prefix);
        name.remove_prefix(has ? prefix.size() : 0);
        return has;
    };
    const bool onlyBoard = only("to-board-");
    const bool onlyLoader = !onlyBoard && only("to-loader-");
    const auto kind = static_cast<std::size_t>(std::find(kFaultNames.begin(), kFaultNames.end(), name) -
                                               kFaultNames.begin());
    if (equals == std::string_view::npos || kind == kWireFaults || (onlyBoard && kind == kWrongAnswer))
        throw std::invalid_argument(
            "\"" + std::string(item) + "\": expected KIND=PROBABILITY; the kinds are " + allNames() +
            ", for one direction to-board-KIND and to-loader-KIND " + "(no board takes a wrong-answer)");
    const double value = probability(item.substr(equals + 1));
    if (!onlyLoader && kind != kWrongAnswer)
        faults.toBoard[kind] = value;
    if (!onlyBoard)
        faults.toLoader[kind] = value;
}

void check(const WireOdds& odds) {
    constexpr double kRounding = 1e-9;
    if (std::accumulate(odds.begin(), odds.end(), 0.0) > 1.0 + kRounding)
        throw std::invalid_argument("a byte meets one fault at most, so the probabilities of a direction "
                                    "are no more than 1 together");
}

} // namespace

std::string_view wireFaultName(WireFault fault) {
    return kFaultNames[static_cast<std::size_t>(fault)];
}

WireFaults parseWireFaults(std::string_view text) {
    WireFaults faults;
    auto comma = text.find(',');
    const auto seed = parseNumber(text.substr(0, comma));
    if (!seed)
        throw std::invalid_argument("expected SEED[,KIND=PROBABILITY...], the seed being a number");
    faults.seed = *seed;
    if (comma == std::string_view::npos) {
        faults.toBoard.fill(kUsualToBoard);
        faults.toBoard[kWrongAnswer] = 0.0;
        faults.toLoader.fill(kUsualToLoader);
    }
    while (comma != std::string_view::npos) {
        text.remove_prefix(comma + 1);
        comma = text.find(',');
        setOdds(faults, text.substr(0, comma));
    }
    check(faults.toBoard);
    check(faults.toLoader);
    return faults;
}

BadDirection::Passed BadDirection::pass(std::uint8_t byte) {
    const std::uint64_t position = m_position++;
    if (position < m_silentBefore)
        return {WireFault::Silence, {}, {}};
    // Each byte has its own numbers, so that one byte more or less does not change those of the next.
    Numbers seeds(m_seed ^ (m_stream << 56U));
    Numbers numbers(seeds.next() + position * 0xD1342543DE82EF95U);
    double left = numbers.fraction();
    std::size_t kind = 0;
    while (kind < kWireFaults && left >= m_odds[kind])
        left -= m_odds[kind++];
    if (kind == kWireFaults)
        return {std::nullopt, {byte}, {}};

    ++m_counts[kind];
    const auto fault = static_cast<WireFault>(kind);
    Passed passed{fault, {byte}, {}};
    switch (fault) {
    case WireFault::Flip:
        passed.bytes[0] ^= static_cast<std::uint8_t>(1U << (numbers.next() % 8));
        break;
    case WireFault::Loss:
    case WireFault::HangUp:
        passed.bytes.clear();
        break;
    case WireFault::Double:
        passed.bytes.push_back(byte);
        break;
    case WireFault::Delay:
        passed.delay = std::chrono::milliseconds(numbers.upTo(kLongestDelay));
        break;
    case WireFault::Replace:
        passed.bytes[0] = static_cast<std::uint8_t>(byte + numbers.upTo(255));
        break;
    case WireFault::Noise:
        for (auto count = numbers.upTo(kLongestNoise); count > 0; --count)
            passed.bytes.insert(passed.bytes.begin(), static_cast<std::uint8_t>(numbers.next()));
        break;
    case WireFault::Silence:
        m_silentBefore = position + numbers.upTo(kLongestSilence);
        passed.bytes.clear();
        break;
    case WireFault::WrongAnswer:
        passed.bytes[0] = otherAnswer(byte, numbers);
        break;
    }
    return passed;
}

std::string BadDirection::summary() const {
    std::string text = std::to_string(m_position) + (m_position == 1 ? " byte" : " bytes");
    bool any = false;
    for (std::size_t kind = 0; kind < kWireFaults; ++kind) {
        if (m_counts[kind] == 0)
            continue;
        text += ", " + std::to_string(m_counts[kind]) + " " + std::string(kFaultNames[kind]);
        any = true;
    }
    return any ? text : text + ", no fault";
}

} // namespace zrkboard
