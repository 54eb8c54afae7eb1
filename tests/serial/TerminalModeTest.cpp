#include "support/Rig.h"

namespace {

using namespace zrktest;

class Terminal : public ScriptedTest {
  protected:
    static constexpr const char* kOn = "\n--- Enabling terminal mode ---\n";
    static constexpr const char* kOff = "\n--- Switching to programmed mode ---\n";

    static QStringList ioProblem(const char* failure) {
        return {QStringLiteral("[Error] ! Error communicating with COM1\nor other I/O problem\nError: ") +
                failure};
    }
};

TEST_F(Terminal, TheButtonTogglesAndLeavesThePortOpen) {
    zrk::Controls& c = loader.controls;
    int focused = 0;
    c.txtStatus.onFocusRequested([&] { ++focused; });
    loader.terminal.switchTo(false); // already so
    EXPECT_EQ(bench.console(), "");
    EXPECT_EQ(focused, 1);

    loader.terminal.cmdTerminal_Click();
    EXPECT_EQ(bench.console(), kOn);
    EXPECT_EQ(c.cmdTerminal.Caption.value(), "Disable Terminal mode");
    EXPECT_TRUE(c.mnuExecScript.Enabled && loader.state.TerminalMode);
    EXPECT_TRUE(c.lblState.Caption.value() == "Open..." && !c.cmbComPort.Enabled);
    EXPECT_EQ(port.callNames(), QStringList("open 1 115200,N,8,1 handshaking 1"));
    port.receive("one block");
    loop.runFor(199ms);
    EXPECT_EQ(bench.console(), kOn);
    loop.runFor(1ms);
    EXPECT_EQ(bench.console(), QString(kOn) + "one block");

    loader.terminal.cmdTerminal_Click();
    EXPECT_EQ(bench.console(), QString(kOn) + "one block" + kOff);
    EXPECT_EQ(c.cmdTerminal.Caption.value(), "Enable Terminal mode");
    EXPECT_FALSE(c.mnuExecScript.Enabled || loader.state.TerminalMode);
    EXPECT_TRUE(port.isOpen());
    EXPECT_EQ(port.callNames().last(), "handshaking 0");
    EXPECT_EQ(focused, 3);
    port.receive("ab");
    loop.runFor(1s);
    EXPECT_EQ(port.unread(), "ab") << "nothing but an operation reads in programmed mode";
    EXPECT_EQ(loader.port.Input(), "a") << "one byte at a time";
}

TEST_F(Terminal, AClickInsideTheSwitchsOwnTextSwitchesBackWhole) {
    for (const bool on : {false, true}) {
        loop.post([this] { loader.terminal.cmdTerminal_Click(); });
        loader.terminal.cmdTerminal_Click();
        EXPECT_EQ(loader.state.TerminalMode, on);
        EXPECT_EQ(loader.controls.mnuExecScript.Enabled, on);
        EXPECT_EQ(loader.controls.cmdTerminal.Caption.value(),
                  on ? "Disable Terminal mode" : "Enable Terminal mode");
        const QString before = bench.console();
        loader.port.OpenComPort();
        port.receive("ab");
        loop.runFor(1s);
        EXPECT_EQ(bench.console().mid(before.size()), on ? "ab" : "") << "the receive timer";
        EXPECT_EQ(loader.port.Input(), on ? "" : "a") << "the read length";
        (void)loader.port.Input();
        if (!on)
            loader.terminal.cmdTerminal_Click();
    }
}

TEST_F(Terminal, APortThatDoesNotOpenLeavesItOff) {
    port.failsToOpen = true;
    loader.controls.cmbComPort.ListIndex = 4;
    loop.post([this] { loader.state.DebugMode = true; }); // too late for this click
    loader.terminal.cmdTerminal_Click();
    EXPECT_EQ(bench.boxes.shown.size(), 1);
    EXPECT_EQ(loader.state.MessageText,
              "Error communicating with COM5\r\nor other I/O problem\r\nError: The device is not there.");
    bench.expectAtRest();
    const qsizetype before = bench.console().size();
    loader.terminal.cmdTerminal_Click();
    EXPECT_EQ(bench.boxes.shown.size(), 1);
    EXPECT_EQ(bench.console().mid(before), QString(kOn) + "\nThe device is not there." + kOff);
    bench.expectAtRest();
    port.failsToOpen = false;
    loader.terminal.cmdTerminal_Click();
    EXPECT_TRUE(loader.state.TerminalMode && port.isOpen());
}

TEST_F(Terminal, TheFailureHandlerForcesProgrammedModeOnce) {
    loader.port.OpenComPort();
    port.failsHandshaking = true;
    loop.post([this] { loader.state.DebugMode = true; }); // the handler is installed by then
    loader.terminal.cmdTerminal_Click();
    loader.state.DebugMode = false;
    EXPECT_EQ(bench.boxes.shown, ioProblem("The driver refused."));
    EXPECT_EQ(bench.console(), QString(kOn) + "\n--- closing port ---\n" + kOff);
    EXPECT_EQ(loader.controls.cmdTerminal.Caption.value(), "Enable Terminal mode");
    bench.expectAtRest();

    port.failsHandshaking = false; // and on the way back
    loader.terminal.cmdTerminal_Click();
    port.failsHandshaking = true;
    const QString before = bench.console();
    loader.terminal.cmdTerminal_Click();
    EXPECT_EQ(bench.console().mid(before.size()), QString(kOff) + "\n--- closing port ---\n" + kOff);
    bench.expectAtRest();

    loader.state.DebugMode = true;
    loader.port.OpenComPort();
    EXPECT_THROW(loader.terminal.switchTo(true), zrk::RuntimeFailure);
    EXPECT_EQ(bench.boxes.shown.size(), 2);

    // Without the handler the mode is switched all the same.
    loader.terminal.cmdTerminal_Click();
    EXPECT_FALSE(loader.controls.mnuExecScript.Enabled || loader.state.TerminalMode);
    port.receive("ab");
    loop.runFor(1s);
    EXPECT_EQ(loader.port.Input(), "a");
}

TEST_F(Terminal, ShowReceived) {
    const QString raw = QString::fromLatin1("\0\xFF", 2);
    const std::initializer_list<std::tuple<const char*, QString, QString>> table{
        {"", "abc\bd", "abd"},      {"", "one\r\ntwo", "one\r\ntwo"},
        {"", "one\ntwo", "onetwo"}, {"", "one\rtwo", "one\r\ntwo"},
        {"", "\r\r\n", "\r\n\r\n"}, {"xyz", "\b", "xy"},
        {"xyz", "\b\b\b", "xy"},    {"xyz", "a\b\b\bq", "xyq"},
        {"xyz", "\b\ba\b", "xy"},   {"", "\b\bq", "q"},
        {"", "a\n\bb", "ab"},       {"x\r\n", "\b", "x\r"},
        {"x", "a\r\n\b\bb", "xab"}, {"x", "", "x"},
        {"x", "/n", "x/n"},         {"x", raw, "x" + raw}};
    for (const auto& [before, received, after] : table) {
        zrk::ConsoleText& text = loader.controls.txtStatus;
        text.replaceEnd(text.text().size(), before);
        loader.terminal.ShowReceived(received);
        EXPECT_EQ(text.text(), after) << before << " + " << readable(received).toStdString();
    }
}

TEST_F(Terminal, StartingTheSecondary) {
    const QString start = "\n-- Starting Secondary Executable --\n";
    loader.port.OpenComPort();
    loader.bringUp.cmdStartSecondary_Click();
    EXPECT_EQ(bench.console(), start + kOn);
    EXPECT_EQ(port.written, "d");
    EXPECT_EQ(loader.operation.outcome(), zrk::Outcome::Done);
    EXPECT_TRUE(loader.state.TerminalMode && port.isOpen() && !loader.state.OperationActive);

    loader.bringUp.cmdStartSecondary_Click(); // from terminal mode
    EXPECT_EQ(bench.console(), start + kOn + kOff + start + kOn);
    EXPECT_EQ(port.written, "dd");

    loop.post([this] { loader.bringUp.cmdStartSecondary_Click(); }); // reached again from its own text
    loader.bringUp.cmdStartSecondary_Click();
    EXPECT_EQ(port.written, "ddd");

    port.hangUp();
    bench.setButtons("0111");
    loader.bringUp.cmdStartSecondary_Click();
    EXPECT_EQ(bench.boxes.shown, ioProblem("The device is gone."));
    EXPECT_EQ(bench.buttons(), "0001");
    EXPECT_EQ(loader.operation.outcome(), zrk::Outcome::PortLost);
    bench.expectAtRest();

    loader.port.OpenComPort();
    port.failsHandshaking = true; // "d" is out, and then there is no terminal
    loader.bringUp.cmdStartSecondary_Click();
    EXPECT_EQ(loader.operation.outcome(), zrk::Outcome::PortLost);
    port.failsHandshaking = false;
    bench.expectAtRest();
}

} // namespace
