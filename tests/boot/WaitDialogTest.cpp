#include "support/Exchanges.h"

namespace {

using namespace zrktest;
using zrk::Outcome;

class Waiting : public ScriptedTest {
  protected:
    void SetUp() override {
        fillBringUp(bench);
        port.steps = bringUpSteps();
        port.steps[0].answer.clear(); // the board is off
    }

    /// Starts a bring-up and calls `what` with the dialog a minute later.
    void startAnd(const std::function<void(zrk::WaitDialog&)>& what) {
        loop.after(60s, [this, what] {
            ASSERT_NE(bench.waitDialog.open, nullptr);
            what(*bench.waitDialog.open);
        });
        loader.bringUp.cmdStartPrimary_Click();
    }
};

TEST_F(Waiting, TextsOfTheDialog) {
    startAnd([](zrk::WaitDialog& dialog) {
        EXPECT_EQ(dialog.lblMsg.Caption.value(), "Cycle power off/on on the ZRK6924 demo board, \r\n"
                                                 "Make sure that service jumper is installed\r\n\r\n"
                                                 "Waiting for Boot_ID from ZRK6924....");
        EXPECT_EQ(dialog.CancelButton.Caption.value(), "Cancel");
        EXPECT_EQ(dialog.cmdOut.Caption.value(), "Debug Send String:");
        EXPECT_EQ(dialog.txtOut.Text.value(), "4");
        dialog.CancelButton_Click();
    });
}

/// Below the fixed text, for a user who wonders why nothing happens.
TEST_F(Waiting, SaysWhatItSees) {
    struct Row {
        QByteArray received;
        std::chrono::seconds when;
        const char* seen;
    };
    for (const Row& row : std::initializer_list<Row>{
             {"", 0s, "COM1 (/dev/line1): 0 s, 0 bytes received."},
             {"", 14s, "COM1 (/dev/line1): 14 s, 0 bytes received."},
             {"", 75s,
              "COM1 (/dev/line1): 1 min 15 s, 0 bytes received.\nNothing was received from COM1 "
              "(/dev/line1): check that this is the board's port, the cable and the board's power."},
             {"!", 20s, "COM1 (/dev/line1): 20 s, 1 byte received."},
             {"Welcome to the board's shell\r\n", 15s,
              "COM1 (/dev/line1): 15 s, 30 bytes received.\nThe board runs a program that prints text "
              "instead "
              "of waiting in its boot ROM: install the service jumper, then cycle the power."}}) {
        SCOPED_TRACE(row.seen);
        port.steps[0].answer = row.received;
        loop.after(row.when + 20ms, [this, row] {
            EXPECT_EQ(bench.waitDialog.open->lblSeen.Caption.value(), row.seen);
            bench.waitDialog.open->CancelButton_Click();
        });
        loader.bringUp.cmdStartPrimary_Click();
    }
}

TEST_F(Waiting, EveryWayOutWithoutABootId) {
    for (const auto& [name, way] :
         std::initializer_list<std::pair<const char*, std::function<void(zrk::WaitDialog&)>>>{
             {"button", [](zrk::WaitDialog& dialog) { dialog.CancelButton_Click(); }},
             {"closed", [](zrk::WaitDialog& dialog) { dialog.Form_Unload(); }},
             {"main window's button", [this](zrk::WaitDialog&) { loader.portControl.cmdCancel_Click(); }},
             {"main window closed",
              [this](zrk::WaitDialog&) { EXPECT_EQ(loader.portControl.Form_Unload(), 1); }}}) {
        SCOPED_TRACE(name);
        const QString before = bench.console();
        startAnd(way);
        EXPECT_EQ(bench.console().mid(before.size()), "Waiting for BootID .. <0>cancelled!\n" + kAborted);
        EXPECT_EQ(loader.operation.outcome(), Outcome::Cancelled);
        EXPECT_EQ(bench.buttons(), "1001");
        EXPECT_EQ(port.written, "");
        EXPECT_TRUE(bench.boxes.shown.isEmpty());
        bench.expectAtRest();
    }
    startAnd([this](zrk::WaitDialog&) { port.hangUp(); });
    EXPECT_EQ(bench.boxes.shown, boxesOf(Trouble::HangUp));
    EXPECT_EQ(loader.operation.outcome(), Outcome::PortLost);
    bench.expectAtRest();
}

TEST_F(Waiting, ACancelJustBeforeTheDialogIsNotLost) {
    loop.post([this] { loader.portControl.cmdCancel_Click(); }); // runs when the first text yields
    loader.bringUp.cmdStartPrimary_Click();
    EXPECT_EQ(bench.console(), "Waiting for BootID .. cancelled!\n" + kAborted);
    EXPECT_EQ(bench.waitDialog.timesShown, 0);
    EXPECT_EQ(loader.operation.outcome(), Outcome::Cancelled);
    bench.expectAtRest();
}

TEST_F(Waiting, OnlyAFiveEndsIt) {
    startAnd([this](zrk::WaitDialog& dialog) {
        port.receive(hex("00 75 34 FF"));
        dialog.Form_KeyDown(66, true, true, false);
        dialog.Form_KeyDown(66, true, false, false);
        port.receive("5");
    });
    EXPECT_TRUE(bench.console().startsWith("Waiting for BootID .. <0>u4\u00FF5 .. found!\nSending 'A' .. "));
    EXPECT_EQ(port.callNames().mid(1), QStringList({"dtr 0", "dtr 1"}));
    EXPECT_EQ(loader.operation.outcome(), Outcome::Done);
    EXPECT_FALSE(loader.state.CancelRequested);
}

TEST_F(Waiting, NothingCountsBeforeThePowerIsSwitched) {
    bench.waitDialog.counts = false;
    loop.after(10s, [this] { port.receive("x5"); });
    loop.after(60s, [this] {
        port.receive("5"); // was on its way
        bench.waitDialog.counts = true;
    });
    loop.after(70s, [this] {
        EXPECT_EQ(port.written, "");
        port.receive("5");
    });
    loader.bringUp.cmdStartPrimary_Click();
    EXPECT_TRUE(bench.console().startsWith("Waiting for BootID .. x555 .. found!\nSending 'A' .. "))
        << bench.console().toStdString();
    EXPECT_EQ(loader.operation.outcome(), Outcome::Done);

    const QString before = bench.console();
    bench.waitDialog.counts = false;
    startAnd([](zrk::WaitDialog& dialog) { dialog.CancelButton_Click(); });
    EXPECT_EQ(bench.console().mid(before.size()), "Waiting for BootID .. <0>cancelled!\n" + kAborted);
}

TEST_F(Waiting, APortThatComesBackIsOpenedAgain) {
    const struct {
        std::chrono::seconds gone;
        bool counts;
        const char* console;
        Outcome outcome;
    } losses[] = {{20s, true, "Waiting for BootID .. x5 .. found!\nSending 'A' .. ", Outcome::Done},
                  {20s, false, "Waiting for BootID .. x5<0>cancelled!\n", Outcome::LimitReached},
                  {40s, true, "Waiting for BootID .. x\n--- Cancel download", Outcome::PortNotOpened}};
    bench.waitDialog.reopening = 30s;
    for (const auto& loss : losses) {
        SCOPED_TRACE(loss.console);
        const QString before = bench.console();
        bench.waitDialog.counts = loss.counts;
        loop.after(10s + loss.gone, [this] { port.failsToOpen = false; });
        loop.after(60s, [this] { port.receive("5"); });
        loop.after(70s, [this, counts = loss.counts] {
            if (!counts)
                bench.waitDialog.open->giveUp(Outcome::LimitReached);
        });
        loop.after(10s, [this] {
            port.receive("x");
            port.failsToOpen = true;
            port.hangUp();
        });
        loader.bringUp.cmdStartPrimary_Click();
        EXPECT_TRUE(bench.console().mid(before.size()).startsWith(loss.console))
            << bench.console().toStdString();
        EXPECT_EQ(loader.operation.outcome(), loss.outcome);
        port.failsToOpen = false;
    }
}

TEST_F(Waiting, DebugSendMutesTheProtocolsAndDoublesTheirInterval) {
    port.steps = {{"", ""}, {"4", "5"}};
    startAnd([](zrk::WaitDialog& dialog) { dialog.cmdOut_Click(); });
    EXPECT_TRUE(loader.state.DebugMode);
    EXPECT_EQ(port.written, "4");
    EXPECT_EQ(bench.console(), bringUpTexts().mid(0, 2).join(QString()) + "<0>" + kMismatch + kAborted);
    EXPECT_EQ(
        bench.boxes.shown,
        QStringList("[TimeOut] ! No valid serial response received within  10 second\nAborting operation"));
    EXPECT_EQ(loop.elapsed() / 1s, 70);
    bench.expectAtRest();

    // Every step still runs and waits for its answer; only nothing is sent.
    const QString before = bench.console();
    port.steps = {{"", "55RXot"}};
    port.written.clear();
    loader.bringUp.cmdStartPrimary_Click();
    EXPECT_EQ(bench.console().mid(before.size()), bringUpTexts().join(QString()));
    EXPECT_EQ(port.written, "");
    EXPECT_EQ(loader.controls.staStatus.SecondPanel.value(), "bytes sent 7 / 7");
}

} // namespace
