#include "machine/StandardStreams.h"

#include <cstdio>

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <csignal>
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

void ignoreBrokenPipes() {
#ifndef _WIN32
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

} // namespace zrk
