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
    EXPECT_FALSE(port->setDtr(true)) << "a pseudo-terminal has none, which is no failure";
    EXPECT_FALSE(port->isLost());
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
    EXPECT_TRUE(drains(10min));
    port.reset();
    EXPECT_EQ(line.receive(4), "held") << "closing after that must not take it back";
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

TEST_F(PortFlow, QueueTakesExactlyItsBoundAndWakesItsWaiterOnce) {
    openPort();
    const QByteArray bytes = pattern(512);
    const auto sendAll = [&] {
        for (const char& byte : bytes)
            port->write(QByteArrayView(&byte, 1));
        EXPECT_EQ(line.receive(512), bytes);
        EXPECT_TRUE(drains(10min));
    };
    sendAll();
    EXPECT_EQ(loop.wakes(), 0) << "no call asked for room";

    line.stopLine();
    for (int i = 0; i < 512; ++i) {
        ASSERT_EQ(port->transmitRoom(), 512 - i);
        port->write(QByteArrayView(bytes).sliced(i, 1));
    }
    EXPECT_EQ(port->transmitRoom(), 0);
    line.restartLine();
    EXPECT_TRUE(waitUntil([&] { return loop.wakes() > 0; }));
    EXPECT_EQ(line.receive(512), bytes);
    ASSERT_TRUE(drains(10min));
    sendAll();
    EXPECT_EQ(port->transmitRoom(), 512);
    port.reset();
    EXPECT_EQ(loop.wakes(), 1);
}

// This pseudo-terminal takes all bytes at once: only the pace holds them back, for longer than the stall
// limit, which is for a standstill and not for the whole.
TEST_F(PortFlow, IsNoFasterThanTheLineBeyondItsLeadWhichIsNoStall) {
    constexpr std::uint32_t kRate = 2'000;
    constexpr qsizetype kBytes = 7'000;
    constexpr qsizetype kAhead = 680 + 512; // the lead and the queue
    port = opened({2s, 1 << 20, kRate});
    const auto begin = loop.now();
    port->write(pattern(kBytes));
    EXPECT_GE(loop.now() - begin, 1000ms * (kBytes - kAhead) / kRate);
    EXPECT_TRUE(drains(10min));
    EXPECT_GE(loop.now() - begin, 1000ms * kBytes / kRate - 1ms) << "the line was not waited for";
    EXPECT_EQ(line.receive(kBytes), pattern(kBytes));
}

TEST_F(PortFlow, UnreadBytesHoldTheBoardBackAndNoneIsLost) {
    openPort(10min, 8192);
    const QByteArray bytes = pattern(200'000);
    QByteArray got;
    {
        const std::jthread board([&] { line.send(bytes); });
        ASSERT_TRUE(waitUntil([&] { return port->bytesWaiting() >= 8192; }));
        ASSERT_TRUE(waitUntil([&] {
            const qsizetype waiting = port->bytesWaiting();
            EXPECT_LE(waiting, 8192 + 4096);
            got += port->read(700);
            loop.wake(); // the rest does not arrive twice
            return got.size() >= bytes.size();
        }));
    }
    EXPECT_EQ(got, bytes);
}

TEST_F(PortFlow, SkippedBytesMakeRoom) {
    openPort(10min, 8);
    line.send("5555555555");
    ASSERT_TRUE(waitUntil([&] { return port->bytesWaiting() >= 8; }));
    port->skip('5');
    line.send("x");
    EXPECT_TRUE(waitUntil([&] {
        port->skip('5');
        return port->bytesWaiting() > 0;
    }));
    EXPECT_EQ(port->read(9), "x");
}

TEST_F(PortFlow, TwoPortsLiveSideBySide) {
    openPort();
    Pty otherLine;
    const auto other =
        MachinePorts(loop, PortNames({{2, otherLine.device()}})).open(2, kLine, Handshaking::None);
    otherLine.send("from two");
    line.send("from one");
    EXPECT_EQ(readAll(*port, 8), "from one");
    EXPECT_EQ(readAll(*other, 8), "from two");
    line.hangUp();
    EXPECT_TRUE(waitUntil([&] { return port->isLost(); }));
    EXPECT_FALSE(other->isLost());
    other->write("still");
    EXPECT_EQ(otherLine.receive(5), "still");
}

} // namespace
} // namespace zrk::test
