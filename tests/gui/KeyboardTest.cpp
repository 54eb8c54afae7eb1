#include "gui/WindowRig.h"

namespace {

using namespace zrktest;

class Keyboard : public WindowTest {
  protected:
    zrk::ConsoleView* console = find<zrk::ConsoleView>("txtStatus");

    Keyboard() { window.activateWindow(); }

    void enterTerminal() {
        loader.terminal.cmdTerminal_Click();
        ASSERT_TRUE(loader.state.TerminalMode && port.isOpen());
        console->setFocus();
    }
    void press(int key, Qt::KeyboardModifiers modifiers, const QString& text = {}) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, text);
        QApplication::sendEvent(console, &down);
    }
};

TEST_F(Keyboard, EachKeyIsItsByteInTerminalModeAndNothingOtherwise) {
    struct Key {
        int key;
        Qt::KeyboardModifiers modifiers;
        QString text;
        QByteArray bytes;
    };
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    std::vector<Key> keys{
        {Qt::Key_A, Qt::ShiftModifier, "A", "A"},
        {Qt::Key_Return, none, "\r", "\x0D"},
        {Qt::Key_Enter, Qt::KeypadModifier, "\r", "\x0D"},
        {Qt::Key_Backspace, none, "\b", "\x08"},
        {Qt::Key_Tab, none, "\t", "\x09"},
        {Qt::Key_Escape, none, "\x1B", "\x1B"},
        {Qt::Key_BracketLeft, Qt::ControlModifier, "\x1B", "\x1B"},
        {Qt::Key_Adiaeresis, none, QString(QChar(0xE4)), "\xE4"},
        {0, none, QString(QChar(0x20AC)), ""},                        // the euro sign has no single-byte code
        {Qt::Key_Q, Qt::ControlModifier | Qt::AltModifier, "@", "@"}, // AltGr on some systems
        {Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier, "\x03", ""},
        {Qt::Key_1, Qt::ControlModifier, "1", ""},
        {Qt::Key_F, Qt::AltModifier, "f", ""},
        {Qt::Key_Delete, none, "\x7F", "\x1B[3~"},
        {Qt::Key_Delete, Qt::ControlModifier, "\x7F", ""},
        {Qt::Key_Left, none, "", "\x1B[D"},
        {Qt::Key_Left, Qt::ShiftModifier, "", ""},
        {Qt::Key_Home, Qt::KeypadModifier, "", "\x1B[H"},
        {Qt::Key_F1, none, "", "\x1BOP"},
        {Qt::Key_F10, none, "", "\x1B[21~"},
    };
    for (int letter = 0; letter < 26; ++letter)
        keys.push_back({Qt::Key_A + letter, Qt::ControlModifier, QString(QChar(letter + 1)),
                        QByteArray(1, static_cast<char>(letter + 1))});

    for (const Key& key : keys)
        press(key.key, key.modifiers, key.text);
    EXPECT_EQ(port.written, "");
    enterTerminal();
    const QString before = console->toPlainText();
    for (const Key& key : keys) {
        port.written.clear();
        press(key.key, key.modifiers, key.text);
        loop.runFor(100ms);
        EXPECT_EQ(port.written, key.bytes) << key.key << " with " << key.modifiers.toInt();
    }
    EXPECT_EQ(console->toPlainText(), before);
}

TEST_F(Keyboard, AltBAloneIsThePulseWhereverThePortIsOpen) {
    const auto pulses = [this](int key, Qt::KeyboardModifiers modifiers) {
        port.calls.clear();
        press(key, modifiers, "b");
        return port.callNames().filter("dtr").join(' ');
    };
    EXPECT_EQ(pulses(Qt::Key_B, Qt::AltModifier), "");
    enterTerminal();
    for (const bool terminal : {true, false}) {
        EXPECT_EQ(loader.state.TerminalMode, terminal);
        EXPECT_EQ(pulses(Qt::Key_B, Qt::AltModifier | Qt::ShiftModifier), "");
        EXPECT_EQ(pulses(Qt::Key_B, Qt::AltModifier | Qt::ControlModifier), "");
        port.written.clear();
        EXPECT_EQ(pulses(Qt::Key_B, Qt::AltModifier), "dtr 0 dtr 1");
        EXPECT_EQ(port.written, "");
        loader.terminal.cmdTerminal_Click();
    }
}

