#pragma once

#include <cstdint>
#include <optional>

namespace zrk {

/// Allows this process so many open files, ports and connections, if the system permits. Returns how many it
/// permits if these are fewer, else nothing.
[[nodiscard]] std::optional<std::uint64_t> allowOpenFiles(std::uint64_t wanted);

} // namespace zrk
