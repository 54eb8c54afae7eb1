#include "files/Descriptor.h"
#include "machine/InterruptSignal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <system_error>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace zrk {
namespace {

using TimePoint = std::chrono::steady_clock::time_point;

sigset_t awaitedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        struct sigaction present {};
        // A parent that started us in the background may ignore them, and a descriptor would get them still.
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN)
            sigaddset(&signals, signal);
    }
    return signals;
}

int made(int descriptor, const char* what) {
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return descriptor;
}

/// The settings of the terminal on standard input at the start.
class TerminalBefore {
  public:
    TerminalBefore() {
        termios settings{};
        if (::tcgetattr(STDIN_FILENO, &settings) == 0)
            m_settings = settings;
    }
    /// Not for a program in the background: then the terminal belongs to another one.
    void restore() const {
        if (m_settings && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp())
            (void)::tcsetattr(STDIN_FILENO, TCSANOW, &*m_settings);
    }

  private:
    std::optional<termios> m_settings;
};

/// Prints the text if standard error takes it at once.
void say(std::string_view text) {
    pollfd entry{STDERR_FILENO, POLLOUT, 0};
    if (::poll(&entry, 1, 0) == 1 && (entry.revents & POLLOUT) != 0)
        (void)!::write(STDERR_FILENO, text.data(), text.size());
}

} // namespace

void InterruptSignal::hold() {
    const sigset_t signals = awaitedSignals();
    if (pthread_sigmask(SIG_BLOCK, &signals, nullptr) != 0)
        throw std::system_error(errno, std::generic_category(), "pthread_sigmask");
}

// The signals are blocked and read from a descriptor, so that no handler needs a global.
struct InterruptSignal::Private {
    Private(Handler handed, const Limits& given)
        : limits(given), handler(std::move(handed)), signals(made(makeSignals(), "signalfd")),
          wake(made(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC), "eventfd")) {
        takeAll(); // signals during the program's start come first
        thread = std::thread([this] { watch(); });
    }
    ~Private() {
        {
            const std::scoped_lock lock(mutex);
            ending = true;
        }
        wakeUp();
        thread.join();
    }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    static int makeSignals() {
        hold();
        const sigset_t awaited = awaitedSignals();
        return ::signalfd(-1, &awaited, SFD_NONBLOCK | SFD_CLOEXEC);
    }

    void wakeUp() const { (void)::eventfd_write(wake.number(), 1); }

    void watch() {
        while (true) {
            std::array<pollfd, 2> entries{{{signals.number(), POLLIN, 0}, {wake.number(), POLLIN, 0}}};
            (void)::poll(entries.data(), entries.size(), millisecondsLeft());
            eventfd_t count = 0;
            (void)::eventfd_read(wake.number(), &count);
            if (isEnding())
                return;
            takeAll();
            if (millisecondsLeft() == 0)
                leave();
        }
    }

    void takeAll() {
        signalfd_siginfo info{};
        while (::read(signals.number(), &info, sizeof info) == static_cast<ssize_t>(sizeof info))
            take(info.ssi_signo != SIGINT);
    }

    void take(bool isEnd) {
        const auto now = std::chrono::steady_clock::now();
        if (unheard.expired())
            unheardSince = now;
        else if (now - unheardSince >= limits.untilSecond)
            leave();
        auto request = std::make_shared<const Signal>(Signal{isEnd});
        unheard = request; // is taken after the ones before
        if (isEnd)
            endBy(now + limits.untilEnded, kStatus);
        handler(std::move(request));
    }

    void endBy(TimePoint time, int withStatus) {
        const std::scoped_lock lock(mutex);
        if (end && *end <= time)
            return;
        end = time;
        status = withStatus;
    }

    [[nodiscard]] bool isEnding() {
        const std::scoped_lock lock(mutex);
        return ending;
    }

    /// Returns the time until the process has to be ended; -1: for ever.
    [[nodiscard]] int millisecondsLeft() {
        const std::scoped_lock lock(mutex);
        std::optional<TimePoint> next = end;
        if (const TimePoint latest = unheardSince + limits.untilHeard; !unheard.expired())
            next = next ? std::min(*next, latest) : latest;
        if (!next)
            return -1;
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(*next - std::chrono::steady_clock::now());
        constexpr std::chrono::milliseconds kMost = std::chrono::hours(24);
        return static_cast<int>(std::clamp(left, std::chrono::milliseconds(0), kMost).count());
    }

    /// Destroys nothing: that could wait for what is blocked.
    [[noreturn]] void leave() {
        before.restore();
        say("The program did not react and was ended.\n");
        const std::scoped_lock lock(mutex);
        std::_Exit(unheard.expired() ? status : kStatus);
    }

    const Limits limits;
    const Handler handler;
    const TerminalBefore before;
    std::weak_ptr<const Signal> unheard; ///< the thread's
    TimePoint unheardSince;
    std::mutex mutex;
    // Guarded by mutex.
    std::optional<TimePoint> end;
    int status = kStatus;
    bool ending = false;

    const Descriptor signals;
    const Descriptor wake;
    std::thread thread;
};

InterruptSignal::InterruptSignal(Handler handler, const Limits& limits)
    : m_private(std::make_unique<Private>(std::move(handler), limits)) {}

InterruptSignal::~InterruptSignal() = default;

void InterruptSignal::endAfter(std::chrono::steady_clock::time_point moment, int status) {
    m_private->endBy(moment + m_private->limits.untilEnded, status);
    m_private->wakeUp();
}

} // namespace zrk
