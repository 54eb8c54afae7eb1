#include "platform/RuntimeFailure.h"
#include "support/Rig.h"

namespace {

using namespace zrktest;

class PortControlTest : public ScriptedTest {};

TEST_F(PortControlTest, CancelWhenIdle) {
    zrk::Controls& c = loader.controls;
    // Closed, no primary boot: the console line and the buttons all the same.
    bench.setButtons("0111");
    loader.portControl.cmdCancel_Click();
    EXPECT_EQ(bench.console(), "\n--- Closing port ---\n");
    EXPECT_EQ(bench.buttons(), "0001");

    bench.fill(0, "p", "0x0000");
    bench.setButtons("0111");
    c.cmbComPort.ListIndex = 7;
    loader.terminal.cmdTerminal_Click();
    c.cmbComPort.ListIndex = 2;
    loader.port.OpenComPort(); // open already: the old number stays
    EXPECT_EQ(port.callNames().last(), "open 8 115200,N,8,1 handshaking 1");
    EXPECT_EQ(loader.port.CommPort(), 8);
    QStringList buttonsAtText; // the bench checks that the port is closed by then
    c.txtStatus.onEdit([&](qsizetype, const QString&, zrk::TextOrigin) { buttonsAtText += bench.buttons(); });
    loader.portControl.cmdCancel_Click();
    EXPECT_EQ(bench.console(), "\n--- Closing port ---\n\n--- Enabling terminal mode ---\n"
                               "\n--- Closing port ---\n\n--- Switching to programmed mode ---\n");
    EXPECT_EQ(buttonsAtText, QStringList({"0111", "1001"}));
    EXPECT_EQ(bench.buttons(), "1001");
    EXPECT_FALSE(loader.state.CancelRequested);
    bench.expectAtRest();
}

TEST_F(PortControlTest, CancelRunsItsStepsWhateverWasNestedInIt) {
    bench.fill(0, "p", "0x0000");
    bench.setButtons("0111");
    loop.post([this] { loader.terminal.cmdTerminal_Click(); }); // runs when the text yields
    loader.portControl.cmdCancel_Click();
    EXPECT_EQ(bench.buttons(), "1001");
    EXPECT_FALSE(loader.state.TerminalMode);
    EXPECT_TRUE(port.isOpen());
}

TEST_F(PortControlTest, AnIdlePortThatIsLostIsClosedWithinASecondAndReportedOnce) {
    bench.fill(0, "p", "0x0000");
    bench.setButtons("0111");
    loader.terminal.cmdTerminal_Click();
    loop.runFor(350ms);
    port.receive("last words");
    port.hangUp();
    loop.runFor(1s);
    EXPECT_EQ(bench.console(), "\n--- Enabling terminal mode ---\nlast words"
                               "\n--- The device is gone. Port closed. ---\n");
    EXPECT_EQ(bench.buttons(), "1001");
    EXPECT_TRUE(bench.boxes.shown.isEmpty());
    loader.terminal.cmdTerminal_Click();

    loader.port.OpenComPort();
    EXPECT_EQ(loader.portControl.Form_Unload(), 0);
    EXPECT_TRUE(loader.state.CancelRequested);
    bench.expectAtRest();

    loader.port.OpenComPort();
    loader.state.OperationActive = true; // an operation finds out by itself
    port.hangUp();
    loop.runFor(1s);
    EXPECT_TRUE(port.isOpen());
}

TEST_F(PortControlTest, ATerminalGoesOnWhenItsAdapterIsBackAndAnythingElseEndsTheWaitForIt) {
    zrk::Controls& c = loader.controls;
    const auto pull = [this] {
        port.isPresent = false;
        port.failsToOpen = true;
        port.hangUp();
        loop.runFor(2s);
    };
    const auto plugIn = [this] {
        port.isPresent = true;
        loop.runFor(1s); // and is not the user's yet
        port.failsToOpen = false;
        loop.runFor(1s);
    };
    port.isPresent = true;
    loader.terminal.cmdTerminal_Click();
    loader.state.Remark = {"The start command has been sent."};
    pull();
    EXPECT_FALSE(port.isOpen());
    EXPECT_TRUE(c.staStatus.FirstPanel.value().startsWith("COM1 (/dev/line1) is gone."));
    plugIn();
    EXPECT_EQ(c.staStatus.FirstPanel.value(), "COM1 (/dev/line1): open, terminal");
    EXPECT_EQ(bench.console(),
              "\n--- Enabling terminal mode ---\n"
              "\n--- COM1 (/dev/line1) is gone. Port closed. When it is back, the terminal goes on. ---\n"
              "\n--- COM1 (/dev/line1) is back. Port open. ---\n");
    EXPECT_TRUE(loader.state.TerminalMode);
    EXPECT_EQ(port.callNames().last(), "open 1 115200,N,8,1 handshaking 1");
    port.receive("login: ");
    loop.runFor(300ms);
    EXPECT_TRUE(bench.console().endsWith("login: "));

    pull();
    c.cmbComPort.ListIndex = 4;
    plugIn();
    EXPECT_FALSE(port.isOpen()) << "another port is selected";
    c.cmbComPort.ListIndex = 0;
    loop.runFor(1s);
    EXPECT_TRUE(port.isOpen());

    pull();
    loader.portControl.cmdCancel_Click();
    plugIn();
    EXPECT_FALSE(port.isOpen()) << "cancelled";
    EXPECT_TRUE(bench.boxes.shown.isEmpty());
    bench.expectAtRest();
}

/// A port whose first opening yields, as that of a port on the network does.
struct SlowPort final : LinePort {
    using LinePort::LinePort;
    std::function<void()> meanwhile;
    bool isGivenUp = false;

