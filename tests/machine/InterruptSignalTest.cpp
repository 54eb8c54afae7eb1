#include "machine/InterruptSignal.h"

#include "machine/Pty.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <csignal>
#include <mutex>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace std::chrono_literals;
using zrk::InterruptSignal;

/// Blocks for ever, as a program that hangs in the middle of something.
[[noreturn]] void block() {
    while (true)
        ::pause();
}

/// The requests and their reactions.
struct Requests {
    std::mutex mutex;
    std::condition_variable came;
    std::vector<InterruptSignal::Request> kept;

    [[nodiscard]] InterruptSignal::Handler keep() {
        return [this](InterruptSignal::Request request) {
            const std::scoped_lock lock(mutex);
            kept.push_back(std::move(request));
            came.notify_all();
        };
    }
    void hear(std::size_t count) {
        std::unique_lock lock(mutex);
        came.wait(lock, [&] { return kept.size() == count; });
        kept.clear();
    }
};

struct InterruptSignalDeathTest : ::testing::Test {
    InterruptSignalDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    Requests requests;
    const InterruptSignal::Limits patient{.untilSecond = 0ms, .untilHeard = 1h, .untilEnded = 1h};
};

void signalThis(int signal) {
    ::kill(::getpid(), signal);
}

TEST_F(InterruptSignalDeathTest, EndsAProgramThatDoesNotReact) {
    const auto reaction = "did not react";
    EXPECT_EXIT(
        {
            const InterruptSignal watch(requests.keep(), patient);
            signalThis(SIGTERM);
            signalThis(SIGINT);
            block();
        },
        testing::ExitedWithCode(130), reaction)
        << "on a second signal";
    EXPECT_EXIT(
        {
            const InterruptSignal watch(requests.keep(),
                                        {.untilSecond = 1h, .untilHeard = 0ms, .untilEnded = 1h});
            signalThis(SIGINT);
            block();
        },
        testing::ExitedWithCode(130), reaction)
        << "on a signal that is not heard";
    EXPECT_EXIT(
        {
            const InterruptSignal watch([](const InterruptSignal::Request&) {},
                                        {.untilSecond = 1h, .untilHeard = 1h, .untilEnded = 0ms});
            signalThis(SIGHUP);
            block();
        },
        testing::ExitedWithCode(130), reaction)
        << "on a request to end that was heard";
    EXPECT_EXIT(
        {
            InterruptSignal watch(requests.keep(), {.untilSecond = 1h, .untilHeard = 1h, .untilEnded = 0ms});
            watch.endAfter(std::chrono::steady_clock::now(), 4);
            block();
        },
        testing::ExitedWithCode(4), reaction)
        << "at the limit of a run";
}

TEST_F(InterruptSignalDeathTest, LeavesAProgramThatReactsAlone) {
    EXPECT_EXIT(
        {
            const InterruptSignal watch(requests.keep(), patient);
            signalThis(SIGINT);
            requests.hear(1);
            signalThis(SIGINT);
            requests.hear(1);
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "")
        << "a signal that has been heard counts no more";
    EXPECT_EXIT(
        {
            const InterruptSignal watch(requests.keep(),
                                        {.untilSecond = 1h, .untilHeard = 1h, .untilEnded = 1h});
            signalThis(SIGTERM);
            signalThis(SIGHUP);
            requests.hear(2);
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "")
        << "one end that comes twice";
}

/// A shell's terminal, on which the program gets each key at once, is restored at the end.
TEST_F(InterruptSignalDeathTest, SetsTheTerminalBack) {
    const auto withTerminal = [this] {
        const zrk::test::Pty terminal;
        termios before = terminal.settings();
        before.c_lflag |= ICANON;
        terminal.setSettings(before);
        std::signal(SIGHUP, SIG_IGN); // comes when the terminal goes
        ::setsid();
        ::ioctl(terminal.deviceDescriptor(), TIOCSCTTY, 0);
        ::dup2(terminal.deviceDescriptor(), STDIN_FILENO);
        const pid_t program = ::fork();
        if (program == 0) {
            const InterruptSignal watch(requests.keep(), patient);
            termios raw = before;
            ::cfmakeraw(&raw);
            terminal.setSettings(raw);
            signalThis(SIGTERM);
            signalThis(SIGINT);
            block();
        }
        int status = 0;
        ::waitpid(program, &status, 0);
        return WIFEXITED(status) && (terminal.settings().c_lflag & ICANON) != 0 ? WEXITSTATUS(status) : -1;
    };
    EXPECT_EXIT(std::_Exit(withTerminal()), testing::ExitedWithCode(130), "");
}

} // namespace
