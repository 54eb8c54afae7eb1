#include "FlashRig.h"

namespace {

using namespace zrktest;
using zrk::Answer;
using zrk::Outcome;

TEST(FlashProgramming, GoodRunToTheLetterAndToTheByte) {
    for (const bool erase : {true, false}) {
        for (const bool oneByOne : {true, false}) {
            FlashRig b;
            b.port.oneByOne = oneByOne;
            b.loader.controls.chkErase.Value = erase ? 1 : 0;
            b.port.steps[5].when[20] = erase ? 1 : 0;
            b.port.steps[5].action = [&] { EXPECT_EQ(b.bench.buttons(), "1110"); };
            b.loader.controls.txtStatus.onEdit([&](qsizetype, const QString& text, zrk::TextOrigin) {
                if (text.startsWith("(ERASING")) {
                    EXPECT_EQ(b.port.written, b.sentUpTo(4) + kHeader.left(20));
                }
            });
            b.loader.terminal.cmdTerminal_Click();
            const QString before = b.bench.console() + "\n--- Switching to programmed mode ---\n";
            b.start();
            EXPECT_EQ(b.bench.console(),
                      before + FlashRig::textsUpTo(9).replace("(ERASING FLASH) .. ",
                                                              erase ? "(ERASING FLASH) .. " : ""));
            EXPECT_EQ(b.port.written, b.sentUpTo(8));
            b.bench.expectBytesWrittenOneByOne();
            EXPECT_EQ(b.port.callNames().mid(1),
                      QStringList({"close", "open 1 115200,N,8,1 handshaking 0", "close"}));
            EXPECT_EQ(b.outcome(), Outcome::Done);
            EXPECT_EQ(b.bench.buttons(), "1111");
            EXPECT_FALSE(b.loader.state.FlashStateUnknown);
            b.bench.expectAtRest();
            EXPECT_TRUE(b.bench.boxes.shown.isEmpty());
        }
    }
}

TEST(FlashProgramming, EachAnswerGoneWrong) {
    for (std::size_t step = 1; step <= 8; ++step) {
        for (const Trouble trouble : kTroubles) {
            if (trouble == Trouble::Silent && step > 2)
                continue; // there is no time limit, as the next test shows
            SCOPED_TRACE(testing::Message() << "step " << step << " trouble " << static_cast<int>(trouble));
            FlashRig b;
            disturb(b, b.port.steps[step], trouble);
            b.start();
            const bool echoed = step < 5 && trouble != Trouble::HangUp;
            EXPECT_EQ(b.bench.console(), FlashRig::textsUpTo(static_cast<qsizetype>(step)) +
                                             (echoed ? echoOf(trouble) + kMismatch : QString()) + kAborted);
            EXPECT_EQ(b.port.written, b.sentUpTo(step)) << "sent on after the trouble";
            EXPECT_EQ(b.bench.boxes.shown, boxesOf(trouble));
            EXPECT_EQ(b.outcome(), outcomeOf(trouble));
            b.expectAborted(step >= 5);

            b.bench.waitDialog.whenShown = [&](zrk::WaitDialog& dialog) {
                EXPECT_FALSE(b.loader.state.FlashStateUnknown) << "known until the next operation";
                dialog.CancelButton_Click();
            };
            b.start();
            b.expectAborted(false);
        }
    }
}

TEST(FlashProgramming, AFileThatGrewIsAFailure) {
    FlashRig b;
    QFile file(b.loader.controls.txtFilNam[5].Tag);
    ASSERT_TRUE(file.open(QIODevice::Append) && file.write("more") == 4);
    file.close();
    b.start();
    EXPECT_EQ(b.port.written, b.sentUpTo(8));
    EXPECT_EQ(b.outcome(), Outcome::File);
    EXPECT_EQ(b.loader.state.Remark.text,
              "Flash image: the file now has 9 bytes, but 5 were announced; the flash holds "
              "only the first 5. Choose the file again and repeat.");
}

TEST(FlashProgramming, TheChipMayTakeItsTimeAndCancelStillWorksAtOnce) {
    for (std::size_t step = 3; step <= 8; ++step) {
        SCOPED_TRACE(step);
        FlashRig b;
        b.port.steps[step].delay = 20min;
        b.start();
        EXPECT_EQ(b.outcome(), Outcome::Done);

        FlashRig c;
        Duration clicked{};
        c.port.steps[step].answer.clear();
        c.port.steps[step].delay = 20min;
        c.port.steps[step].action = [&] {
            const QString panel = c.loader.controls.staStatus.FirstPanel;
            EXPECT_TRUE(panel.startsWith("The board ") && panel.contains(" min ")) << panel.toStdString();
            clicked = c.loop.elapsed();
            c.loader.portControl.cmdCancel_Click();
        };
        c.start();
        EXPECT_LT(c.loop.elapsed() - clicked, 100ms);
        EXPECT_EQ(c.outcome(), Outcome::Cancelled);
        c.expectAborted(step >= 5);
    }
}

TEST(FlashProgramming, TheUserMaySetALimitForTheChipsAnswers) {
    for (std::size_t step = 3; step <= 8; ++step) {
        SCOPED_TRACE(step);
        FlashRig b;
        b.loader.flash.limitAnswers(30s);
        b.port.steps[step].delay = 29s;
        b.start();
        EXPECT_EQ(b.outcome(), Outcome::Done);
        b.port.steps[step].delay = 31s;
        b.start();
        EXPECT_EQ(b.outcome(), Outcome::LimitReached);
        EXPECT_TRUE(b.loader.state.StopText.startsWith("No answer within 30 s. The board "));
        b.expectAborted(step >= 5);
    }
}

TEST(FlashProgramming, HangUpAtEveryByte) {
    const qsizetype beforeHeader = FlashRig().sentUpTo(4).size();
    for (qsizetype bytes = 1; bytes <= FlashRig().sentUpTo(8).size(); ++bytes) {
        SCOPED_TRACE(bytes);
        FlashRig b;
        b.port.hangUpAfterBytes = bytes;
        b.start();
        EXPECT_EQ(b.outcome(), Outcome::PortLost);
        EXPECT_EQ(b.bench.boxes.shown, boxesOf(Trouble::HangUp));
        b.expectAborted(bytes >= beforeHeader + 24); // a part of the header erases nothing
    }
}

TEST(FlashProgramming, CancelDuringThePayload) {
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        FlashRig b;
        b.port.steps[6].when = kData.mid(8);
        b.port.steps.insert(
            b.port.steps.begin() + 6,
            {kData.left(8), "",
             [&] {
                 EXPECT_EQ(b.loader.controls.staStatus.SecondPanel.value(), "bytes sent 4 / 4")
                     << "the payload comes without a header";
                 EXPECT_EQ(b.loader.controls.pgbDownload.Value, 100.0);
                 b.loader.portControl.cmdCancel_Click();
             },
             0ms});
        b.bench.boxes.user = [&](int) { return answer; };
        b.start();
        EXPECT_EQ(b.bench.boxes.shown,
                  QStringList("[] ? yes/no If you cancel now, you have to restart all over!\n"
                              "Are you sure?"));
        if (answer == Answer::No) {
            EXPECT_EQ(b.bench.console(), FlashRig::textsUpTo(9));
            EXPECT_EQ(b.outcome(), Outcome::Done);
            continue;
        }
        EXPECT_EQ(b.port.written, b.sentUpTo(6) + hex("00 00 03")) << "the frame is completed";
        EXPECT_EQ(b.bench.console(), FlashRig::textsUpTo(6) + kAborted);
        EXPECT_EQ(b.loader.controls.staStatus.SecondPanel.value(), "bytes sent 2 / 5");
        EXPECT_EQ(b.outcome(), Outcome::Cancelled);
        b.expectAborted(true);
    }
}

