#pragma once

#include <chrono>
#include <optional>

namespace zrk {

struct Link;

/// Opens the port if it is closed. With a limit it tries again, yielding, until the port can be opened. False
/// when a stop is requested before that; throws the failure of the last attempt.
[[nodiscard]] bool openWithin(Link& link, std::optional<std::chrono::milliseconds> limit);

} // namespace zrk
