#include "machine/Descriptors.h"

#include <io.h>
#include <windows.h>

namespace zrk {

void fillMissingStreams() {} // the numbers of the C library are not those of ports

std::ptrdiff_t writeSome(int descriptor, const char* bytes, std::size_t count) {
    constexpr std::size_t kMost = std::size_t{1} << 30;
    return _write(descriptor, bytes, static_cast<unsigned>(count < kMost ? count : kMost));
}

/// Two pipes cannot be compared, so they count as one: the order of the text matters more than a delay.
bool leadToOneFile(int one, int other) {
    const auto type = [](int descriptor) {
        return GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)));
    };
    return type(one) == type(other);
}

} // namespace zrk
