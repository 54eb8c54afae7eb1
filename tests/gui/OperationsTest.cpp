#include "gui/WindowRig.h"

#include <QAccessible>
#include <QAction>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

using namespace zrktest;

class Operations : public WindowTest {
  protected:
    /// Clicks cmdStartPrimary; `user` acts while the wait dialog is open.
    void startPrimary(const std::function<void(QWidget& dialog)>& user) {
        fill(0);
        loop.after(500ms, [this, user] {
            ASSERT_NE(waitDialog.openWindow(), nullptr);
            user(*waitDialog.openWindow());
        });
        QTest::mouseClick(find<QWidget>(QStringLiteral("cmdStartPrimary")), Qt::LeftButton);
    }
    QString console() { return readable(loader.controls.txtStatus.text()); }
};

TEST_F(Operations, TheWaitDialogIsModalAndEveryWayToCloseItIsACancel) {
    const std::vector<std::pair<const char*, std::function<void(QWidget&)>>> ways{
        {"Escape", [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }},
        {"close box", [](QWidget& dialog) { dialog.close(); }},
        {"Cancel",
         [](QWidget& dialog) {
             QTest::mouseClick(dialog.findChild<QWidget*>(QStringLiteral("CancelButton")), Qt::LeftButton);
         }},
    };
    for (const auto& entry : ways) {
        const char* name = entry.first;
        loader.controls.txtStatus.replaceEnd(loader.controls.txtStatus.text().size(), QString());
        startPrimary([&](QWidget& dialog) {
            EXPECT_EQ(dialog.objectName(), "frmWaitForComm");
            EXPECT_EQ(dialog.windowTitle(), "Waiting for comm");
            EXPECT_EQ(dialog.parentWidget(), &window);
            EXPECT_EQ(QApplication::activeModalWidget(), &dialog);
            EXPECT_EQ(dialog.findChild<QLabel*>(QStringLiteral("lblMsg"))->text(),
                      "Cycle power off/on on the ZRK6924 demo board, \nMake sure that service jumper is "
                      "installed\n\nWaiting for Boot_ID from ZRK6924....");
            entry.second(dialog);
        });
        EXPECT_EQ(waitDialog.openWindow(), nullptr) << name;
        EXPECT_TRUE(console().contains("Waiting for BootID .. <0>cancelled!\n")) << name;
        EXPECT_FALSE(loader.state.OperationActive) << name;
        EXPECT_TRUE(find<QWidget>(QStringLiteral("cmdStartPrimary"))->isEnabled()) << name;
    }
}

TEST_F(Operations, TheWaitDialogPulsesDtrAndItsDebugPairReachesTheBoard) {
    startPrimary([&](QWidget& dialog) {
        auto* debug = dialog.findChild<QLineEdit*>(QStringLiteral("txtOut"));
        EXPECT_EQ(debug->text(), "4");
        EXPECT_FALSE(debug->isVisible());
        QTest::mouseClick(dialog.findChild<QWidget*>(QStringLiteral("tglDebug")), Qt::LeftButton);
        EXPECT_TRUE(debug->isVisible());
        for (QWidget* focus : {static_cast<QWidget*>(debug), dialog.findChild<QWidget*>("CancelButton")}) {
            focus->setFocus();
            port.calls.clear();
            QTest::keyClick(focus, Qt::Key_B, Qt::AltModifier);
            EXPECT_EQ(port.callNames().join(' '), "dtr 0 dtr 1") << focus->objectName().toStdString();
        }
        debug->setText(QString());
        QTest::keyClicks(debug, QStringLiteral("4R!"));
        QTest::mouseClick(dialog.findChild<QWidget*>(QStringLiteral("cmdOut")), Qt::LeftButton);
        EXPECT_EQ(port.written, "4R!");
        QAccessible::queryAccessibleInterface(debug)->setText(QAccessible::Value, QStringLiteral("5"));
        QTest::mouseClick(dialog.findChild<QWidget*>(QStringLiteral("cmdOut")), Qt::LeftButton);
        EXPECT_EQ(port.written, "4R!5");
        for (QWidget* focus : {static_cast<QWidget*>(debug), dialog.findChild<QWidget*>("cmdOut")}) {
            focus->setFocus();
            QTest::keyClick(focus, Qt::Key_Return);
            QTest::keyClick(focus, Qt::Key_Enter, Qt::KeypadModifier);
        }
        EXPECT_EQ(port.written, "4R!55555");
        EXPECT_FALSE(loader.state.CancelRequested) << "Enter sends, it does not cancel";
        dialog.close();
    });
    EXPECT_TRUE(loader.state.DebugMode);
}

