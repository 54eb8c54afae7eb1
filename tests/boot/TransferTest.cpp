#include "boot/ImageStore.h"
#include "support/Exchanges.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

using namespace zrktest;
using zrk::Answer;
using zrk::Outcome;

const QString kQuestion = "[] ? yes/no If you cancel now, you have to restart all over!\nAre you sure?";

struct TransferRig : ScriptedRig {
    TransferRig() {
        fillBringUp(bench);
        port.steps = bringUpSteps();
    }
    void start() { loader.bringUp.cmdStartPrimary_Click(); }
    [[nodiscard]] Outcome outcome() const { return loader.operation.outcome(); }

    /// Runs the action once the primary boot's first two code bytes are out.
    void duringCode(const VirtualEventLoop::Action& action) {
        const QByteArray begin = kPrimaryHeader + kPrimaryCode.left(2);
        port.steps[3].when = kPrimaryCode.mid(2);
        port.steps.insert(port.steps.begin() + 3, {begin, "", action, 0ms});
    }
};

TEST(Transfer, CancelDuringTheCode) {
    for (const auto& row : {std::pair{Answer::No, true}, {Answer::Yes, true}, {Answer::Yes, false}}) {
        const Answer answer = row.first;
        const bool secondary = row.second;
        TransferRig r;
        r.loader.controls.chkExeURK[1].Value = secondary ? 1 : 0;
        r.duringCode([&] { r.loader.portControl.cmdCancel_Click(); });
        r.bench.boxes.user = [&](int) {
            EXPECT_EQ(r.loader.state.BytesSent, 2);
            return answer;
        };
        r.start();
        EXPECT_EQ(r.bench.boxes.shown, QStringList(kQuestion));
        EXPECT_EQ(r.loader.state.MessageText,
                  "If you cancel now, you have to restart all over!\r\nAre you sure?");
        EXPECT_FALSE(r.loader.transport.isTransferring());
        if (answer == Answer::No) {
            EXPECT_EQ(r.bench.console(), bringUpTexts().join(QString()));
            EXPECT_EQ(r.outcome(), Outcome::Done);
            continue;
        }
        EXPECT_EQ(r.port.written, "AU3" + kPrimaryHeader + kPrimaryCode.left(2));
        EXPECT_EQ(r.loader.controls.staStatus.SecondPanel.value(), "bytes sent 2 / 5");
        EXPECT_DOUBLE_EQ(r.loader.controls.pgbDownload.Value, 40.0);
        EXPECT_EQ(r.outcome(), Outcome::Cancelled);
        EXPECT_FALSE(r.loader.state.Sent[0].value()) << "a part of an image has no sum worth comparing";
        if (secondary) {
            EXPECT_EQ(r.bench.console(),
                      bringUpTexts().mid(0, 4).join(QString()) + "<0>" + kMismatch + kAborted);
            r.bench.expectAtRest();
        } else {
            EXPECT_TRUE(
                r.bench.console().endsWith("Sending code .. done!\n\n--- Enabling terminal mode ---\n"));
            EXPECT_TRUE(r.port.isOpen() && r.loader.state.TerminalMode && !r.loader.state.OperationActive);
        }
    }
}

/// The noise of a power-on is not reported; later damage is, however the operation ends.
TEST(Transfer, DamageOnTheLineIsReportedOnceImagesAreSent) {
    const struct {
        bool cancelled = false;
        zrk::LineErrors atPowerOn, meanwhile;
        const char* told = "";
    } rows[] = {
        {false, {9, 1, 2}, {9, 1, 2}, ""},
        {false,
         {9, 0, 0},
         {10, 0, 0},
         "The adapter counted 1 framing error on receive: check ground and cable."},
        {true,
         {0xFFFFFFFF, 0, 0},
         {2, 4, 0},
         "The adapter counted 3 framing errors and 4 parity errors on receive: check ground and cable."},
        {true,
         {},
         {0, 0, 7},
         "The adapter counted 7 overrun errors on receive: the computer was too busy, or the adapter is "
         "short "
         "of memory."},
    };
    for (const auto& row : rows) {
        TransferRig r;
        r.port.lineErrors = zrk::LineErrors{5, 5, 5};
        r.port.steps[0].action = [&] { r.port.lineErrors = row.atPowerOn; };
        r.duringCode([&] {
            r.port.lineErrors = row.meanwhile;
            if (row.cancelled)
                r.loader.portControl.cmdCancel_Click();
        });
        r.bench.boxes.user = [](int) { return Answer::Yes; };
        r.start();
        EXPECT_EQ(r.port.isOpen(), !row.cancelled);
        EXPECT_EQ(r.loader.state.LineErrorsText, row.told);
        r.loader.activity.refresh();
        EXPECT_EQ(r.loader.controls.staStatus.FirstPanel.value(),
                  QString(row.cancelled ? "Cancelled at 2 of 5 bytes. %1"
                                        : "Loaded: 12 bytes in 0 s, confirmed. %1")
                      .arg(row.told)
                      .trimmed());
        r.loader.terminal.switchTo(false);
        r.loader.listener.openPort({});
        EXPECT_EQ(r.loader.state.LineErrorsText, "") << "of the operation before";
    }
}

