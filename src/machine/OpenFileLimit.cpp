#include "machine/OpenFileLimit.h"

#ifndef _WIN32
#include <algorithm>
#include <sys/resource.h>
#endif

namespace zrk {

#ifdef _WIN32
std::optional<std::uint64_t> allowOpenFiles(std::uint64_t /*wanted*/) {
    return std::nullopt; // no such limit
}
#else
std::optional<std::uint64_t> allowOpenFiles(std::uint64_t wanted) {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= wanted)
        return std::nullopt;
    const rlim_t before = limit.rlim_cur;
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, wanted);
    if (::setrlimit(RLIMIT_NOFILE, &limit) != 0)
        return before;
    return limit.rlim_cur >= wanted ? std::nullopt : std::optional<std::uint64_t>(limit.rlim_cur);
}
#endif

} // namespace zrk
