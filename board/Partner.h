#pragma once

#include "board/Time.h"

#include <cstdint>
#include <optional>

namespace zrkboard {

// The point that a run has reached.
enum class State {
    Off,
    Announcing,     // boot ROM, no "A" yet
    BootRom,        // boot ROM, between "A" and the image's last byte
    PrimaryWaiting, // primary boot, ready for a command
    PrimaryLoading, // primary boot, within a download
    Prompt,         // secondary program
    Flashing,       // flash programmer, before its last acknowledgement
    FlashDone,
    Silent, // something was wrong, only a power cycle helps
    HungUp, // the line is gone
};

// A program of the board. It has the line to itself until it hands over to the next one (Chip::handOver).
class Partner {
  public:
    Partner() = default;
    virtual ~Partner() = default;
    Partner(const Partner&) = delete;
    Partner& operator=(const Partner&) = delete;

    // Starts it: it has the line now.
    virtual void start() {}

    virtual void receive(std::uint8_t byte) = 0;

    // Returns whether the next byte belongs to an image.
    [[nodiscard]] virtual bool expectsCode() const { return false; }

    // Returns when to call tick(), which must then move it on.
    [[nodiscard]] virtual std::optional<TimePoint> deadline() const { return std::nullopt; }
    virtual void tick() {}

    [[nodiscard]] virtual State state() const = 0;
};

} // namespace zrkboard
