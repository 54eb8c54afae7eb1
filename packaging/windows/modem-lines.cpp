// A library for Wine: gives pseudo-terminals, which have no modem lines, a DTR and an RTS, and writes their
// states after each change into the file that ZRK_MODEM_LINES names, with the time in milliseconds.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <sys/ioctl.h>

namespace {

int lines = TIOCM_DTR | TIOCM_RTS; // as the system has them when it opens a port

void change(int to) {
    const char* const file = std::getenv("ZRK_MODEM_LINES");
    if (to == lines || file == nullptr)
        return;
    lines = to;
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    if (std::FILE* const log = std::fopen(file, "a")) {
        std::fprintf(log, "%lld DTR %s RTS %s\n",
                     static_cast<long long>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000,
                     (lines & TIOCM_DTR) != 0 ? "on" : "off", (lines & TIOCM_RTS) != 0 ? "on" : "off");
        std::fclose(log);
    }
}

} // namespace

extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
    va_list rest;
    va_start(rest, request);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    constexpr int kOutputs = TIOCM_DTR | TIOCM_RTS;
    int* const value = static_cast<int*>(argument);
    switch (request) {
    case TIOCMGET:
        *value = lines | TIOCM_CTS | TIOCM_DSR | TIOCM_CAR;
        return 0;
    case TIOCMSET:
        change(*value & kOutputs);
        return 0;
    case TIOCMBIS:
        change(lines | (*value & kOutputs));
        return 0;
    case TIOCMBIC:
        change(lines & ~*value);
        return 0;
    default:
        break;
    }
    using Ioctl = int (*)(int, unsigned long, ...);
    static const auto next = reinterpret_cast<Ioctl>(dlsym(RTLD_NEXT, "ioctl"));
    return next(descriptor, request, argument);
}