TEST_F(Operations, AFoundBootIdTakesTheWaitDialogAwayAndItServesTheNextWaitToo) {
    for (int run = 0; run < 2; ++run) {
        port.steps = {{"", "5"}, {"A", "5"}, {"U3", "?"}};
        loop.after(300ms, [this] { EXPECT_EQ(waitDialog.openWindow(), nullptr); });
        fill(0);
        QTest::mouseClick(find<QWidget>(QStringLiteral("cmdStartPrimary")), Qt::LeftButton);
        EXPECT_TRUE(console().contains("Waiting for BootID .. 5 .. found!")) << run;
        EXPECT_TRUE(console().endsWith("--- Cancel download, closing port ---\n")) << run;
    }
    EXPECT_TRUE(boxes.shown.isEmpty());
}

TEST_F(Operations, TheWindowStaysOpenWhileAnOperationRunsWhichThenEnds) {
    bool closed = true;
    port.steps = {{"", "5"}, {"A", "", [&] { closed = window.close(); }}};
    fill(0);
    QTest::mouseClick(find<QWidget>(QStringLiteral("cmdStartPrimary")), Qt::LeftButton);
    EXPECT_FALSE(closed);
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(loader.state.OperationActive);
    EXPECT_FALSE(port.isOpen());
    // Idle, it closes, and the port with it.
    loader.terminal.cmdTerminal_Click();
    EXPECT_TRUE(port.isOpen());
    find<QAction>(QStringLiteral("mnuExit"))->trigger();
    EXPECT_FALSE(window.isVisible());
    EXPECT_FALSE(port.isOpen());
}

TEST_F(Operations, EveryButtonAndEntryReachesItsHandler) {
    const auto click = [this](const char* name) {
        QTest::mouseClick(find<QWidget>(QString::fromLatin1(name)), Qt::LeftButton);
    };
    fileDialog.choice = folder.filePath(QStringLiteral("none.bin"));
    for (int slot = 0; slot < 7; ++slot) {
        click(qPrintable(QStringLiteral("cmdBrowse_%1").arg(slot)));
        EXPECT_EQ(loader.controls.txtFilNam[static_cast<std::size_t>(slot)].Text.value(), "none.bin");
    }
    click("cmdTerminal");
    EXPECT_TRUE(loader.state.TerminalMode);
    click("cmdStartSecondary");
    click("tglDebug");
    click("cmdOutput");
    EXPECT_EQ(port.written, "4R") << "Start Secondary Executable is disabled";
    fileDialog.choice.clear();
    find<QAction>(QStringLiteral("mnuExecScript"))->trigger();
    EXPECT_EQ(fileDialog.requests.last().title, "Open script file");
    click("cmdCancel");
    EXPECT_TRUE(console().contains("--- Closing port ---"));
    port.failsToOpen = true;
    click("cmdPrgFlash");
    ASSERT_EQ(boxes.shown.size(), 1);
    EXPECT_TRUE(boxes.shown[0].contains("Error communicating with COM1"));
    find<QAction>(QStringLiteral("mnuWriteIni"))->trigger();
    EXPECT_TRUE(boxes.shown[1].startsWith("[Not yet implemented]"));
    // What a handler lets out does not end the program.
    boxes.user = [](int n) {
        return n == 3 ? throw zrk::RuntimeFailure(zrk::FailureKind::File, "No such thing.") : zrk::Answer::Ok;
    };
    find<QAction>(QStringLiteral("mnuWriteIni"))->trigger();
    EXPECT_EQ(boxes.shown.mid(3).join('|'), "[Error] ! No such thing.");
    EXPECT_EQ(loader.state.MessageText, "No such thing.");
    find<QAction>(QStringLiteral("mnuAbout"))->trigger();
    EXPECT_EQ(aboutShown, 1);
}

} // namespace
