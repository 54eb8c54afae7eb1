#pragma once

#include "loader/Loader.h"

#include <chrono>

namespace zrkbench {

/// When and how an operation is cancelled.
struct Cancel {
    /// What the console's text ends with when the wait has begun; empty: the operation begins with it.
    QString reached;
    /// Done at that moment.
    std::function<void()> whenReached = [] {};
    /// From then until the cancel, at least, so that the wait has come to rest.
    std::chrono::milliseconds pause{50};
};

/// Runs the operation, and presses Cancel from the event loop as a click would. Seconds from the press to the
/// operation's end; throws std::runtime_error when it ends otherwise.
[[nodiscard]] double cancelLatency(zrk::Loader& loader, const Cancel& cancel,
                                   const std::function<void()>& operation);

} // namespace zrkbench
