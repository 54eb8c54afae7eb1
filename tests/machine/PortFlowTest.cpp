#include "PortFixture.h"

#include <thread>

namespace zrk::test {
namespace {

using namespace std::chrono_literals;

class PortFlow : public PortFixture {};

TEST_F(PortFlow, AllValuesPassBothWaysInBulkAndOneByOne) {
    openPort();
    const QByteArray bytes = pattern(2048);
    for (const qsizetype piece : {bytes.size(), qsizetype{1}}) {
        for (qsizetype i = 0; i < bytes.size(); i += piece)
            port->write(QByteArrayView(bytes).sliced(i, piece));
        EXPECT_EQ(line.receive(bytes.size()), bytes) << "out, pieces of " << piece;

        line.send(bytes);
        QByteArray got;
        ASSERT_TRUE(waitUntil([&] {
            while (port->bytesWaiting() > 0)
                got += port->read(piece);
            return got.size() >= bytes.size();
        }));
        EXPECT_EQ(got, bytes) << "in, pieces of " << piece;
    }
    EXPECT_EQ(port->read(1), "");
}

TEST_F(PortFlow, XonXoffStopsTheLineForAsLongAsTheBoardLikes) {
    openPort(50ms);
    port->setHandshaking(Handshaking::XonXoff);
    line.send("a\x13"
              "b");
    EXPECT_EQ(readAll(*port, 2), "ab") << "XOFF is not data";
    port->write("held");
    EXPECT_FALSE(drains(300ms));
    EXPECT_FALSE(port->isLost()) << "a line that the board stopped has not stalled";
    EXPECT_FALSE(line.hasReceived());
    EXPECT_EQ(port->transmitRoom(), 508);

    line.send("\x11");
    EXPECT_EQ(line.receive(4), "held");
    EXPECT_TRUE(drains(10s));
}

TEST_F(PortFlow, ChangingTheHandshakingLosesNothing) {
    openPort();
    port->setHandshaking(Handshaking::XonXoff);
    line.send("in\x13");
    line.send(".");
    ASSERT_TRUE(waitUntil([&] { return port->bytesWaiting() == 3; }));
    port->write("out");
    EXPECT_FALSE(drains(20ms));

    port->setHandshaking(Handshaking::None);
    EXPECT_EQ(line.receive(3), "out") << "without flow control nothing may stay stopped";
    line.send("\x11\x13");
    EXPECT_EQ(readAll(*port, 5), "in.\x11\x13");

    port.reset();
    port = opened({}, Handshaking::XonXoff);
    EXPECT_EQ(line.settings().c_iflag & (IXON | IXOFF), static_cast<tcflag_t>(IXON | IXOFF));
}

TEST_F(PortFlow, QueueTakesExactlyItsBoundAndTellsWhenThereIsRoom) {
    openPort();
    line.stopLine();
    const QByteArray bytes = pattern(512);
    EXPECT_EQ(port->transmitRoom(), 512);
    for (int i = 0; i < 512; ++i) {
        ASSERT_EQ(port->transmitRoom(), 512 - i);
        port->write(QByteArrayView(bytes).sliced(i, 1));
    }
    EXPECT_EQ(port->transmitRoom(), 0);

    line.restartLine();
    EXPECT_TRUE(waitUntil([&] { return loop.wakes() > 0; })) << "somebody looked at the room";
    EXPECT_TRUE(waitUntil([&] { return port->transmitRoom() == 512; }));
    EXPECT_EQ(line.receive(512), bytes);
}

TEST_F(PortFlow, SendingWakesNobodyWhoDidNotAskForRoom) {
    openPort();
    for (int i = 0; i < 1000; ++i)
        port->write("x");
    EXPECT_EQ(line.receive(1000), QByteArray(1000, 'x'));
    port.reset();
    EXPECT_EQ(loop.wakes(), 0);
}

TEST_F(PortFlow, AWakeUpForRoomComesOnceForEachTimeItWasMissed) {
    openPort();
    line.stopLine();
    port->write(pattern(512));
    EXPECT_EQ(port->transmitRoom(), 0);
    line.restartLine();
    EXPECT_EQ(line.receive(512), pattern(512));
    ASSERT_TRUE(drains(10s));
    const int before = loop.wakes();
    EXPECT_GT(before, 0);
    for (int i = 0; i < 1000; ++i)
        port->write("x");
    EXPECT_EQ(line.receive(1000), QByteArray(1000, 'x'));
    port.reset();
    EXPECT_EQ(loop.wakes(), before);
}

// Whatever swallows the bytes: this pseudo-terminal takes all of them at once.
TEST_F(PortFlow, IsNoFasterThanTheLineBeyondItsLead) {
    constexpr std::uint32_t kRate = 100'000;
    constexpr qsizetype kBytes = 100'000;
    constexpr qsizetype kAhead = 34'000 + 512; // the lead and the queue
    port = opened({10s, 1 << 20, kRate});
    const auto begin = loop.now();
    QByteArray received;
    {
        const std::jthread board([&] { received = line.receive(kBytes); });
        port->write(pattern(kBytes));
        EXPECT_GE(loop.now() - begin, 1000ms * (kBytes - kAhead) / kRate);
        EXPECT_TRUE(drains(10s));
        EXPECT_GE(loop.now() - begin, 1000ms * kBytes / kRate - 1ms) << "the line was not waited for";
    }
    EXPECT_EQ(received, pattern(kBytes));
}

TEST_F(PortFlow, WriteBeyondTheBoundReturnsWhenTheLineHasTakenEnough) {
    openPort();
    line.stopLine();
    const QByteArray bytes = pattern(102'400);
    port->write(QByteArrayView(bytes).first(512));
    QByteArray received;
    {
        const std::jthread board([&] {
            line.restartLine();
            received = line.receive(bytes.size());
        });
        port->write(QByteArrayView(bytes).sliced(512));
    }
    EXPECT_EQ(received, bytes);
}

// The limit is on a standstill, not on the whole: an image takes longer than it at full speed.
TEST_F(PortFlow, SlowLineIsNoStall) {
    constexpr auto kStall = 1000ms;
    const QByteArray bytes = pattern(102'400);
    // A machine that is so busy that the board itself stood still shows nothing.
    for (EventLoop::TimePoint::duration longestPause = kStall; longestPause >= kStall;) {
        openPort(kStall);
        longestPause = 0ms;
        const auto begin = loop.now();
        std::string failure;
        {
            const std::jthread board([&] {
                qsizetype received = 0;
                for (auto last = begin; received < bytes.size(); last = loop.now()) {
                    received += line.receive(1024).size();
                    std::this_thread::sleep_for(15ms); // the line's speed
                    longestPause = std::max(longestPause, loop.now() - last);
                }
            });
            failure = failureOf([&] { port->write(bytes); });
            if (failure != "none")
                line.hangUp();
        }
        if (failure != "none" && longestPause >= kStall)
            return;
        EXPECT_EQ(failure, "none");
        EXPECT_GT(loop.now() - begin, kStall) << "too fast to show anything";
        EXPECT_FALSE(port->isLost());
    }
}

TEST_F(PortFlow, UnreadBytesHoldTheBoardBackAndNoneIsLost) {
    openPort(10s, 8192);
    const QByteArray bytes = pattern(200'000);
    QByteArray got;
    {
        const std::jthread board([&] { line.send(bytes); });
        ASSERT_TRUE(waitUntil([&] { return port->bytesWaiting() >= 8192; }));
        ASSERT_TRUE(waitUntil([&] {
            const qsizetype waiting = port->bytesWaiting();
            EXPECT_LE(waiting, 8192 + 4096);
            got += port->read(700);
            loop.wake(); // what is still there arrives no second time
            return got.size() >= bytes.size();
        }));
    }
    EXPECT_EQ(got, bytes);
}

TEST_F(PortFlow, DrainIsTrueOnlyWhenAllHasLeft) {
    openPort();
    EXPECT_TRUE(drains(0ms));
    line.stopLine();
    port->write("d");
    EXPECT_FALSE(drains(20ms));
    line.restartLine();
    EXPECT_TRUE(drains(10s));
    port.reset();
    EXPECT_EQ(line.receive(1), "d") << "closing after that must not take it back";
}

TEST_F(PortFlow, PtyHasNoDtrWhichIsNoFailure) {
    openPort();
    EXPECT_FALSE(port->setDtr(false));
    EXPECT_FALSE(port->setDtr(true));
    EXPECT_FALSE(port->isLost());
}

} // namespace
} // namespace zrk::test
