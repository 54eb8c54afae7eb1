#include "gui/WindowRig.h"

#include <QAccessible>

namespace {

using namespace zrktest;

class AssistiveTool : public WindowTest {
  protected:
    QAccessibleInterface& reached(const QString& name) {
        return *QAccessible::queryAccessibleInterface(find(name));
    }
    void toggle(QAccessibleInterface& control) {
        control.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QApplication::processEvents();
    }
    void setText(const QString& name, const QString& text) {
        reached(name).setText(QAccessible::Value, text);
    }
};

TEST_F(AssistiveTool, SetsTheLoadersControls) {
    zrk::Controls& c = loader.controls;
    fill(2);
    for (const int ticked : {0, 1}) {
        toggle(reached("chkExeURK_2"));
        EXPECT_EQ(c.chkExeURK[2].Value, ticked);
    }
    // Without a file the rule unticks the box again.
    toggle(reached("chkExeURK_4"));
    EXPECT_EQ(shown("chkExeURK_4", "checked"), "false");
    EXPECT_EQ(c.chkExeURK[4].Value, 0);

    setText("txtOut", "4R!");
    EXPECT_EQ(c.txtOut.Text.value(), "4R!");
    setText("txtFilNam_2", "other.bin");
    EXPECT_EQ(shown("txtFilNam_2"), "slot2.bin") << "a file name is chosen, not typed";
    c.txtStatus.append("one\r\ntwo");
    reached("txtStatus").editableTextInterface()->insertText(1, "X");
    reached("txtStatus").editableTextInterface()->deleteText(5, 6);
    c.txtStatus.replaceEnd(1, "e");
    EXPECT_EQ(shown("txtStatus", "plainText"), "one\ntwe") << "the console is only read";
}

TEST_F(AssistiveTool, AndTheKeyboardChooseAPort) {
    auto* ports = find<QComboBox>("cmbComPort");
    const auto select = [this](int entry) { toggle(*reached("cmbComPort").child(0)->child(entry)); };
    const auto chosen = [this] { return loader.controls.cmbComPort.selectedItemData(); };
    QTest::keyClick(ports, Qt::Key_Down);
    EXPECT_EQ(chosen(), 2);
    select(6);
    EXPECT_EQ(chosen(), 7);
    ports->showPopup();
    QTest::keyClick(ports->view(), Qt::Key_Down); // moving within the open list chooses nothing yet
    QApplication::processEvents();
    EXPECT_EQ(chosen(), 7);
    select(2);
    EXPECT_FALSE(ports->view()->isVisible());
    EXPECT_EQ(chosen(), 3);
    loader.terminal.cmdTerminal_Click();
    EXPECT_EQ(loader.port.CommPort(), 3);
    select(4);
    EXPECT_EQ(ports->currentText(), "COM3:") << "the port that is open";
    EXPECT_EQ(chosen(), 3);
}

TEST_F(AssistiveTool, AnAddressIsEnteredWithTheNextActionWithoutEverHavingHadTheFocus) {
    auto& address = loader.controls.txtStartAddress;
    setText("txtStartAddress_2", "0x8280000");
    EXPECT_EQ(address[2].Text.value(), "0x8280000");
    // Letter by letter, as some tools write; nothing is entered in between.
    QAccessibleEditableTextInterface& text = *reached("txtStartAddress_3").editableTextInterface();
    text.deleteText(0, 10);
    for (int i = 0; i < 4; ++i)
        text.insertText(i, QStringLiteral("0xab").mid(i, 1));
    EXPECT_EQ(address[3].Text.value(), "0xab");
    EXPECT_EQ(shown("txtStartAddress_3", "cursorPosition"), "4");

    trigger("mnuWriteIni");
    EXPECT_EQ(address[2].Text.value(), "0x08280000");
    EXPECT_EQ(address[3].Text.value(), "0x000000AB");
    EXPECT_EQ(shown("txtStartAddress_2") + shown("txtStartAddress_3"), "0x082800000x000000AB");
    EXPECT_EQ(address[0].Text.value(), "0x0") << "it was not touched";
}

} // namespace
