#pragma once

#include "loader/Loader.h"

#include <chrono>

namespace zrkbench {

/// The time and the way to cancel an operation.
struct Cancel {
    /// The end of the console's text when the wait has begun; empty: the operation begins with it.
    QString reached;
    /// Runs at that moment.
    std::function<void()> whenReached = [] {};
    /// The least time from then until the cancel, so that the wait has come to rest.
    std::chrono::milliseconds pause{50};
};

/// Runs the operation, and presses Cancel from the event loop as a click would. Returns the seconds from the
/// press to the operation's end; throws std::runtime_error if it ends otherwise.
[[nodiscard]] double cancelLatency(zrk::Loader& loader, const Cancel& cancel,
                                   const std::function<void()>& operation);

} // namespace zrkbench
