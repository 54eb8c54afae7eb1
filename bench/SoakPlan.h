#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zrkbench {

/// The purpose of a byte on its way to the board.
enum class Part { Command, Address, Size, Code, Frame, EraseFlag };

/// An image and its address.
struct SoakImage {
    QByteArray bytes;
    std::uint32_t address = 0;
};

/// A run over a bad wire, as its seed has it: what is loaded, what goes wrong, and when the user cancels.
struct SoakPlan {
    std::uint64_t seed = 0;
    bool flashes = false; ///< programs the flash; else loads primary boot, secondary executable, and U-Boot
    SoakImage primary;    ///< or pg_sibl
    SoakImage secondary;
    SoakImage uboot;
    SoakImage flash;
    bool erases = false;
    std::string faults; ///< as zrk-board --faults takes it
    std::optional<std::chrono::milliseconds> cancelAfter;
    std::chrono::milliseconds powerOnAfter{}; ///< after the loader asks for it

    /// All bytes that a successful loader sends, and the purpose of each.
    QByteArray stream;
    std::vector<Part> parts;
    qsizetype versionAsked = 0; ///< this much of it has been sent when the version comes
};

[[nodiscard]] SoakPlan soakPlan(std::uint64_t seed);

} // namespace zrkbench