TEST(FlashProgramming, AfterAConfirmedCancelTheClosingBytesLeaveThePort) {
    for (const bool stalled : {false, true}) {
        SCOPED_TRACE(stalled ? "unless the line takes nothing" : "as long as the line takes them");
        FlashRig b;
        b.bench.fill(5, QByteArray(30'000, 'x'), "0x00020000");
        b.loader.controls.chkErase.Value = 0;
        b.port.steps[5].when = hex("00 00 00 00 03"); // of the header, whatever its size says
        b.port.paced = true;
        b.loop.after(1s, [&] { b.port.stalled = stalled; });
        b.loop.after(2s, [&] { b.loader.portControl.cmdCancel_Click(); });
        Duration confirmed{};
        b.bench.boxes.user = [&](int) {
            confirmed = b.loop.elapsed();
            return Answer::Yes;
        };
        b.start();
        EXPECT_EQ(b.outcome(), Outcome::Cancelled);
        EXPECT_TRUE(b.port.written.endsWith(hex("78 00 00 03")));
        EXPECT_EQ(static_cast<qsizetype>(b.port.deliveredAt.size()) == b.port.written.size(), !stalled);
        EXPECT_LT(b.loop.elapsed() - confirmed, stalled ? 500ms : 2000ms);
        b.expectAborted(true);
    }
}

TEST(FlashProgramming, WithoutPgSibl) {
    const QString box = "[Error] ! No pg_sibl binary specified in INI file";
    {
        FlashRig b; // unticked: reported, and the slot's file is used
        b.loader.controls.chkExeURK[6].Value = 0;
        b.bench.boxes.user = [&](int) {
            EXPECT_EQ(b.bench.console(), "");
            EXPECT_TRUE(b.port.isOpen());
            return Answer::Ok;
        };
        b.start();
        EXPECT_EQ(b.bench.boxes.shown, QStringList(box));
        EXPECT_EQ(b.outcome(), Outcome::Done);

        // A board that announces itself while the box is open is heard, however often it does.
        b.port.steps[0].answer.clear();
        b.bench.boxes.user = [&](int) {
            b.port.receive("55");
            return Answer::Ok;
        };
        const qsizetype before = b.bench.console().size();
        b.start();
        EXPECT_EQ(b.bench.console().mid(before), FlashRig::textsUpTo(9));
    }
    {
        FlashRig b; // the window is closed during the box: a cancel, and no second box
        b.loader.controls.chkExeURK[6].Value = 0;
        b.bench.boxes.user = [&](int) {
            EXPECT_EQ(b.loader.portControl.Form_Unload(), 1);
            return Answer::Ok;
        };
        b.start();
        EXPECT_EQ(b.bench.boxes.shown, QStringList(box));
        EXPECT_EQ(b.outcome(), Outcome::Cancelled);
    }
    FlashRig b; // no file at all: the failure comes while its header is built
    b.loader.iniLoader.applyValue(6, "none.bin");
    b.start();
    ASSERT_EQ(b.bench.boxes.shown.size(), 2);
    EXPECT_EQ(b.bench.boxes.shown[0], box);
    EXPECT_EQ(b.bench.console(), FlashRig::textsUpTo(2) +
                                     "R .. found!\nSending startaddress .. done!\nSending size .. " +
                                     kAborted);
    EXPECT_EQ(b.outcome(), Outcome::Internal);
    b.expectAborted(false);
}

TEST(FlashProgramming, SaysBeforeThePowerCycleThatNoImageIsChosen) {
    FlashRig b;
    b.loader.iniLoader.applyValue(5, "none.bin");
    b.port.steps[0].delay = 2s;
    QString panel;
    b.loop.after(1300ms, [&] { panel = b.loader.controls.staStatus.FirstPanel; });
    b.start();
    EXPECT_EQ(panel,
              "No flash image is chosen: nothing can be programmed. Waiting for the board's power-on: 1 s");
    b.expectAborted(false);
}

TEST(FlashProgramming, TextsOfTheFlashSlot) {
    struct Row {
        const char* address;
        const char* size;
        QByteArray header; // what is sent of address and size
        QByteArray data;   // what is sent of the data frame
        Outcome outcome;
    };
    for (const Row& row : std::initializer_list<Row>{
             {"131072", "5", hex("00 00 02 00 05 00 00 00"), kData, Outcome::Done},
             {"0x83FFFFF0", "0x0", hex("F0 FF FF 83 00 00 00 00"), hex("02 09 00 00 00 AF 00 00 03"),
              Outcome::File},
             {"0x0", "0x7", hex("00 00 00 00 07 00 00 00"),
              hex("02 10 00 00 00 AF") + kImage + hex("00 00 03"), Outcome::File},
             {"0x0", "0x7FFFFFF7", hex("00 00 00 00 F7 FF FF 7F"), "", Outcome::Internal},
             {"0x20000", "", hex("00 00 02 00"), "", Outcome::Internal},
             {"xyz", "0x5", "", "", Outcome::Internal}}) {
        SCOPED_TRACE(row.address);
        FlashRig b;
        b.loader.controls.txtStartAddress[5].Text = row.address;
        b.loader.controls.lblCodeSize[5].Caption = row.size;
        QByteArray header = hex("02 18 00 00 00 AE") + row.header;
        if (row.header.size() == 8)
            header += kHeader.mid(14);
        b.port.steps[5].when = header;
        b.port.steps[6].when = row.data;
        b.start();
        const bool good = row.outcome != Outcome::Internal;
        EXPECT_EQ(b.outcome(), row.outcome);
        EXPECT_EQ(b.port.written, b.sentUpTo(good ? 8 : 6));
        ASSERT_EQ(b.bench.boxes.shown.size(), good ? 0 : 1);
        EXPECT_EQ(b.bench.boxes.shown.value(0).contains("the slot \"Flash image\" has no file"),
                  *row.size == 0);
        if (!good)
            b.expectAborted(row.header.size() == 8); // a part of it erases nothing
    }
}

} // namespace