TEST_F(Keyboard, PastingSendsTheTextAsTypedAndOnlyInTerminalMode) {
    QApplication::clipboard()->setText("md 80000000\nboot\n");
    press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(port.written, "");
    enterTerminal();
    press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Insert, Qt::ShiftModifier);
    loop.runFor(1s);
    EXPECT_EQ(port.written, "md 80000000\rboot\rmd 80000000\rboot\r");
    EXPECT_FALSE(console->toPlainText().contains("80000000"));
}

TEST_F(Keyboard, TabGoesToTheBoardInTerminalModeAndShiftTabLeavesTheConsole) {
    enterTerminal();
    QTest::keyClick(console, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), console);
    QTest::keyClick(console, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_NE(QApplication::focusWidget(), console);
    EXPECT_EQ(port.written, "\t");
}

TEST_F(Keyboard, ANarrowWindowShowsWhatHasTheFocus) {
    window.resize(window.width() / 2, window.height());
    const auto isWhole = [](const QWidget* control) {
        return control->visibleRegion().boundingRect() == control->rect();
    };
    // An unfinished line, whose end is where the cursor is.
    loader.controls.txtStatus.append(QString(window.width() / 12, 'x'));
    for (const char* name :
         {"cmdValidateAdrs", "chkExeURK_0", "txtStartAddress_0", "cmdCancel", "txtStatus"}) {
        find(name)->setFocus();
        EXPECT_TRUE(isWhole(find(name))) << name;
    }
    for (const Qt::Key key : {Qt::Key_Backtab, Qt::Key_Tab}) {
        QTest::keyClick(QApplication::focusWidget(), key);
        EXPECT_TRUE(isWhole(QApplication::focusWidget())) << key;
    }
}

TEST_F(Keyboard, TabReachesEveryControlOnceAndInOrder) {
    for (int slot = 0; slot < 7; ++slot)
        fill(slot);
    for (auto* button :
         {&loader.controls.cmdStartPrimary, &loader.controls.cmdStartSecondary, &loader.controls.cmdURK})
        button->Enabled = true;
    click("tglDebug");
    QStringList expected;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() && widget->isEnabled())
            expected += widget->objectName();
    }
    find("tglDebug")->setFocus();
    QStringList visited;
    do {
        visited += QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (!visited.contains(QApplication::focusWidget()->objectName()) && visited.size() < 100);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "tglDebug");
    EXPECT_EQ(visited.mid(3, 6).join(' '),
              "chkExeURK_6 txtFilNam_6 cmdBrowse_6 txtStartAddress_6 cmdPrgFlash chkExeURK_5");
    EXPECT_EQ(visited.last(), "txtStatus");
    visited.sort();
    expected.sort();
    EXPECT_EQ(visited.join(' '), expected.join(' '));
}

TEST_F(Keyboard, AnAddressIsEnteredOnLeavingEnterAndBeforeAnyAction) {
    fill(2);
    auto* box = find("txtStartAddress_2");
    const std::tuple<const char*, std::function<void()>, const char*> ways[] = {
        {"0x8000abcd", [box] { QTest::keyClick(box, Qt::Key_Return); }, "0x8000ABCD"},
        {"0xab", [box] { QTest::keyClick(box, Qt::Key_Enter, Qt::KeypadModifier); }, "0x000000AB"},
        {"0x81", [box] { QTest::keyClick(box, Qt::Key_Tab); }, "0x00000081"},
        {"0x82", [this] { click("txtFilNam_4"); }, "0x00000082"},
        // A menu entry and an access key act while the box keeps the focus.
        {"0x8", [this] { trigger("mnuLoadIni"); }, "0x00000008"},
        {"0x9", [this] { click("cmdValidateAdrs"); }, "0x00000009"},
    };
    for (const auto& [digits, enter, entered] : ways) {
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, digits);
        EXPECT_EQ(loader.controls.txtStartAddress[2].Text.value(), digits);
        enter();
        EXPECT_EQ(loader.controls.txtStartAddress[2].Text.value(), entered);
    }
    EXPECT_EQ(boxes.shown.size(), 1) << "the check saw the entered address";
}

} // namespace
