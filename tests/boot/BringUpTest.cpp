#include "support/Exchanges.h"

#include <QFile>

namespace {

using namespace zrktest;
using zrk::Outcome;

/// A bring-up of both images, ready to be started.
struct BringUpRig : ScriptedRig {
    BringUpRig() {
        fillBringUp(bench);
        port.steps = bringUpSteps();
        bench.setButtons("1111");
    }
    void start() { loader.bringUp.cmdStartPrimary_Click(); }
    [[nodiscard]] Outcome outcome() const { return loader.operation.outcome(); }
};

QString textsUpTo(std::size_t step) {
    return bringUpTexts().mid(0, static_cast<qsizetype>(step) + 1).join(QString());
}

TEST(BringUp, GoodRunToTheLetterAndToTheByte) {
    for (const bool oneByOne : {false, true}) {
        BringUpRig r;
        r.port.oneByOne = oneByOne;
        r.port.steps[0].answer = "x\r9" + r.port.steps[0].answer; // noise comes first
        r.port.steps[3].action = [&] { EXPECT_EQ(r.bench.buttons(), "0001"); };
        r.start();
        EXPECT_EQ(r.bench.console(), bringUpTexts().join(QString()).replace(
                                         ".. 5 .. found!\nSending 'A'", ".. x<13>95 .. found!\nSending 'A'"));
        EXPECT_EQ(r.port.written,
                  "AU3" + kPrimaryHeader + kPrimaryCode + "p" + kSecondaryHeader + kSecondaryCode);
        r.bench.expectBytesWrittenOneByOne();
        EXPECT_EQ(r.port.callNames(), QStringList("open 1 115200,N,8,1 handshaking 0"));
        EXPECT_EQ(r.bench.buttons(), "1111");
        EXPECT_EQ(r.outcome(), Outcome::Done);
        EXPECT_FALSE(r.loader.state.OperationActive || r.loader.state.TerminalMode);
        EXPECT_EQ(r.loader.controls.lblState.Caption.value(), "Open...");
        r.loop.runFor(30s);
        EXPECT_TRUE(r.port.isOpen());
        EXPECT_TRUE(r.bench.boxes.shown.isEmpty());
    }
}

TEST(BringUp, EachAnswerGoneWrong) {
    for (std::size_t step = 1; step <= 5; ++step) {
        for (const Trouble trouble : kTroubles) {
            SCOPED_TRACE(testing::Message() << "step " << step << " trouble " << static_cast<int>(trouble));
            BringUpRig r;
            disturb(r, r.port.steps[step], trouble);
            r.start();
            QString end = echoOf(trouble);
            if (trouble != Trouble::HangUp)
                end += step < 4    ? kMismatch
                       : step == 4 ? " .. invalid char! Cancelled.\nSending code aborted...!\n"
                                   : "invalid char! Cancelled.\n\n";
            EXPECT_EQ(r.bench.console(), textsUpTo(step) + end + kAborted);
            EXPECT_EQ(r.bench.boxes.shown, boxesOf(trouble));
            EXPECT_EQ(r.outcome(), outcomeOf(trouble));
            EXPECT_EQ(r.bench.buttons(), "1001");
            QByteArray sent;
            for (std::size_t i = 1; i <= step; ++i)
                sent += r.port.steps[i].when;
            EXPECT_EQ(r.port.written, sent) << "sent on after the trouble";
            r.bench.expectAtRest();

            r.port.steps = bringUpSteps(); // and the next run succeeds
            r.start();
            EXPECT_EQ(r.outcome(), Outcome::Done);
        }
    }
}

TEST(BringUp, WrongCaseIsAWrongAnswerAndERefuses) {
    for (const auto& [step, answer, end, words] :
         std::initializer_list<std::tuple<std::size_t, const char*, QString, QString>>{
             {1, "R", "R" + kMismatch, "Expected '5' (0x35), got 'R' (0x52)."},
             {2, "r", "r" + kMismatch, "Expected 'R' (0x52), got 'r' (0x72)."},
             {3, "\x7F", "\x7F" + kMismatch, "Expected 'X' (0x58), got 0x7F."},
             {4, "O", "O .. invalid char! Cancelled.\nSending code aborted...!\n",
              "Expected 'o' (0x6F), got 'O' (0x4F)."},
             {4, "E", "E .. Error signalled back from primary boot.\nSending code aborted...!\n", ""},
             {5, "T", "Tinvalid char! Cancelled.\n\n", "Expected 't' (0x74), got 'T' (0x54)."}}) {
        BringUpRig r;
        r.port.steps[step].answer = answer;
        r.start();
        EXPECT_EQ(r.bench.console(), textsUpTo(step) + end + kAborted);
        EXPECT_EQ(r.outcome(), *answer == 'E' ? Outcome::Refused : Outcome::WrongAnswer);
        EXPECT_EQ(r.loader.state.WrongAnswer, words);
        r.bench.expectAtRest();
    }
}

TEST(BringUp, WhichWaitsShareOneReplyInterval) {
    struct Row {
        std::array<int, 6> delays; // ms, by step
        std::size_t failsAt;       // 0: not at all
    };
    for (const Row& row : std::initializer_list<Row>{
             {{1'800'000, 2400, 2400, 4900, 4900, 4900}, 0},
             {{20, 2600, 2600, 20, 20, 20}, 2},
             {{20, 5100, 20, 20, 20, 20}, 1},
             {{20, 20, 20, 5100, 20, 20}, 3},
             {{20, 20, 20, 20, 5100, 20}, 4},
             {{20, 20, 20, 20, 20, 5100}, 5},
         }) {
        BringUpRig r;
        for (std::size_t i = 0; i < row.delays.size(); ++i)
            r.port.steps[i].delay = std::chrono::milliseconds(row.delays[i]);
        r.start();
        EXPECT_EQ(r.outcome(), row.failsAt == 0 ? Outcome::Done : Outcome::TimedOut);
        EXPECT_TRUE(r.bench.console().startsWith(textsUpTo(row.failsAt == 0 ? 5 : row.failsAt)));
        EXPECT_EQ(r.bench.boxes.shown.size(), row.failsAt == 0 ? 0 : 1);
    }
}

TEST(BringUp, HangUpAtEveryByte) {
    const qsizetype all = 3 + 8 + 5 + 1 + 8 + 7;
    for (qsizetype bytes = 1; bytes <= all; ++bytes) {
        SCOPED_TRACE(bytes);
        BringUpRig r;
        r.port.hangUpAfterBytes = bytes;
        r.start();
        EXPECT_EQ(r.outcome(), Outcome::PortLost);
        EXPECT_EQ(r.bench.boxes.shown, boxesOf(Trouble::HangUp));
        EXPECT_TRUE(r.bench.console().endsWith(kAborted));
        EXPECT_EQ(r.bench.buttons(), "1001");
        r.bench.expectAtRest();
    }
}

TEST(BringUp, WhichBoxesAreTicked) {
    const QString on = "\n--- Enabling terminal mode ---\n";
    const QString primary = textsUpTo(3).section("\n\n", 0, 0) + "\n";
    {
        BringUpRig r; // the primary boot alone: its output is then seen
        r.loader.controls.chkExeURK[1].Value = 0;
        r.port.steps[3].answer = "hello";
        r.start();
        EXPECT_EQ(r.bench.console(), primary + on);
        EXPECT_EQ(r.bench.buttons(), "1001");
        EXPECT_EQ(r.outcome(), Outcome::Done);
        r.loop.runFor(1s);
        EXPECT_EQ(r.bench.console(), primary + on + "hello");
        EXPECT_TRUE(r.port.isOpen() && r.loader.state.TerminalMode && !r.loader.state.OperationActive);
    }
    {
        BringUpRig r; // the adapter is pulled while the terminal is switched on
        r.loader.controls.chkExeURK[1].Value = 0;
        r.port.failsHandshaking = true;
        r.start();
        EXPECT_EQ(r.bench.boxes.shown.size(), 1);
        EXPECT_EQ(r.outcome(), Outcome::PortLost);
        r.bench.expectAtRest();
    }
    for (const char* answer : {"X", ""}) {
        BringUpRig r; // the secondary alone: no handshake, one interval for "X"
        r.loader.controls.chkExeURK[0].Value = 0;
        r.port.steps = {{"", answer}, {"p" + kSecondaryHeader, "o"}, {kSecondaryCode, "t"}};
        r.start();
        EXPECT_EQ(r.bench.waitDialog.timesShown, 0);
        EXPECT_TRUE(r.bench.console().startsWith("\n--- Loading Secondary executable ---\nWait for 'X' .. "));
        EXPECT_EQ(r.outcome(), *answer ? Outcome::Done : Outcome::TimedOut);
    }
    for (const char* answer : {"X", "?", ""}) {
        BringUpRig r; // the primary boot alone, before a download: its "X" is taken within one interval
        r.loader.controls.chkExeURK[1].Value = 0;
        r.port.steps[3].answer = answer;
        r.port.steps[3].delay = 4900ms;
        r.loader.bringUp.loadForCommand();
        EXPECT_EQ(r.outcome(), *answer == 'X' ? Outcome::Done
                               : *answer      ? Outcome::WrongAnswer
                                              : Outcome::TimedOut);
        const QString end = *answer == 'X' ? "X .. found!\n" : (*answer ? "?" : "<0>") + kMismatch + kAborted;
        EXPECT_EQ(r.bench.console(), primary + "Wait for 'X' .. " + end);
        EXPECT_EQ(r.port.isOpen(), *answer == 'X');
        EXPECT_FALSE(r.loader.state.TerminalMode);
        r.loop.runFor(30s);
        EXPECT_EQ(r.bench.boxes.shown.size(), *answer ? 0 : 1) << "the timer goes on";
    }
    {
        BringUpRig r; // neither, from an open port in terminal mode: it is opened again, nothing is sent
        r.loader.controls.chkExeURK[0].Value = 0;
        r.loader.controls.chkExeURK[1].Value = 0;
        r.loader.terminal.cmdTerminal_Click();
        r.port.calls.clear();
        r.start();
        EXPECT_EQ(r.bench.console(), on + "\n--- Switching to programmed mode ---\n" + on);
        EXPECT_EQ(r.port.callNames(),
                  QStringList({"close", "open 1 115200,N,8,1 handshaking 0", "handshaking 1"}));
        EXPECT_EQ(r.port.written, "");
        EXPECT_EQ(r.bench.buttons(), "1001");
    }
}

TEST(BringUp, RefusedAddressesChangeNothing) {
    BringUpRig r;
    r.loader.terminal.cmdTerminal_Click();
    r.loader.controls.txtStartAddress[1].Text = "0x90000000";
    const QString before = r.bench.console();
    for (const auto& click : std::initializer_list<std::function<void()>>{
             [&] { r.loader.bringUp.cmdStartPrimary_Click(); }, [&] { r.loader.commands.cmdURK_Click(); }}) {
        r.bench.boxes.user = [&](int) {
            EXPECT_FALSE(r.loader.state.OperationActive);
            click(); // reached again under its own message box
            return zrk::Answer::Ok;
        };
        click();
        EXPECT_EQ(r.outcome(), Outcome::Rejected);
    }
    EXPECT_EQ(r.bench.boxes.shown.size(), 2);
    EXPECT_EQ(r.bench.console(), before);
    EXPECT_EQ(r.bench.buttons(), "1111");
    EXPECT_TRUE(r.port.isOpen() && r.loader.state.TerminalMode);
}

TEST(BringUp, RunTimeFailures) {
    const auto error = [](const QString& what) {
        return "[Error] ! Error communicating with COM3\nor other download problem\nError: " + what;
    };
    {
        BringUpRig r;
        r.loader.controls.cmbComPort.ListIndex = 2;
        r.port.failsToOpen = true;
        r.start();
        EXPECT_EQ(r.bench.boxes.shown, QStringList(error("The device is not there.")));
        EXPECT_EQ(r.bench.console(), kAborted);
        EXPECT_EQ(r.outcome(), Outcome::PortNotOpened);
        EXPECT_EQ(r.bench.buttons(), "1001");
        r.bench.expectAtRest();
        // In DebugMode no handler is installed: the console shows the failure, and nothing hangs.
        r.loader.state.DebugMode = true;
        r.start();
        EXPECT_EQ(r.bench.boxes.shown.size(), 1);
        EXPECT_TRUE(r.bench.console().contains("The device is not there."));
        r.bench.expectAtRest();
    }
    {
        BringUpRig r; // a DebugMode that begins during the operation leaves its handler in place
        r.port.steps = {{"", "", [&] {
                             r.loader.state.DebugMode = true;
                             r.port.hangUp();
                         }}};
        r.start();
        EXPECT_EQ(r.bench.boxes.shown, boxesOf(Trouble::HangUp));
    }
    struct Row {
        const char* size; // of the primary boot's slot; null: its file is gone
        const char* address;
        const char* lastText;
        qsizetype bytesSent;
    };
    for (const Row& row : std::initializer_list<Row>{{nullptr, "0x1234", "Sending code .. ", 11},
                                                     {"", "0x1234", "Sending size .. ", 7},
                                                     {"0x5", "0X5", "Sending startaddress .. ", 3},
                                                     {"0x5", "0x123456789", "Sending startaddress .. ", 3}}) {
        BringUpRig r;
        r.loader.controls.cmbComPort.ListIndex = 2;
        r.loader.controls.txtStartAddress[0].Text = row.address;
        if (row.size)
            r.loader.controls.lblCodeSize[0].Caption = row.size;
        else
            QFile::remove(r.loader.controls.txtFilNam[0].Tag.value());
        r.start();
        ASSERT_EQ(r.bench.boxes.shown.size(), 1);
        EXPECT_TRUE(r.bench.boxes.shown[0].startsWith(error("")));
        EXPECT_TRUE(r.bench.console().endsWith(row.lastText + kAborted));
        EXPECT_EQ(r.port.written.size(), row.bytesSent);
        EXPECT_EQ(r.outcome(), row.size ? Outcome::Internal : Outcome::File);
        EXPECT_FALSE(r.loader.transport.isTransferring());
        r.bench.expectAtRest();
    }
}

TEST(BringUp, HandlersReachedFromItsWaitsLeaveItAlone) {
    for (std::size_t step = 0; step <= 5; ++step) {
        SCOPED_TRACE(step);
        BringUpRig r;
        r.port.steps[step].action = [&r] {
            r.loader.bringUp.cmdStartPrimary_Click();
            r.loader.bringUp.cmdStartSecondary_Click();
            r.loader.commands.cmdURK_Click();
            r.loader.flash.cmdPrgFlash_Click();
            r.loader.script.mnuExecScript_Click();
            r.loader.terminal.cmdTerminal_Click();
            r.loader.fileChoice.cmdBrowse_Click(0);
            EXPECT_EQ(r.loader.keys.txtStatus_KeyPress('A'), 0);
            r.loader.keys.txtStatus_KeyDown(66, true, false, false);
        };
        r.start();
        EXPECT_EQ(r.outcome(), Outcome::Done);
        EXPECT_EQ(r.bench.console(), bringUpTexts().join(QString()));
        EXPECT_EQ(r.port.callNames(), QStringList({"open 1 115200,N,8,1 handshaking 0", "dtr 0", "dtr 1"}));
        EXPECT_TRUE(r.bench.fileDialog.requests.isEmpty());
    }
}

TEST(BringUp, ALateLoaderTakesSeveralAnnouncementsForOne) {
    for (const auto& [answer, outcome] : {std::pair{"555", Outcome::Done}, {"5?5", Outcome::WrongAnswer}}) {
        BringUpRig r;
        r.port.steps[0].answer = answer;
        r.start();
        EXPECT_EQ(r.outcome(), outcome);
        EXPECT_EQ(r.bench.console().startsWith(bringUpTexts().mid(0, 4).join(QString())),
                  outcome == Outcome::Done);
    }
}

TEST(BringUp, TheDisplayOfAFailedTransferDoesNotReachTheNextOperation) {
    BringUpRig r;
    r.port.hangUpAfterBytes = 3 + 8 + 2;
    r.start();
    EXPECT_EQ(r.outcome(), Outcome::PortLost);
    r.port.hangUpAfterBytes = 0;
    r.bench.waitDialog.whenShown = [&](zrk::WaitDialog& dialog) {
        EXPECT_FALSE(r.loader.transport.isTransferring());
        dialog.CancelButton_Click();
    };
    r.start();
    EXPECT_EQ(r.bench.waitDialog.timesShown, 2);
}

TEST(BringUp, AnOldTimeOutDoesNotReachTheNextOutcome) {
    BringUpRig r;
    r.port.steps[1].answer.clear();
    r.start();
    EXPECT_EQ(r.outcome(), Outcome::TimedOut);
    r.bench.waitDialog.whenShown = [](zrk::WaitDialog& dialog) { dialog.CancelButton_Click(); };
    r.start();
    EXPECT_EQ(r.outcome(), Outcome::Cancelled);
}

} // namespace
