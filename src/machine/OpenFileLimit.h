#pragma once

#include <cstdint>
#include <optional>

namespace zrk {

/// Lets this process have so many files, ports and connections open at once, if the system allows. Returns
/// how many it allows where these are fewer, else nothing.
[[nodiscard]] std::optional<std::uint64_t> allowOpenFiles(std::uint64_t wanted);

} // namespace zrk
