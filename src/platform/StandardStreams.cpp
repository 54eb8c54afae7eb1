#include "platform/StandardStreams.h"

#include <cstdio>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <csignal>
#include <unistd.h>
#endif

namespace zrk {

bool hasStandardOutput() {
#ifdef _WIN32
    return GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) != FILE_TYPE_UNKNOWN;
#else
    return true;
#endif
}

bool standardErrorIsTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) == 1;
#endif
}

bool standardOutputIsTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stdout)) != 0;
#else
    return isatty(STDOUT_FILENO) == 1;
#endif
}

void ignoreBrokenPipes() {
#ifndef _WIN32
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

} // namespace zrk
