#include "PortFixture.h"

#include <csignal>
#include <ctime>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zrk::test {
namespace {

using namespace std::chrono_literals;

class PortFailure : public PortFixture {
  protected:
    [[nodiscard]] std::string gone(const char* reason) const {
        return "lost: " + name() + " is gone: " + reason + ". Plug the adapter in again and start over.";
    }
};

TEST_F(PortFailure, HangUpIsFoundAtOnceAndReportedAfterTheBytesBeforeIt) {
    openPort();
    line.send("last words");
    ASSERT_TRUE(waitUntil([&] { return port->bytesWaiting() == 10; }));
    line.hangUp();
    ASSERT_TRUE(waitUntil([&] { return port->isLost(); }));
    EXPECT_EQ(port->bytesWaiting(), 10);
    EXPECT_EQ(port->read(4), "last");
    EXPECT_EQ(port->read(100), " words");

    const std::string failure = gone("the line was hung up");
    EXPECT_EQ(callsOf(*port, failure), "");
    EXPECT_FALSE(port->setDtr(true));
    EXPECT_EQ(port->unsentBytes(), 0) << "and nothing is on its way";
    EXPECT_THROW(port->setHandshaking(Handshaking::XonXoff), RuntimeFailure) << "so that its caller can tell";
    EXPECT_EQ(callsOf(*port, failure), "") << "the first failure stays";

    // A device that is gone must not be polled over and over.
    const auto before = std::clock();
    idle(200ms);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 10);
}

TEST_F(PortFailure, HangUpEndsAWriteThatWaits) {
    openPort();
    line.stopLine();
    port->write(pattern(512));
    const auto begin = loop.now();
    std::string failure;
    {
        const std::jthread puller([&] { line.hangUp(); });
        failure = failureOf([&] { port->write(pattern(1000)); });
    }
    // The kernel ends the two in any order.
    EXPECT_TRUE(failure == gone("the line was hung up") || failure == gone("input/output error")) << failure;
    EXPECT_LT(loop.now() - begin, 9min) << "it was the stall limit that ended it";
}

TEST_F(PortFailure, AStandstillIsDetectedItsLimitAfterTheSendingBegan) {
    constexpr auto kStall = 500ms;
    openPort(kStall);
    port->write("goes out");
    EXPECT_EQ(line.receive(8), "goes out");
    idle(2 * kStall);
    line.stopLine();
    const auto begin = loop.now();
    port->write("x");
    ASSERT_TRUE(waitUntil([&] { return port->isLost(); })) << "no call writes";
    EXPECT_GE(loop.now() - begin, kStall);
    const std::string stalled = "lost: " + name() +
                                " takes no more data: nothing has gone out for 0.5 s. "
                                "Check the cable and the board.";
    EXPECT_EQ(callsOf(*port, stalled), "");

    port.reset();
    openPort(kStall);
    line.stopLine();
    EXPECT_EQ(failureOf([&] { port->write(pattern(513)); }), stalled);
}

// Ctrl-Z during a transfer, and "fg": the clock went on, but the device has not been asked.
TEST_F(PortFailure, StoppedProgramIsNoStall) {
    port = opened({.stallLimit = 1s, .lineRate = 1000});
    const QByteArray bytes = pattern(900);
    port->write(bytes);
    const pid_t program = ::getpid();
    const pid_t user = ::fork();
    if (user == 0) {
        ::kill(program, SIGSTOP);
        ::usleep(1'500'000);
        ::kill(program, SIGCONT);
        ::_exit(0);
    }
    EXPECT_EQ(::waitpid(user, nullptr, 0), user);
    EXPECT_EQ(line.receive(bytes.size()), bytes);
    EXPECT_FALSE(port->isLost());
}

TEST_F(PortFailure, StoppedLineCountsAgainWithoutXonXoff) {
    openPort(100ms);
    port->setHandshaking(Handshaking::XonXoff);
    line.stopLine();
    port->write("x");
    EXPECT_FALSE(drains(300ms));
    EXPECT_FALSE(port->isLost());
    port->setHandshaking(Handshaking::None);
    EXPECT_TRUE(waitUntil([&] { return port->isLost(); }));
}

TEST_F(PortFailure, CloseDoesNotWaitForAStuckLine) {
    for (const bool pulled : {false, true}) {
        openPort();
        line.stopLine();
        port->write(pattern(512));
        if (pulled)
            line.hangUp();
        const auto begin = loop.now();
        port.reset();
        EXPECT_LT(loop.now() - begin, 25s) << (pulled ? "pulled" : "stopped");
        if (pulled)
            return;
        line.restartLine();
        openPort();
        port->write("new");
        EXPECT_EQ(line.receive(3), "new") << "what was queued is dropped";
        port.reset();
    }
}

} // namespace
} // namespace zrk::test
