#include "support/Rig.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace {

using namespace zrktest;

/// A loader in terminal mode; each test chooses the script's first line, and so the far end's first step.
class Script : public ScriptedTest {
  protected:
    void SetUp() override {
        loader.terminal.cmdTerminal_Click();
        begin = bench.console();
    }

    void run(const QByteArray& text) {
        bench.fileDialog.choice = bench.file("test.scr", text);
        loader.script.mnuExecScript_Click();
    }

    /// Checks the end of a run.
    void expectEnded(int lines, zrk::Outcome outcome = zrk::Outcome::Done) {
        EXPECT_EQ(loader.operation.outcome(), outcome);
        EXPECT_EQ(loader.controls.staStatus.SecondPanel.value(),
                  QStringLiteral("%1 script lines executed.").arg(lines));
        EXPECT_FALSE(loader.state.OperationActive);
        EXPECT_TRUE(loader.controls.mnuExecScript.Enabled);
        EXPECT_EQ(loader.state.AwaitedText, "");
        EXPECT_TRUE(bench.boxes.shown.isEmpty());
    }

    QString begin;
};

TEST_F(Script, LinesAndWhatTheySend) {
    struct Row {
        QByteArray text;
        QByteArray sent;
        int lines;
    };
    for (const Row& row : std::initializer_list<Row>{
             {"", "", 0},
             {"\r\n", "", 1},
             {"\n\n", "", 2},
             {">a\r>b\r\n>c\n>d", "abcd", 4},
             {">a\r\r>b", "ab", 3},
             {">help/n", "help\r", 1},
             {">reset", "reset", 1},
             {">/n/n/x//n \t", "\r\r/x/\r \t", 1},
             {">>", ">", 1},
             {">", "", 1},
             {"<", "", 1},
             {"# a\r\n >x\r\nx>y\r\n\r\n;", "", 5},
             {QByteArray(">\0\xE4\xFF", 4), QByteArray("\0\xE4\xFF", 3), 1},
             {"\xEF\xBB\xBF>a\n>\xC3\xA4", "a\xC3\xA4", 2},
             {QByteArray("\xFF\xFE>\0a\0\n\0>\0\xE4\0", 12), "a\xE4", 2},
             {QByteArray("\xFE\xFF\0>\0\xE4\0\r\0#\x20\xAC", 12), "\xE4", 2},
         }) {
        SCOPED_TRACE(row.text.toStdString());
        port.written.clear();
        loader.state.DebugMode = true; // does not mute a script
        run(row.text);
        EXPECT_EQ(port.written, row.sent);
        expectEnded(row.lines);
    }
    const zrk::FileRequest& request = bench.fileDialog.requests.last();
    EXPECT_EQ(request.title, "Open script file");
    ASSERT_EQ(request.filters.size(), 2);
    EXPECT_EQ(request.filters[0].name + '|' + request.filters[0].pattern, "Script Files (.scr)|*.scr");
    EXPECT_EQ(request.filters[1].name + '|' + request.filters[1].pattern, "All Files (*.*)|*.*");
    EXPECT_EQ(bench.console(), begin) << "a script prints nothing itself";
}

TEST_F(Script, ADialogue) {
    port.follow({{"help\r", "commands: a b\r\nzrk> "},
                 {"boot\r", "", [this] {
                      EXPECT_EQ(loader.controls.staStatus.SecondPanel.value(), "Executing script line 5");
                      EXPECT_TRUE(loader.state.OperationActive);
                      EXPECT_FALSE(loader.controls.mnuExecScript.Enabled);
                      loop.runFor(10s);
                      EXPECT_EQ(loader.controls.staStatus.FirstPanel.value(),
                                "Script line 5 waits for \"done/n\": 9 s");
                      loader.script.mnuExecScript_Click();
                      port.receive("all done\rzrk> ");
                  }}});
    run(">help/n\n<zrk> \n# ready\n>boot/n\n<done/n\n>end");
    EXPECT_EQ(port.written, "help\rboot\rend");
    expectEnded(6);
    EXPECT_EQ(bench.console(), begin + "commands: a b\nzrk> all done\nzrk> ");
    EXPECT_EQ(bench.fileDialog.requests.size(), 1);
}

