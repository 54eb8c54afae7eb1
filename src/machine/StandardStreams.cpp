#include "machine/StandardStreams.h"

#include <cstdio>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <csignal>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace zrk {
namespace {

bool isTerminal(std::FILE* stream) {
#ifdef _WIN32
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) == 1;
#endif
}

} // namespace

bool hasStandardOutput() {
#ifdef _WIN32
    return GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) != FILE_TYPE_UNKNOWN;
#else
    return true;
#endif
}

bool standardErrorIsTerminal() {
    return isTerminal(stderr);
}

bool standardOutputIsTerminal() {
    return isTerminal(stdout);
}

int terminalColumns() {
    constexpr int kUsual = 80;
#ifdef _WIN32
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const bool isTold = GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) != 0;
    const int columns = isTold ? info.srWindow.Right - info.srWindow.Left + 1 : 0;
#else
    winsize size{};
    const int columns = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
#endif
    return columns > 1 ? columns : kUsual;
}

void ignoreBrokenPipes() {
#ifndef _WIN32
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

} // namespace zrk
