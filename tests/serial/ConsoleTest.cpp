#include "platform/RuntimeFailure.h"
#include "support/Rig.h"

namespace {

using namespace zrktest;

class Console : public ScriptedTest {};

TEST_F(Console, EachTextIsTranslatedAloneAndAppendedBeforeTheYield) {
    QStringList seen;
    const auto look = [&] { seen += bench.console(); };
    for (const char* text : {"a/nb/n", "/", "n", "", "/N//n"}) {
        loop.post(look);
        loader.console.PrintStatus(text);
    }
    loop.post(look);
    loader.console.PrintAnswer("/n");
    EXPECT_EQ(seen,
              QStringList({"a\nb\n", "a\nb\n/", "a\nb\n/n", "a\nb\n/n", "a\nb\n/n/N/\n", "a\nb\n/n/N/\n/n"}));
}

TEST_F(Console, TypedKeysGoOutOnlyInTerminalModeWithAnOpenPort) {
    const auto type = [this](std::initializer_list<int> keys) {
        for (const int key : keys)
            EXPECT_EQ(loader.keys.txtStatus_KeyPress(key), 0);
    };
    type({'A'});
    loader.port.OpenComPort();
    type({'B'});
    loader.port.CloseComPort();
    loader.terminal.cmdTerminal_Click();
    loader.state.DebugMode = true; // does not stop typing
    const QString text = bench.console();
    type({'A', 13, 8, 9, 27, 0, 255, 256, 0x20AC});
    EXPECT_EQ(port.written, hex("41 0D 08 09 1B 00 FF"));
    EXPECT_EQ(bench.console(), text);
    loader.port.CloseComPort();
    type({'C'});
    EXPECT_EQ(port.written.size(), 7);
}

TEST_F(Console, APasteGoesOutInPiecesThatTheQueueTakes) {
    loader.terminal.cmdTerminal_Click();
    port.paced = true;
    const QByteArray lines = QByteArray("0123456789\r").repeated(900);
    bench.boxes.user = [](int) { return zrk::Answer::Yes; };
    const Duration begin = loop.elapsed();
    loader.keys.paste(QString::fromLatin1(lines).replace('\r', "\r\n") + QChar(0x20AC) + "\n!");
    EXPECT_EQ(loop.elapsed(), begin) << "the paste blocked";
    EXPECT_EQ(port.written.size(), 512);
    loader.keys.txtStatus_KeyPress('t'); // typed after it
    loop.runFor(2s);
    EXPECT_EQ(port.written, lines + "\r!t");
    EXPECT_EQ(port.writtenAt.size(), port.deliveredAt.size());

    loader.keys.paste(QString(9000, 'x'));
    loader.terminal.cmdTerminal_Click(); // leaves terminal mode: the rest is dropped
    loop.runFor(2s);
    EXPECT_LT(port.written.size(), lines.size() + 3 + 5000);
}

TEST_F(Console, ALongPasteAsksShowsItsProgressAndCanBeStopped) {
    loader.terminal.cmdTerminal_Click();
    port.paced = true;
    const QString& remark = loader.state.Remark.text;
    const auto lines = [](int count) { return QString("12\n").repeated(count); };
    loader.keys.paste(lines(20));
    EXPECT_TRUE(bench.boxes.shown.isEmpty());
    loop.runFor(1s);
    port.written.clear();
    loader.keys.paste(lines(20) + "x");
    EXPECT_EQ(bench.boxes.shown.size(), 1);
    EXPECT_TRUE(bench.boxes.shown.value(0).startsWith("[Paste] ? yes/no Paste 21 lines (61 bytes)?"));
    EXPECT_EQ(port.written, "") << "the answer was no";

    bench.boxes.user = [](int) { return zrk::Answer::Yes; };
    loader.keys.setPastePause(100ms);
    loader.keys.paste(lines(300));
    loader.keys.txtStatus_KeyPress('t');
    loop.runFor(250ms);
    EXPECT_EQ(port.written, "12\r12\r12\r");
    EXPECT_EQ(remark, "Pasting: line 3 of 300. Escape stops.");
    EXPECT_TRUE(loader.keys.stopPaste());
    loop.runFor(1s);
    EXPECT_EQ(port.written, "12\r12\r12\rt");
    EXPECT_EQ(remark, "The paste was stopped after line 3 of 300.");
    EXPECT_FALSE(loader.keys.stopPaste());

    port.written.clear();
    loader.keys.pasteBytes("\x1B[200~1\r2\r3\x1B[201~");
    loop.runFor(50ms);
    EXPECT_TRUE(loader.keys.stopPaste());
    loop.runFor(1s);
    EXPECT_EQ(port.written, "\x1B[200~1\r\x1B[201~") << "a program that asked for marks gets both";
    loader.keys.paste(lines(3));
    loop.runFor(1s);
    EXPECT_EQ(remark, "Pasted 3 lines.");
    loader.keys.paste(lines(300));
    loader.port.CloseComPort();
    loop.runFor(1s);
    EXPECT_EQ(remark, "") << "nothing is pasted any more";
    EXPECT_FALSE(loader.keys.stopPaste());
}

TEST_F(Console, ADebugSendDoesNotWaitForALineThatTheBoardHasStopped) {
    loader.terminal.cmdTerminal_Click();
    port.paced = true;
    loader.port.Output(QString(512 + 4096, 'x')); // all that the queue and the driver hold
    const Duration begin = loop.elapsed();
    loader.keys.cmdOutput_Click();
    EXPECT_EQ(loop.elapsed(), begin) << "it blocked";
    port.stalled = true;
    loader.keys.cmdOutput_Click();
    EXPECT_TRUE(bench.boxes.shown.isEmpty());
    const auto panel = [this] { return loader.controls.staStatus.FirstPanel.value(); };
    loop.runFor(750ms);
    EXPECT_TRUE(panel().endsWith("open, terminal")) << panel().toStdString();
    loop.runFor(750ms);
    EXPECT_TRUE(panel().startsWith("The board has stopped the line (XOFF): ")) << panel().toStdString();
    port.stalled = false;
    loader.port.Output('y'); // on a scripted line only a write notices
    loop.runFor(2s);
    EXPECT_TRUE(panel().endsWith("open, terminal")) << panel().toStdString();
    EXPECT_TRUE(port.written.endsWith("xy4R4R"));
}

TEST_F(Console, AltBPulsesDtrForATenthOfASecond) {
    zrk::ConsoleKeys& keys = loader.keys;
    keys.txtStatus_KeyDown(66, true, false, false); // closed
    loader.port.OpenComPort();
    port.calls.clear();
    keys.txtStatus_KeyDown(66, true, true, false);
    keys.txtStatus_KeyDown(66, true, false, true);
    keys.txtStatus_KeyDown(66, false, false, false);
    keys.txtStatus_KeyDown(65, true, false, false);
    EXPECT_TRUE(port.calls.empty());
    bool alive = false;
    loop.after(50ms, [&] {
        alive = true;
        keys.txtStatus_KeyDown(66, true, false, false); // nested: one pulse is enough
    });
    keys.txtStatus_KeyDown(66, true, false, false);
    EXPECT_TRUE(alive);
    ASSERT_EQ(port.callNames(), QStringList({"dtr 0", "dtr 1"}));
    EXPECT_GE(port.calls[1].when - port.calls[0].when, 100ms);
    // A port that is closed during the pulse ends it quietly.
    loop.after(50ms, [&] { loader.port.CloseComPort(); });
    keys.txtStatus_KeyDown(66, true, false, false);
    EXPECT_EQ(port.callNames(), QStringList({"dtr 0", "dtr 1", "dtr 0", "close"}));
}

TEST_F(Console, DebugSendWritesItsTextAndReportsAFailure) {
    loader.port.OpenComPort();
    loader.state.DebugMode = true;
    loader.keys.cmdOutput_Click();
    loader.controls.txtOut.Text = QStringLiteral("a\u20ACb");
    loader.keys.cmdOutput_Click();
    EXPECT_EQ(port.written, "4R");
    loader.port.CloseComPort();
    loader.controls.txtOut.Text = "x";
    loader.keys.cmdOutput_Click();
    ASSERT_EQ(bench.boxes.shown.size(), 2);
    EXPECT_EQ(bench.boxes.shown[1], "[Error] ! Error communicating with COM1\nor other I/O problem\nError: "
                                    "The serial port is not open. Open it and start again.");
}

} // namespace
