#include "machine/InterruptSignal.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>

namespace zrk {
namespace {

sigset_t awaitedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        struct sigaction present {};
        // Who started us in the background may have them ignored, and a descriptor would get them still.
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN)
            sigaddset(&signals, signal);
    }
    return signals;
}

} // namespace

void InterruptSignal::hold() {
    const sigset_t signals = awaitedSignals();
    if (pthread_sigmask(SIG_BLOCK, &signals, nullptr) != 0)
        throw std::system_error(errno, std::generic_category(), "pthread_sigmask");
}

// The signals are blocked and read from a descriptor, so that they arrive in the event loop and no
// handler needs a global.
struct InterruptSignal::Private {
    explicit Private(std::function<void(bool)> interrupted) {
        hold();
        const sigset_t signals = awaitedSignals();
        descriptor = signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
        if (descriptor < 0)
            throw std::system_error(errno, std::generic_category(), "signalfd");
        notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                         [this, interrupted = std::move(interrupted)] {
                             signalfd_siginfo info{};
                             while (read(descriptor, &info, sizeof info) == static_cast<ssize_t>(sizeof info))
                                 interrupted(info.ssi_signo != SIGINT);
                         });
    }
    ~Private() {
        notifier.reset();
        close(descriptor);
    }
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;

    int descriptor = -1;
    std::unique_ptr<QSocketNotifier> notifier;
};

InterruptSignal::InterruptSignal(EventLoop& /*loop*/, std::function<void(bool)> interrupted)
    : m_private(std::make_unique<Private>(std::move(interrupted))) {}

InterruptSignal::~InterruptSignal() = default;

} // namespace zrk
