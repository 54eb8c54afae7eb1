#include "machine/StandardStreams.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

#ifdef _WIN32
#include <fcntl.h>
#include <initializer_list>
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

struct TerminalSize {
    int columns = 0; ///< 0 where unknown
    int rows = 0;
};

TerminalSize terminalSize() {
#ifdef _WIN32
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) == 0)
        return {};
    return {info.srWindow.Right - info.srWindow.Left + 1, info.srWindow.Bottom - info.srWindow.Top + 1};
#else
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0)
        return {};
    return {size.ws_col, size.ws_row};
#endif
}

} // namespace

#ifdef _WIN32
StandardStreams::StandardStreams() : m_inputBefore(GetConsoleCP()), m_outputBefore(GetConsoleOutputCP()) {
    SetConsoleCP(CP_UTF8);
    SetConsoleOutputCP(CP_UTF8);
    for (std::FILE* stream : {stdout, stderr}) {
        // A board's CR LF must not get a second CR on its way into a file.
        (void)_setmode(_fileno(stream), _O_BINARY);
        const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
        DWORD mode = 0;
        if (GetConsoleMode(handle, &mode) != 0) // progress moves up by escape sequences
            SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
        // An unbuffered stream, as consoles and standard error are, calls the system for every character, or
        // for the first one alone, which splits one of several bytes. Every writer flushes.
        constexpr std::size_t kBuffer = 4096;
        (void)std::setvbuf(stream, nullptr, _IOFBF, kBuffer);
    }
}

StandardStreams::~StandardStreams() {
    (void)std::fflush(stdout);
    (void)std::fflush(stderr);
    if (m_inputBefore != 0)
        SetConsoleCP(m_inputBefore);
    if (m_outputBefore != 0)
        SetConsoleOutputCP(m_outputBefore);
}
#else
StandardStreams::StandardStreams() = default;
StandardStreams::~StandardStreams() {
    (void)m_inputBefore;
    (void)m_outputBefore;
}
#endif

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
    const int columns = terminalSize().columns;
    return columns > 1 ? columns : kUsual;
}

int terminalRows() {
    constexpr int kUsual = 24;
    const int rows = terminalSize().rows;
    return rows > 0 ? rows : kUsual;
}

bool terminalOverwrites() {
    const char* kind = std::getenv("TERM");
    return kind == nullptr || std::string_view(kind) != "dumb";
}

void ignoreBrokenPipes() {
#ifndef _WIN32
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // a record that may not grow ends, not the program
#endif
}

} // namespace zrk