    [[nodiscard]] std::unique_ptr<zrk::SerialPort> open(int number, const zrk::LineSettings& settings,
                                                        zrk::Handshaking handshaking) override {
        const bool isFirst = meanwhile != nullptr;
        if (isFirst)
            std::exchange(meanwhile, nullptr)();
        if (isFirst && isGivenUp)
            throw zrk::RuntimeFailure(zrk::FailureKind::Cancelled, QStringLiteral("Given up."));
        return LinePort::open(number, settings, handshaking);
    }
    void giveUp() override { isGivenUp = true; }

  private:
    void delivered(char /*byte*/, TimePoint /*when*/) override {}
};

TEST(PortControl, TheListShowsThePortThatIsOpen) {
    VirtualEventLoop loop;
    SlowPort port(loop);
    Rig bench(loop, port);
    zrk::ComboBox& list = bench.loader.controls.cmbComPort;
    list.ListIndex = 3;
    port.meanwhile = [&] {
        EXPECT_TRUE(list.Enabled);
        list.ListIndex = 5;
    };
    bench.loader.port.OpenComPort();
    EXPECT_EQ(port.callNames().last(), "open 4 115200,N,8,1 handshaking 0");
    EXPECT_EQ(list.ListIndex, 3);
}

TEST(PortControl, AnActionDuringTheOpeningOfTheTerminalsPortTakesItOver) {
    using Act = std::function<void(Rig&)>;
    const Act start = [](Rig& b) { b.loader.bringUp.cmdStartPrimary_Click(); };
    const struct {
        const char* what;
        Act act;
        bool open, terminal;
    } rows[] = {
        {"a bring-up without images", start, true, true},
        {"a bring-up that fails",
         [&](Rig& b) {
             b.waitDialog.whenShown = [](zrk::WaitDialog& dialog) { dialog.CancelButton_Click(); };
             b.fill(0, "p", "0x0000");
             start(b);
         },
         false, false},
        {"the terminal button, off and on",
         [](Rig& b) {
             b.loader.terminal.cmdTerminal_Click();
             b.loader.terminal.cmdTerminal_Click();
         },
         true, true},
        {"Cancel", [](Rig& b) { b.loader.portControl.cmdCancel_Click(); }, false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        VirtualEventLoop loop;
        SlowPort port(loop);
        Rig bench(loop, port);
        const auto snapshot = [&] {
            return QStringLiteral("%1 %2 open %3 terminal %4 reason %5: %6")
                .arg(bench.loader.controls.lblState.Caption.value(), bench.buttons())
                .arg(port.isOpen())
                .arg(bench.loader.state.TerminalMode)
                .arg(static_cast<int>(bench.loader.state.StopReason))
                .arg(bench.console());
        };
        QString before;
        port.meanwhile = [&] {
            row.act(bench);
            before = snapshot();
        };
        bench.loader.terminal.cmdTerminal_Click();
        EXPECT_EQ(snapshot(), before) << "changed by the cancelled opening";
        EXPECT_EQ(port.isOpen(), row.open);
        EXPECT_EQ(bench.loader.controls.lblState.Caption.value(), row.open ? "Open..." : "Closed...");
        EXPECT_EQ(bench.loader.state.TerminalMode, row.terminal);
        EXPECT_TRUE(bench.boxes.shown.isEmpty());
    }
}

TEST_F(PortControlTest, ANoticeAboutAPortIsPrintedOnceBeforeItIsOpened) {
    port.noticed = "COM1 is the built-in port.";
    for (int i = 0; i < 2; ++i) {
        loader.port.OpenComPort();
        loader.port.CloseComPort();
    }
    EXPECT_EQ(bench.console(), "\n--- COM1 is the built-in port. ---\n");
}

} // namespace