TEST(Transfer, ClosingTheWindowDuringTheCode) {
    for (const Answer answer : {Answer::Yes, Answer::No}) {
        TransferRig r;
        r.duringCode([&] {
            if (r.loader.transfer.mayBeEnded()) {
                EXPECT_EQ(r.loader.portControl.Form_Unload(), 1);
            }
        });
        r.bench.boxes.user = [&](int) {
            EXPECT_TRUE(r.port.isOpen()) << "it can still go on";
            EXPECT_FALSE(r.loader.transfer.mayBeEnded()) << "one question at a time";
            return answer;
        };
        EXPECT_TRUE(r.loader.transfer.mayBeEnded()) << "nothing is being sent";
        r.start();
        EXPECT_EQ(r.bench.boxes.shown, QStringList{kQuestion});
        if (answer == Answer::No) {
            EXPECT_TRUE(r.bench.console().contains("Sending code .. done!\n"));
            continue;
        }
        EXPECT_EQ(r.port.written.size(), 3 + 8 + 2);
        EXPECT_EQ(r.bench.console(), bringUpTexts().mid(0, 4).join(QString()) + "<0>" + kMismatch + kAborted);
        r.bench.expectAtRest();
    }
}

TEST(Transfer, ClosingTheWindowAfterAFailedTransferAsksNothing) {
    TransferRig r;
    r.port.hangUpAfterBytes = 3 + 8 + 2;
    r.start();
    EXPECT_EQ(r.outcome(), Outcome::PortLost);
    EXPECT_TRUE(r.loader.transport.isTransferring()) << "until its display checks again";
    EXPECT_TRUE(r.loader.transfer.mayBeEnded());
    EXPECT_EQ(r.bench.boxes.shown.size(), 1);
}

TEST(Transfer, SizesThatDoNotMatchTheFile) {
    struct Row {
        QByteArray content;
        const char* size;
        QByteArray header;
        QByteArray code;
        const char* panel;
        const char* sum;
        const char* remark;
    };
    for (const Row& row : std::initializer_list<Row>{
             {"abc", "0x5", hex("34 12 00 00 05 00 00 00"), "abc", "bytes sent 5 / 5", "3 352441C2",
              "Primary Boot (IRAM): the file now has 3 bytes, but 5 were announced; the board waits for the "
              "rest, or took later bytes for it. Cycle its power, choose the file again and repeat."},
             {"abc", "2", hex("34 12 00 00 02 00 00 00"), "ab", "bytes sent 2 / 2", "2 9E83486D",
              "Primary Boot (IRAM): the file now has 3 bytes, but 2 were announced; the board holds only the "
              "first 2. Choose the file again and repeat."},
             {"", "0x0", hex("34 12 00 00 00 00 00 00"), "", "bytes sent 0 / 0", "0 00000000",
              "Loaded: 7 bytes in 0 s, confirmed."}}) {
        TransferRig r;
        r.bench.fill(0, row.content, "0x1234");
        r.loader.controls.lblCodeSize[0].Caption = row.size;
        r.port.steps[3].when = row.header + row.code;
        r.port.steps[3].action = [&] {
            EXPECT_EQ(r.loader.controls.staStatus.SecondPanel.value(), row.panel);
            EXPECT_DOUBLE_EQ(r.loader.controls.pgbDownload.Value, 100.0);
        };
        r.start();
        EXPECT_EQ(r.outcome(), row.remark[0] == 'L' ? Outcome::Done : Outcome::File);
        EXPECT_EQ(r.loader.state.Remark.text, row.remark);
        EXPECT_EQ(r.bench.console(), bringUpTexts().join(QString()));
        const auto sent = r.loader.state.Sent[0].value().value_or(zrk::SentImage{});
        EXPECT_EQ(QStringLiteral("%1 %2").arg(sent.bytes).arg(sent.crcText()), row.sum);
        if (row.content.isEmpty())
            r.loader.iniLoader.applyValue(0, "gone.bin");
        else
            r.bench.fill(0, row.content, "0x1234");
        EXPECT_FALSE(r.loader.state.Sent[0].value()) << "another file has not been sent";
        r.loader.bringUp.cmdStartSecondary_Click();
        EXPECT_EQ(r.outcome(), Outcome::Done) << "of the load before";
    }
}

