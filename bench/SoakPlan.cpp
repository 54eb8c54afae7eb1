#include "SoakPlan.h"

#include <array>
#include <cstdio>
#include <random>

namespace zrkbench {
namespace {

// Random numbers without the standard library's distributions, which differ from machine to machine.
class Dice {
  public:
    explicit Dice(std::uint64_t seed) : m_engine(seed) {}
    /// Returns a number from least to most, both included.
    std::uint32_t between(std::uint32_t least, std::uint32_t most) {
        return least + static_cast<std::uint32_t>(m_engine() % (std::uint64_t{most} - least + 1));
    }
    bool oneIn(std::uint32_t n) { return between(1, n) == 1; }

  private:
    std::mt19937_64 m_engine;
};

/// Makes bytes of every value, with a text in them that names the board's program.
QByteArray image(Dice& dice, std::uint32_t most, const QByteArray& marker = {}) {
    QByteArray bytes(static_cast<qsizetype>(dice.between(1, most)) + marker.size(), 0);
    for (char& byte : bytes)
        byte = static_cast<char>(dice.between(0, 255));
    return bytes.replace(bytes.size() - marker.size(), marker.size(), marker);
}

class StreamWriter {
  public:
    explicit StreamWriter(SoakPlan& plan) : m_plan(plan) {}

    StreamWriter& add(Part part, const QByteArray& bytes) {
        m_plan.stream += bytes;
        m_plan.parts.insert(m_plan.parts.end(), static_cast<std::size_t>(bytes.size()), part);
        return *this;
    }
    StreamWriter& number(Part part, std::uint32_t value) {
        QByteArray bytes;
        for (unsigned shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>((value >> shift) & 0xFFU);
        return add(part, bytes);
    }
    StreamWriter& image(const SoakImage& image) {
        number(Part::Address, image.address);
        number(Part::Size, static_cast<std::uint32_t>(image.bytes.size()));
        return add(Part::Code, image.bytes);
    }

  private:
    SoakPlan& m_plan;
};

void writeFlashFrames(SoakPlan& plan) {
    const auto hex = [](const char* digits) { return QByteArray::fromHex(digits); };
    const auto size = static_cast<std::uint32_t>(plan.flash.bytes.size());
    StreamWriter out(plan);
    out.add(Part::Command, "FS").add(Part::Frame, hex("02 0A000000 A6 A6 0000 03"));
    plan.versionAsked = plan.stream.size();
    out.add(Part::Frame, hex("02 18000000 AE")).number(Part::Address, plan.flash.address);
    out.number(Part::Size, size).add(Part::Frame, hex("03000000 01 00"));
    out.add(Part::EraseFlag, QByteArray(1, plan.erases ? '\1' : '\0')).add(Part::Frame, hex("0000 03"));
    out.add(Part::Frame, hex("02")).number(Part::Frame, size + 9).add(Part::Frame, hex("AF"));
    out.add(Part::Code, plan.flash.bytes).add(Part::Frame, hex("0000 03"));
    out.add(Part::Frame, hex("02 0C000000 A3 A3 0000 0000 03"))
        .add(Part::Frame, hex("02 0A000000 B1 B1 0000 03"));
}

/// Makes from hardly a fault to several a run, whatever its length; in a third of the runs one-way only.
std::string faults(Dice& dice, const SoakPlan& plan) {
    constexpr std::array<double, 3> kExpected{0.3, 1.0, 3.0};
    constexpr double kAnswerBytes = 12;
    constexpr double kFlashAnswerBytes = 75;
    const auto expected = [&](bool applies) { return applies ? kExpected[dice.between(0, 2)] : 0.0; };
    const std::uint32_t directions = dice.between(0, 5);
    const double toBoard = expected(directions != 0) / static_cast<double>(plan.stream.size());
    const double toLoader = expected(directions != 1) / (plan.flashes ? kFlashAnswerBytes : kAnswerBytes);
    std::string text = std::to_string(plan.seed);
    for (const char* kind : {"flip", "loss", "double", "delay", "replace", "noise", "silence", "hang-up"}) {
        // A silence and a hang-up end a run, so they are made rarer.
        const bool ends = kind[0] == 's' || kind[0] == 'h';
        std::array<char, 96> item{};
        std::snprintf(item.data(), item.size(), ",to-board-%s=%.6f,to-loader-%s=%.6f", kind,
                      toBoard / (ends ? 24 : 8), kind, toLoader / (ends ? 27 : 9));
        text += item.data();
    }
    std::array<char, 48> item{};
    std::snprintf(item.data(), item.size(), ",wrong-answer=%.6f", toLoader / 9);
    return text + item.data();
}

} // namespace

SoakPlan soakPlan(std::uint64_t seed) {
    Dice dice(seed);
    SoakPlan plan;
    plan.seed = seed;
    plan.flashes = dice.oneIn(3);
    plan.erases = dice.oneIn(2);
    plan.primary = {image(dice, 2'000, plan.flashes ? "ZRK SIMULATED PG_SIBL" : "ZRK SIMULATED PRIMARY BOOT"),
                    0};
    plan.secondary = {image(dice, 5'000), 0x80000004};
    plan.uboot = {image(dice, 2'000), 0x82000000};
    plan.flash = {image(dice, 6'000), dice.between(0, 0x200) * 0x1000};
    StreamWriter out(plan);
    out.add(Part::Command, "AU3").image(plan.primary);
    if (plan.flashes)
        writeFlashFrames(plan);
    else
        out.add(Part::Command, "p").image(plan.secondary).add(Part::Command, "u").image(plan.uboot);
    plan.faults = faults(dice, plan);
    plan.powerOnAfter = std::chrono::milliseconds(dice.between(0, 2'000));
    if (dice.oneIn(8))
        plan.cancelAfter = std::chrono::milliseconds(dice.between(0, 6'000));
    return plan;
}

} // namespace zrkbench
