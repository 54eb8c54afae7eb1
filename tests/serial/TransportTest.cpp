#include "platform/RuntimeFailure.h"
#include "support/Rig.h"

#include <numeric>

namespace {

using namespace zrktest;

class TransportTest : public ScriptedTest {
  protected:
    void SetUp() override { loader.port.OpenComPort(); }
    zrk::Transport& transport = loader.transport;
};

TEST_F(TransportTest, EveryByteValueIsOneCharacterBothWays) {
    QByteArray all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    transport.SendString(QString::fromLatin1(all));
    transport.SendString("");
    EXPECT_EQ(port.written, all);
    EXPECT_EQ(port.writes, std::vector<qsizetype>{256});
    port.receive(all);
    for (int i = 0; i < 256; ++i)
        EXPECT_EQ(transport.ReadChar(), QString(QChar(i)));
    EXPECT_THROW(transport.SendString(QStringLiteral("a\u0100")), zrk::RuntimeFailure);
    loader.state.DebugMode = true;
    transport.SendString("more");
    transport.SendByte('m');
    EXPECT_EQ(port.written, all);
}

TEST_F(TransportTest, TheFirstBytesAreKept) {
    for (const QByteArray& piece : {hex("FF FB"), hex("01") + QByteArray(5000, 'x')}) {
        port.receive(piece);
        EXPECT_EQ(loader.port.receive(), piece);
    }
    EXPECT_EQ(loader.port.firstReceived(), hex("FF FB 01"));
    EXPECT_LT(loader.port.lastReceived().size(), 1100);
}

TEST_F(TransportTest, ReadCharYieldsFirstAndACancelWinsOverWaitingData) {
    int turns = 0;
    port.receive("ab");
    loop.post([&] { ++turns; });
    EXPECT_EQ(transport.ReadChar(), "a");
    EXPECT_EQ(turns, 1);
    loader.port.putBack("old"); // the close discards it, like all that is unread
    loop.post([&] { EXPECT_EQ(loader.portControl.Form_Unload(), 1); });
    loader.state.OperationActive = true;
    EXPECT_EQ(transport.ReadChar(), QString(QChar(0))) << "the port is closed by now, and not read";
    loader.state.OperationActive = false;

    loader.port.OpenComPort();
    EXPECT_EQ(loader.port.receive() + loader.port.lastReceived(), "");
    port.receive("b");
    loader.state.CancelRequested = true;
    EXPECT_EQ(transport.ReadChar(), QString(QChar(0)));
    EXPECT_EQ(port.unread(), "b");
    loader.state.CancelRequested = false;
    EXPECT_EQ(transport.ReadChar(), "b");

    port.receive("c");
    port.hangUp(); // what had arrived is still read
    EXPECT_FALSE(transport.ExpectChar("C"));
    EXPECT_EQ(bench.console(), "cinvalid character received! Cancelling.\n");
    EXPECT_THROW((void)transport.ReadChar(), zrk::RuntimeFailure);
}

TEST_F(TransportTest, ReplyTimeOut) {
    for (const auto& [debug, seconds] : {std::pair{false, 5}, {true, 10}}) {
        loader.state.withdrawStop();
        loader.state.DebugMode = debug;
        bench.boxes.shown.clear();
        bench.boxes.user = [&](int) {
            loop.runFor(21s); // ticks go on while the box is open and show no second one
            return zrk::Answer::Ok;
        };
        transport.ArmReplyTimer(true);
        loop.runFor(3s);
        transport.ArmReplyTimer(true); // counts from here
        loop.runFor(std::chrono::seconds(seconds) - 1ms);
        EXPECT_FALSE(loader.state.CancelRequested);
        loop.runFor(1ms);
        EXPECT_TRUE(loader.state.CancelRequested);
        EXPECT_EQ(loader.state.StopReason, zrk::Outcome::TimedOut);
        EXPECT_EQ(bench.boxes.shown.join('|'),
                  QStringLiteral("[TimeOut] ! No valid serial response received within  %1 second\n"
                                 "Aborting operation")
                      .arg(seconds));
        bench.boxes.user = nullptr;
        loop.runFor(11s);
        EXPECT_GT(bench.boxes.shown.size(), 1) << "it ticks until it is disarmed";
        transport.ArmReplyTimer(false);
        const auto shown = bench.boxes.shown.size();
        loop.runFor(30s);
        EXPECT_EQ(bench.boxes.shown.size(), shown);
    }
}

TEST_F(TransportTest, ProgressIsShownEveryQuarterOfASecondOfAnOperation) {
    auto& panel = loader.controls.staStatus.SecondPanel;
    loader.state.OperationActive = true;
    transport.enableSentStatus(true);
    loader.state.BytesSent = 1200;
    loader.state.BytesTotal = 4096;
    loop.runFor(249ms);
    EXPECT_EQ(panel.value(), "");
    loop.runFor(1ms);
    EXPECT_EQ(panel.value(), "bytes sent 1200 / 4096");
    EXPECT_DOUBLE_EQ(loader.controls.pgbDownload.Value, 29.296875);

    loader.state.OperationActive = false; // a port failure left the display running
    panel = QStringLiteral("something newer");
    loop.runFor(1s);
    EXPECT_EQ(panel.value(), "something newer");
    EXPECT_FALSE(transport.isTransferring());
}

} // namespace
