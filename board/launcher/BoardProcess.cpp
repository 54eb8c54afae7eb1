#include "board/launcher/BoardProcess.h"

#include <array>
#include <csignal>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace zrkboard {

namespace {

constexpr int kPatience = 600'000; // milliseconds; only a fault lasts that long

// Reads one byte; returns false at the end of the stream or after ten minutes of silence.
bool readByte(int fd, char& byte) {
    pollfd entry{fd, POLLIN, 0};
    return ::poll(&entry, 1, kPatience) == 1 && ::read(fd, &byte, 1) == 1;
}

std::chrono::microseconds time(timeval t) {
    return std::chrono::seconds(t.tv_sec) + std::chrono::microseconds(t.tv_usec);
}

} // namespace

BoardProcess::BoardProcess(std::vector<std::string> options) {
    options.insert(options.begin(), siblingProgram("zrk-board"));
    std::vector<char*> argv;
    argv.reserve(options.size() + 1);
    for (std::string& option : options)
        argv.push_back(option.data());
    argv.push_back(nullptr);

    std::array<int, 2> out{};
    std::array<int, 2> err{};
    if (::pipe(out.data()) != 0 || ::pipe(err.data()) != 0)
        throw std::runtime_error("cannot make a pipe for the simulated board");
    posix_spawn_file_actions_t actions{};
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
    for (const int fd : {out[0], out[1], err[0], err[1]})
        ::posix_spawn_file_actions_addclose(&actions, fd);
    const int failure = ::posix_spawn(&m_pid, argv[0], &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(out[1]);
    ::close(err[1]);
    m_out = out[0];
    m_err = err[0];
    if (failure == 0)
        m_device = nextDevice();
    if (m_device.empty()) {
        if (failure == 0)
            (void)stop();
        throw std::runtime_error("the simulated board did not start");
    }
}

BoardProcess::~BoardProcess() {
    (void)stop();
    ::close(m_out);
    ::close(m_err);
}

std::string BoardProcess::nextDevice() const {
    std::string line;
    for (char byte = 0; readByte(m_out, byte) && byte != '\n';)
        line += byte;
    return line;
}

bool BoardProcess::waitForLog(const std::string& text) {
    for (char byte = 0; m_log.find(text) == std::string::npos;) {
        if (!readByte(m_err, byte))
            return false;
        m_log += byte;
    }
    return true;
}

void BoardProcess::signal(int number) const {
    (void)::kill(m_pid, number);
}

int BoardProcess::stop() {
    if (m_pid < 0)
        return m_status;
    signal(SIGTERM);
    return join();
}

int BoardProcess::join() {
    int status = 0;
    rusage usage{};
    (void)::wait4(m_pid, &status, 0, &usage);
    m_pid = -1;
    m_processorTime = time(usage.ru_utime) + time(usage.ru_stime);
    return m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string siblingProgram(const std::string& name) {
    return ZRK_PROGRAMS "/" + name;
}

} // namespace zrkboard