TEST(Transfer, AnEmptyImageCountsAsAnImage) {
    for (const bool ticked : {true, false}) {
        TransferRig r;
        r.bench.fill(0, "", "0x1234");
        r.loader.controls.chkExeURK[0].Value = ticked ? 1 : 0;
        r.loader.controls.chkExeURK[1].Value = 0;
        r.start();
        EXPECT_EQ(r.loader.state.Remark.text,
                  ticked ? "Loaded: 0 bytes in 0 s." : "No image was ticked: nothing was sent.");
    }
}

/// Returns an image that takes the line longer than the reply time-out: about 8.7 s.
QByteArray longImage() {
    QByteArray image;
    for (int i = 0; i < 100'000; ++i)
        image += static_cast<char>(i * 7 + i / 256);
    return image;
}

TEST(Transfer, BoardsThatShareAStoreGetTheSameBytes) {
    const auto store = std::make_shared<zrk::ImageStore>();
    const QTemporaryDir folder;
    for (const QByteArray& onDisk : {kPrimaryCode, QByteArray(kPrimaryCode.size(), 'n')}) {
        TransferRig r;
        QFile file(folder.filePath("primary.bin"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(onDisk) == onDisk.size());
        file.close();
        r.loader.controls.txtFilNam[0].Tag = file.fileName();
        r.loader.transfer.readThrough(store);
        r.start();
        EXPECT_EQ(r.outcome(), Outcome::Done) << "the script of the board takes only the first bytes";
    }
}

TEST(Transfer, AFileThatChangedAfterTheStartIsMarkedBeforeItsBytesAreSent) {
    TransferRig r;
    r.port.steps[3].action = [&] { (void)r.bench.file("slot1.bin", kSecondaryCode + "grown"); };
    r.port.steps[4].action = [&] {
        EXPECT_TRUE(r.loader.controls.lblFileChanged[1].Caption.value().contains("changed"));
    };
    r.start();
    EXPECT_EQ(r.outcome(), Outcome::File);
}

TEST(Transfer, LongerThanTheReplyTimeOutAtTheLinesSpeed) {
    TransferRig r;
    const QByteArray code = longImage();
    r.bench.fill(1, code, "0x80008004");
    r.port.paced = true;
    r.port.steps[4].when = "p" + hex("04 80 00 80 A0 86 01 00");
    r.port.steps[5].when = code;
    r.start();
    EXPECT_EQ(r.outcome(), Outcome::Done);
    EXPECT_EQ(r.port.written.right(code.size()), code);
    const auto first = r.port.deliveredAt[r.port.deliveredAt.size() - static_cast<std::size_t>(code.size())];
    const std::chrono::duration<double> took = r.port.deliveredAt.back() - first;
    EXPECT_LT(took.count(), static_cast<double>(code.size()) / 11'520 / 0.995) << "the line was left idle";
    EXPECT_LT(r.port.deliveredAt.back() - r.port.writtenAt.back(), 500ms) << "handed over too far ahead";
}

TEST(Transfer, AStalledLineLeavesTheProgramAlive) {
    TransferRig r;
    r.bench.fill(1, longImage(), "0x80008004");
    r.port.paced = true;
    r.port.steps[4].when = "p" + hex("04 80 00 80 A0 86 01 00");
    const Duration begin = r.loop.elapsed();
    r.loop.after(3s, [&] { r.port.stalled = true; });
    r.loop.after(10s, [&] {
        EXPECT_TRUE(r.loader.controls.staStatus.FirstPanel.value().contains("stalled"));
        EXPECT_GT(r.loader.state.BytesSent, 20'000);
        EXPECT_LT(r.loader.state.BytesSent, 45'000);
        r.loader.portControl.cmdCancel_Click();
    });
    Duration asked{};
    r.bench.boxes.user = [&](int) {
        asked = r.loop.elapsed() - begin;
        return Answer::Yes;
    };
    r.start();
    EXPECT_EQ(r.bench.boxes.shown, QStringList(kQuestion));
    EXPECT_EQ(asked, 10s);
    EXPECT_EQ(r.outcome(), Outcome::Cancelled);
    r.bench.expectAtRest();
}

} // namespace
