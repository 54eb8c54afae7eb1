#include "board/program/SignalInput.h"

#include <cerrno>
#include <csignal>
#include <sys/signalfd.h>
#include <system_error>

namespace zrkboard {

SignalInput::SignalInput() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGUSR2})
        sigaddset(&signals, number);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    // The reader of the device path may close the pipe afterwards.
    (void)std::signal(SIGPIPE, SIG_IGN);
    m_fd = FileDescriptor(::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
    if (!m_fd.isOpen())
        throw std::system_error(errno, std::generic_category(), "cannot receive signals");
}

SignalInput::Wish SignalInput::take() {
    signalfd_siginfo info{};
    if (::read(m_fd.get(), &info, sizeof info) != static_cast<ssize_t>(sizeof info))
        return Wish::None;
    switch (info.ssi_signo) {
    case SIGUSR1:
        return Wish::PowerCycle;
    case SIGUSR2:
        return Wish::HangUp;
    default:
        return Wish::End;
    }
}

} // namespace zrkboard
