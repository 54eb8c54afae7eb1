#include "gui/WindowRig.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace {

using namespace zrktest;

QAccessibleInterface& reached(QWidget* widget) {
    return *QAccessible::queryAccessibleInterface(widget);
}

void act(QWidget* widget, const QString& action) {
    reached(widget).actionInterface()->doAction(action);
}

void setText(QWidget* widget, const QString& text) {
    reached(widget).setText(QAccessible::Value, text);
}

class AssistiveTool : public WindowTest {
  protected:
    QString shown(const QString& name) { return find<QLineEdit>(name)->text(); }
};

TEST_F(AssistiveTool, WhatItSetsIsWhatTheLoaderHas) {
    zrk::Controls& c = loader.controls;
    fill(2);
    auto* tick = find<QCheckBox>(QStringLiteral("chkExeURK_2"));
    act(tick, QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(c.chkExeURK[2].Value, 0);
    act(tick, QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(c.chkExeURK[2].Value, 1);
    // Without a file the rule takes the tick back.
    act(find<QCheckBox>(QStringLiteral("chkExeURK_4")), QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(find<QCheckBox>(QStringLiteral("chkExeURK_4"))->isChecked());

    setText(find<QWidget>(QStringLiteral("txtOut")), QStringLiteral("4R!"));
    EXPECT_EQ(c.txtOut.Text.value(), "4R!");
    setText(find<QWidget>(QStringLiteral("txtFilNam_2")), QStringLiteral("other.bin"));
    EXPECT_EQ(shown(QStringLiteral("txtFilNam_2")), "slot2.bin") << "a file name is chosen, not typed";
    auto* console = find<QPlainTextEdit>(QStringLiteral("txtStatus"));
    c.txtStatus.append(QStringLiteral("one\r\ntwo"));
    reached(console).editableTextInterface()->insertText(1, QStringLiteral("X"));
    reached(console).editableTextInterface()->deleteText(5, 6);
    c.txtStatus.replaceEnd(1, QStringLiteral("e"));
    EXPECT_EQ(console->toPlainText(), "one\ntwe") << "the console is only read";

    auto* ports = find<QComboBox>(QStringLiteral("cmbComPort"));
    const auto select = [ports](int entry) {
        reached(ports).child(0)->child(entry)->actionInterface()->doAction(
            QAccessibleActionInterface::toggleAction());
        QApplication::processEvents();
    };
    select(6);
    EXPECT_EQ(c.cmbComPort.selectedItemData(), 7);
    ports->showPopup();
    QTest::keyClick(ports->view(), Qt::Key_Down); // going through the open list is no choice yet
    QApplication::processEvents();
    EXPECT_EQ(c.cmbComPort.selectedItemData(), 7);
    select(2);
    EXPECT_FALSE(ports->view()->isVisible());
    EXPECT_EQ(c.cmbComPort.selectedItemData(), 3);
    loader.terminal.cmdTerminal_Click();
    EXPECT_EQ(loader.port.CommPort(), 3);
    select(4);
    EXPECT_EQ(ports->currentText(), "COM3:") << "the port that is open";
    EXPECT_EQ(c.cmbComPort.selectedItemData(), 3);
}

TEST_F(AssistiveTool, AnAddressIsEnteredWithTheNextActionWithoutEverHavingHadTheFocus) {
    auto& address = loader.controls.txtStartAddress;
    const auto box = [this](int slot) {
        return find<QLineEdit>(QStringLiteral("txtStartAddress_%1").arg(slot));
    };
    setText(box(2), QStringLiteral("0x8280000"));
    EXPECT_EQ(address[2].Text.value(), "0x8280000");
    // Letter by letter, as some write; nothing is entered in between.
    QAccessibleEditableTextInterface& text = *reached(box(3)).editableTextInterface();
    text.deleteText(0, 10);
    for (int i = 0; i < 4; ++i)
        text.insertText(i, QStringLiteral("0xab").mid(i, 1));
    EXPECT_EQ(address[3].Text.value(), "0xab");
    EXPECT_EQ(box(3)->cursorPosition(), 4);

    find<QAction>(QStringLiteral("mnuWriteIni"))->trigger();
    EXPECT_EQ(address[2].Text.value(), "0x08280000");
    EXPECT_EQ(address[3].Text.value(), "0x000000AB");
    EXPECT_EQ(box(2)->text() + box(3)->text(), "0x082800000x000000AB");
    EXPECT_EQ(address[0].Text.value(), "0x0") << "nobody touched it";
}

} // namespace
