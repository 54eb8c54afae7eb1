#pragma once

#include "board/Partner.h"
#include "board/Time.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zrkboard {

// The far end of a loader's line: the board, or the answers of a trace. It has no thread and no clock: `now`
// is an argument and never runs backwards.
class FarEnd {
  public:
    FarEnd() = default;
    virtual ~FarEnd() = default;
    FarEnd(const FarEnd&) = delete;
    FarEnd& operator=(const FarEnd&) = delete;

    // Starts a run, also during another one, and mends a line that was hung up.
    virtual void powerOn(TimePoint now) = 0;
    [[nodiscard]] virtual unsigned powerOns() const = 0;

    // Hands over bytes of the loader that have come through the line.
    virtual void receive(std::span<const std::uint8_t> bytes, TimePoint now) = 0;

    // Lets everything happen that is due up to now.
    virtual void advance(TimePoint now) = 0;
    // Returns when something will happen by itself; empty if only a byte can change anything.
    [[nodiscard]] virtual std::optional<TimePoint> nextDeadline() const = 0;
    // Takes what has been sent since the last call, up to the last receive() or advance().
    [[nodiscard]] virtual std::vector<std::uint8_t> takeOutput() = 0;

    // Reports that a loader has opened or closed the port, after all that it had sent before was received.
    virtual void portOpened(TimePoint /*now*/) {}
    virtual void portClosed(TimePoint /*now*/) {}

    // Pulls the adapter; `why` completes "hangs up" in the log.
    virtual void hangUp(const std::string& why) = 0;
    [[nodiscard]] virtual bool hungUp() const = 0;

    [[nodiscard]] virtual State state() const = 0;
    // Returns whether nothing more will ever happen.
    [[nodiscard]] virtual bool isOver() const { return false; }
};

} // namespace zrkboard
