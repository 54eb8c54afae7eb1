#include "gui/WindowRig.h"
#include "simulation/BoardPort.h"

#include <QAccessible>

namespace {

using namespace zrktest;
using zrk::Answer;

class Operations : public WindowTest {
  protected:
    Operations() { fill(0); }

    /// Clicks cmdStartPrimary; `user` acts while the wait dialog is open.
    void startPrimary(const std::function<void(QWidget& dialog)>& user) {
        loop.after(500ms, [this, user] {
            ASSERT_NE(waitDialog.openWindow(), nullptr);
            user(*waitDialog.openWindow());
        });
        click("cmdStartPrimary");
    }
    QString console() { return readable(loader.controls.txtStatus.text()); }
};

TEST_F(Operations, TheWaitDialogIsModalAndEveryWayToCloseItIsACancel) {
    const std::function<void(QWidget&)> ways[] = {
        [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](QWidget& dialog) { dialog.close(); },
        [](QWidget& dialog) {
            QTest::mouseClick(dialog.findChild<QWidget*>("CancelButton"), Qt::LeftButton);
        },
    };
    for (const auto& closeIt : ways) {
        const qsizetype before = console().size();
        startPrimary([&](QWidget& dialog) {
            EXPECT_EQ(dialog.windowTitle(), "Waiting for comm");
            EXPECT_EQ(dialog.parentWidget(), &window);
            EXPECT_EQ(QApplication::activeModalWidget(), &dialog);
            EXPECT_EQ(dialog.findChild<QLabel*>("lblMsg")->text(),
                      "Cycle power off/on on the ZRK6924 demo board, \nMake sure that service jumper is "
                      "installed\n\nWaiting for Boot_ID from ZRK6924....");
            closeIt(dialog);
        });
        EXPECT_EQ(waitDialog.openWindow(), nullptr);
        EXPECT_TRUE(console().mid(before).contains("Waiting for BootID .. <0>cancelled!\n"));
        EXPECT_FALSE(loader.state.OperationActive);
        EXPECT_TRUE(find("cmdStartPrimary")->isEnabled());
    }
}

TEST_F(Operations, TheWaitDialogPulsesDtrAndItsDebugPairReachesTheBoard) {
    startPrimary([&](QWidget& dialog) {
        auto* debug = dialog.findChild<QLineEdit*>("txtOut");
        auto* send = dialog.findChild<QWidget*>("cmdOut");
        EXPECT_EQ(debug->text(), "4");
        EXPECT_FALSE(debug->isVisible());
        QTest::mouseClick(dialog.findChild<QWidget*>("tglDebug"), Qt::LeftButton);
        EXPECT_TRUE(debug->isVisible());
        for (QWidget* focus : {static_cast<QWidget*>(debug), dialog.findChild<QWidget*>("CancelButton")}) {
            focus->setFocus();
            port.calls.clear();
            QTest::keyClick(focus, Qt::Key_B, Qt::AltModifier);
            EXPECT_EQ(port.callNames().join(' '), "dtr 0 dtr 1") << focus->objectName().toStdString();
        }
        EXPECT_TRUE(send->toolTip().contains("until the program is restarted"));
        EXPECT_FALSE(find("lblMuted")->isVisible());
        EXPECT_EQ(find<QFrame>("staStatus_0")->frameRect(), find("staStatus_0")->rect());
        debug->clear();
        QTest::keyClicks(debug, "4R!");
        QTest::mouseClick(send, Qt::LeftButton);
        QAccessible::queryAccessibleInterface(debug)->setText(QAccessible::Value, "5");
        for (QWidget* focus : {static_cast<QWidget*>(debug), send}) {
            focus->setFocus();
            QTest::keyClick(focus, Qt::Key_Return);
            QTest::keyClick(focus, Qt::Key_Enter, Qt::KeypadModifier);
        }
        EXPECT_EQ(port.written, "4R!5555");
        EXPECT_FALSE(loader.state.CancelRequested) << "Enter sends, it does not cancel";
        dialog.close();
    });
    EXPECT_TRUE(loader.state.DebugMode);
    EXPECT_TRUE(find("lblMuted")->isVisible());
    EXPECT_LE(find<QLabel>("staStatus_0")->contentsRect().right(), find("lblMuted")->x());
}

TEST_F(Operations, AFoundBootIdTakesTheWaitDialogAwayAndItServesTheNextWaitToo) {
    for (int run = 0; run < 2; ++run) {
        const qsizetype before = console().size();
        port.steps = {{"", "5"}, {"A", "5"}, {"U3", "?"}};
        loop.after(300ms, [this] { EXPECT_EQ(waitDialog.openWindow(), nullptr); });
        click("cmdStartPrimary");
        EXPECT_TRUE(console().mid(before).contains("Waiting for BootID .. 5 .. found!")) << run;
        EXPECT_TRUE(console().endsWith("--- Cancel download, closing port ---\n")) << run;
    }
    EXPECT_TRUE(boxes.shown.isEmpty());
}

TEST_F(Operations, TheWindowStaysOpenWhileAnOperationRunsWhichThenEnds) {
    bool closed = true;
    port.steps = {{"", "5"}, {"A", "", [&] { closed = window.close(); }}};
    click("cmdStartPrimary");
    EXPECT_FALSE(closed);
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(loader.state.OperationActive);
    EXPECT_FALSE(port.isOpen());
    // Idle, it closes, and the port with it.
    loader.terminal.cmdTerminal_Click();
    EXPECT_TRUE(port.isOpen());
    trigger("mnuExit");
    EXPECT_FALSE(window.isVisible());
    EXPECT_FALSE(port.isOpen());
}

TEST_F(Operations, ClosingTheWindowDuringATransferAsksOnceAndNoGoesOn) {
    const struct {
        Answer answer;
        bool cancelAskedBefore;
    } cases[] = {{Answer::No, false}, {Answer::Yes, false}, {Answer::No, true}};
    for (const auto& oneCase : cases) {
        const Answer answer = oneCase.answer;
        const bool cancelAskedBefore = oneCase.cancelAskedBefore;
        boxes.shown.clear();
        boxes.user = [&](int) {
            EXPECT_TRUE(port.isOpen());
            if (cancelAskedBefore && boxes.shown.size() == 1) {
                EXPECT_FALSE(window.close());
            }
            loader.activity.refresh();
            EXPECT_EQ(shown("staStatus_0"), "Waiting for your answer");
            return answer;
        };
        const auto closeIt = [&] {
            if (cancelAskedBefore)
                click("cmdCancel");
            else
                EXPECT_FALSE(window.close());
        };
        port.steps = {
            {"", "5"}, {"A", "5"}, {"U3", "R"}, {hex("00 00 00 00 05 00 00 00 31"), "", closeIt, 0ms}};
        click("cmdStartPrimary");
        ASSERT_EQ(boxes.shown.size(), 1);
        EXPECT_TRUE(boxes.shown[0].contains("Are you sure?"));
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(port.isOpen(), answer == Answer::No);
        EXPECT_EQ(port.written.endsWith("12345"), answer == Answer::No);
        loader.activity.refresh();
        EXPECT_EQ(shown("staStatus_0"),
                  answer == Answer::No ? "Loaded: 5 bytes in 0 s." : "Cancelled at 1 of 5 bytes.");
        click("cmdCancel");
    }
}

TEST_F(Operations, AFailureThatAHandlerLetsOutIsShown) {
    boxes.user = [](int n) {
        return n == 1 ? throw zrk::RuntimeFailure(zrk::FailureKind::File, "No such thing.") : Answer::Ok;
    };
    trigger("mnuWriteIni");
    ASSERT_EQ(boxes.shown.size(), 2);
    EXPECT_EQ(boxes.shown[1], "[Error] ! No such thing.");
    EXPECT_EQ(loader.state.MessageText, "No such thing.");
}

/// On the line to a board that is switched on three seconds after a click that needs it.
class OnABoard : public WindowOver<zrksim::BoardPort> {
  protected:
    void switchOnAndClick(const QString& button) {
        loop.after(3s, [this] { port.powerOn(); });
        click(button);
    }
    static QByteArray read(const auto& memory, std::uint32_t address) {
        const auto bytes = memory.read(address, 5);
        return {reinterpret_cast<const char*>(bytes.data()), 5};
    }
};

TEST_F(OnABoard, EveryButtonAndEntryDoesItsOwnAndNoOthers) {
    const char* addresses[] = {"0x0", "0x80000004", "0x80100000", "0x81000000", "0x83000000", "0x100", "0x0"};
    for (int i = 0; i < 7; ++i) {
        const QByteArray content = "slot" + QByteArray::number(i) + " ZRK SIMULATED ";
        const QString name = QStringLiteral("slot%1.bin").arg(i);
        fileDialog.choice = image(name, content + (i == 6 ? "PG_SIBL" : "PRIMARY BOOT"));
        click(QStringLiteral("cmdBrowse_%1").arg(i));
        EXPECT_EQ(shown(QStringLiteral("txtFilNam_%1").arg(i)), name);
        loader.controls.txtStartAddress[static_cast<std::size_t>(i)].Text = addresses[i];
    }
    click("cmdStartSecondary");
    click("cmdURK");
    EXPECT_FALSE(port.isOpen()) << "without a primary boot they are grey";
    click("cmdValidateAdrs");
    auto* list = find<QTreeWidget>("lvwAdrs");
    EXPECT_EQ(list->topLevelItemCount(), 7);
    loader.controls.txtStartAddress[1].Text = "0x1";
    boxes.user = [list](int) {
        EXPECT_EQ(list->topLevelItemCount(), 0) << "the rows of another check, under this one's message";
        return Answer::Ok;
    };
    click("cmdValidateAdrs");
    EXPECT_EQ(boxes.shown.size(), 1);
    boxes.user = nullptr;
    loader.controls.txtStartAddress[1].Text = addresses[1];

    switchOnAndClick("cmdStartPrimary");
    EXPECT_EQ(read(port.board.iram(), 0), "slot0");
    EXPECT_EQ(read(port.board.sdram(), 0x80000004), "slot1");
    EXPECT_EQ(read(port.board.sdram(), 0x80100000), QByteArray(5, 0));
    click("cmdURK");
    for (const auto& [address, image] :
         {std::pair{0x80100000U, "slot2"}, {0x81000000U, "slot3"}, {0x83000000U, "slot4"}})
        EXPECT_EQ(read(port.board.sdram(), address), image);
    EXPECT_FALSE(loader.state.TerminalMode);
    click("cmdStartSecondary");
    loop.runFor(1s);
    EXPECT_EQ(port.board.state(), zrkboard::State::Prompt);
    EXPECT_EQ(shown("cmdTerminal"), "Disable Terminal mode");
    click("tglDebug");
    find<QLineEdit>("txtOut")->clear();
    QTest::keyClicks(find("txtOut"), "help");
    click("cmdOutput");
    EXPECT_TRUE(port.written.endsWith("help"));
    fileDialog.choice.clear();
    trigger("mnuExecScript");
    EXPECT_EQ(fileDialog.requests.last().title, "Open script file");
    for (const char* caption : {"Enable Terminal mode", "Disable Terminal mode"}) {
        window.activateWindow();
        find("cmdBrowse_0")->setFocus();
        click("cmdTerminal");
        EXPECT_EQ(shown("cmdTerminal"), caption);
        EXPECT_EQ(QApplication::focusWidget(), find("txtStatus")) << "ready to be typed into";
    }
    click("cmdCancel");
    EXPECT_FALSE(port.isOpen());
    click("chkErase");
    EXPECT_TRUE(loader.controls.chkErase.isTicked());
    switchOnAndClick("cmdPrgFlash");
    EXPECT_EQ(read(port.board.nand(), 0x100), "slot5");
    EXPECT_TRUE(loader.controls.txtStatus.text().contains("(ERASING FLASH)"));

    loader.state.IniPath = image("a.INI", "[BINFILES]\nPRIMARY=slot6.bin\n");
    trigger("mnuLoadIni");
    EXPECT_EQ(shown("txtFilNam_0"), "slot6.bin");
    EXPECT_EQ(boxes.shown.size(), 1);
    trigger("mnuWriteIni");
    EXPECT_TRUE(boxes.shown.last().startsWith("[Not yet implemented]"));
    trigger("mnuAbout");
    EXPECT_EQ(aboutShown, 1);
    trigger("mnuExit");
    EXPECT_FALSE(window.isVisible());
}

} // namespace
