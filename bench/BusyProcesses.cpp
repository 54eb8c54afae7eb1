#include "BusyProcesses.h"

#include <csignal>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace zrkbench {
namespace {

/// Burns processor time until the parent ends, however that ends.
[[noreturn]] void burn(pid_t parent) {
    constexpr unsigned kTurns = 10'000'000; // some milliseconds
    while (::getppid() == parent) {
        for (volatile unsigned turn = 0; turn < kTurns;)
            turn = turn + 1;
    }
    ::_exit(0);
}

} // namespace

BusyProcesses::BusyProcesses(int count) {
    const pid_t parent = ::getpid();
    for (int i = 0; i < count; ++i) {
        const pid_t process = ::fork();
        if (process == 0)
            burn(parent);
        if (process < 0)
            throw std::runtime_error("cannot start a process that burns processor time");
        m_processes.push_back(process);
    }
}

BusyProcesses::~BusyProcesses() {
    for (const pid_t process : m_processes) {
        (void)::kill(process, SIGKILL);
        (void)::waitpid(process, nullptr, 0);
    }
}

} // namespace zrkbench
