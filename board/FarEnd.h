#pragma once

#include "board/Partner.h"
#include "board/Time.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zrkboard {

// What a loader's line leads to: the board, or what a traced one said. No thread, no clock: `now` is handed
// in and never runs backwards.
class FarEnd {
  public:
    FarEnd() = default;
    virtual ~FarEnd() = default;
    FarEnd(const FarEnd&) = delete;
    FarEnd& operator=(const FarEnd&) = delete;

    // Starts a run, also when one is under way, and mends a line that was hung up.
    virtual void powerOn(TimePoint now) = 0;
    [[nodiscard]] virtual unsigned powerOns() const = 0;

    // Bytes of the loader have come through the line.
    virtual void receive(std::span<const std::uint8_t> bytes, TimePoint now) = 0;

    // Lets everything happen that is due up to now.
    virtual void advance(TimePoint now) = 0;
    // When something will happen by itself; empty when only a byte can change anything.
    [[nodiscard]] virtual std::optional<TimePoint> nextDeadline() const = 0;
    // What has been sent since the last call, up to the last receive() or advance().
    [[nodiscard]] virtual std::vector<std::uint8_t> takeOutput() = 0;

    // A loader has opened or closed the port, and all that it had sent before has been received.
    virtual void portOpened(TimePoint /*now*/) {}
    virtual void portClosed(TimePoint /*now*/) {}

    // Pulls the adapter; `why` completes "hangs up" in the log.
    virtual void hangUp(const std::string& why) = 0;
    [[nodiscard]] virtual bool hungUp() const = 0;

    [[nodiscard]] virtual State state() const = 0;
    // Nothing more will ever happen.
    [[nodiscard]] virtual bool isOver() const { return false; }
};

} // namespace zrkboard
