#pragma once

#include <chrono>
#include <optional>

namespace zrk {

struct Link;

/// Opens the port if it is closed. With a limit it retries, yielding, until the port can be opened. Returns
/// false if a stop is requested before that; throws the failure of the last attempt.
[[nodiscard]] bool openWithin(Link& link, std::optional<std::chrono::milliseconds> limit);

} // namespace zrk