TEST_F(Script, AnAnswerDuringALongSendCountsForTheNextWait) {
    port.paced = true;
    loop.after(100ms, [this] { port.receive(QByteArray(1500, '.')); }); // too much to be left unread
    loop.after(300ms, [this] {
        EXPECT_TRUE(bench.console().endsWith("..."));
        port.receive("prompt>");
    });
    run(">" + QByteArray(10'000, 'x') + "\n<prompt>\n");
    EXPECT_EQ(port.written.size(), 10'000);
    expectEnded(2);
}

TEST_F(Script, WhatEndsAWait) {
    struct Row {
        const char* name;
        QByteArray before; // unread at the port when the wait begins
        std::vector<std::pair<Duration, QByteArray>> arrives;
        bool ends;
    };
    for (const Row& row : std::initializer_list<Row>{
             {"one block", "", {{1s, "the prompt> is here"}}, true},
             {"unread when the wait begins", "prompt>", {}, true},
             {"within one poll", "", {{1010ms, "pro"}, {1150ms, "mpt>"}}, true},
             {"split over two polls", "", {{1s, "pro"}, {2s, "mpt>"}}, false},
             {"other case", "", {{1s, "Prompt>"}}, false},
             {"too late, but then again", "", {{1s, "prompt"}, {2s, ">prompt>"}}, true},
         }) {
        SCOPED_TRACE(row.name);
        port.receive("prompt>"); // read and shown before the wait: does not count
        loop.runFor(200ms - (loop.elapsed() % 200ms));
        loop.runFor(200ms);
        port.receive(row.before);
        const Duration start = loop.elapsed();
        for (const auto& [when, bytes] : row.arrives)
            loop.after(when, [this, bytes = bytes] { port.receive(bytes); });
        bool cancelled = false;
        const auto cancel = loop.schedule(loop.now() + 5min, [&] {
            cancelled = true;
            loader.portControl.cmdCancel_Click();
        });
        port.written.clear();
        run("<prompt>\n>after");
        EXPECT_EQ(cancelled, !row.ends);
        EXPECT_EQ(port.written, row.ends ? "after" : "");
        expectEnded(row.ends ? 2 : 1, row.ends ? zrk::Outcome::Done : zrk::Outcome::Cancelled);
        EXPECT_TRUE(port.isOpen() && loader.state.TerminalMode) << "a cancelled script leaves both";
        EXPECT_TRUE(!row.ends || loop.elapsed() - start < 3s);
        loop.cancel(cancel);
    }
}

TEST_F(Script, FailuresEndTheRunWithItsCount) {
    QByteArray lines;
    for (int i = 0; i < 32'767; ++i)
        lines += "#\n";
    run(lines + ">never");
    EXPECT_EQ(port.written, "");
    expectEnded(32'767, zrk::Outcome::Internal);
    run(QByteArray(">never\n").leftJustified(1024 * 1024 + 1, '#'));
    EXPECT_EQ(port.written, "");
    expectEnded(0, zrk::Outcome::File);
    EXPECT_TRUE(loader.state.Remark.text.endsWith("test.scr: it has more than 1 MiB. Choose another file."));
    run(lines.chopped(2) + ">now");
    EXPECT_EQ(port.written, "now");
    expectEnded(32'767);

    const auto told = [this] {
        loop.runFor(250ms);
        return loader.controls.staStatus.FirstPanel.value();
    };
    for (const char kind : {'<', '>'}) { // a character that is not one byte on the line
        run(QByteArray("\xFE\xFF\0#\0\n\0", 7) + kind + QByteArray("\x20\xAC"));
        expectEnded(2, zrk::Outcome::Internal);
        EXPECT_TRUE(
            told().startsWith(QString::fromUtf8("The script ended at line 2: \"\xE2\x82\xAC\" contains")))
            << told().toStdString();
    }

    bench.fileDialog.choice = bench.folder.filePath("gone.scr");
    loader.script.mnuExecScript_Click();
    expectEnded(0, zrk::Outcome::File);
    EXPECT_TRUE(told().startsWith("Cannot open the script")) << told().toStdString();
#ifdef Q_OS_LINUX
    bench.fileDialog.choice = "/proc/self/mem"; // opens, and cannot be read
    loader.script.mnuExecScript_Click();
    expectEnded(0, zrk::Outcome::File);
    EXPECT_TRUE(told().startsWith("Cannot open the script /proc/self/mem")) << told().toStdString();
#endif
    run("#");
    EXPECT_EQ(told(), "The script has ended: 1 line executed.");
#ifndef _WIN32
    bench.fileDialog.choice = bench.folder.filePath("pipe"); // opening it would block until it has a writer
    ASSERT_EQ(mkfifo(qPrintable(bench.fileDialog.choice), 0600), 0);
    loader.script.mnuExecScript_Click();
    EXPECT_TRUE(told().endsWith("pipe: It is not a regular file. Choose another file."))
        << told().toStdString();
#endif

    bench.fileDialog.choice.clear(); // cancelled: nothing changes
    loader.controls.staStatus.SecondPanel = "as it was";
    loader.script.mnuExecScript_Click();
    EXPECT_EQ(loader.controls.staStatus.SecondPanel.value(), "as it was");

    loop.after(1s, [this] {
        port.receive("last words");
        port.hangUp();
    });
    run("#\n<never\n>x");
    expectEnded(2, zrk::Outcome::PortLost);
    EXPECT_TRUE(bench.console().endsWith("last words"));
    loop.runFor(1s); // the idle port is then found lost
    EXPECT_FALSE(port.isOpen());
    run(">x\n>y");
    expectEnded(1, zrk::Outcome::PortLost);
}

TEST_F(Script, AWaitMayHaveALimit) {
    port.follow({{"a", "first"}, {"b", "almo\r"}});
    const auto start = loop.elapsed();
    loader.script.runScript(bench.file("test.scr", ">a\n<first\n>b\n<almost/n\n>c"), 10s);
    EXPECT_EQ((loop.elapsed() - start) / 1s, 10);
    EXPECT_EQ(port.written, "ab");
    expectEnded(4, zrk::Outcome::LimitReached);
    loop.runFor(250ms);
    EXPECT_EQ(loader.controls.staStatus.FirstPanel.value(),
              "The script ended at line 4: \"almost/n\" did not come within 10 s. Received last: "
              "\"firstalmo\\r\\n\"");
}

TEST_F(Script, ALineThatTheBoardStoppedDoesNotOutlastTheLimit) {
    port.paced = true;
    port.stalled = true;
    const auto start = loop.elapsed();
    loop.after(10min, [this] { loader.portControl.cmdCancel_Click(); });
    loader.script.runScript(bench.file("test.scr", "#\n>" + QByteArray(10'000, 'x') + "\n>y"), 10s);
    EXPECT_EQ((loop.elapsed() - start) / 1s, 10);
    expectEnded(2, zrk::Outcome::LimitReached);
    EXPECT_EQ(loader.state.Remark.text,
              QString("The script ended at line 2: Only %1 of 10000 bytes went out within 10 s. "
                      "The board may have stopped the line with XOFF.")
                  .arg(port.written.size()));
}

TEST_F(Script, ClosingTheWindowEndsAWait) {
    loop.after(1s, [this] { EXPECT_EQ(loader.portControl.Form_Unload(), 1); });
    run("<never\n>x");
    expectEnded(1, zrk::Outcome::Cancelled);
    EXPECT_FALSE(port.isOpen());
    EXPECT_EQ(loader.portControl.Form_Unload(), 0);
}

} // namespace
