#include "app/ConsoleView.h"
#include "gui/WindowRig.h"

#include <QAction>
#include <QClipboard>
#include <QTest>

namespace {

using namespace zrktest;

class Keyboard : public WindowTest {
  protected:
    zrk::ConsoleView* console = find<zrk::ConsoleView>(QStringLiteral("txtStatus"));

    void enterTerminal() {
        loader.terminal.cmdTerminal_Click();
        ASSERT_TRUE(loader.state.TerminalMode && port.isOpen());
        window.activateWindow();
        console->setFocus();
    }
    void press(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
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
        {Qt::Key_Space, none, " ", " "},
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
        {Qt::Key_Delete, none, "\x7F", ""},
        {Qt::Key_Left, none, "", ""},
        {Qt::Key_F1, none, "", ""},
    };
    for (int letter = 0; letter < 26; ++letter)
        keys.push_back({Qt::Key_A + letter, Qt::ControlModifier, QString(QChar(letter + 1)),
                        QByteArray(1, static_cast<char>(letter + 1))});

    loader.controls.txtStatus.append(QStringLiteral("text"));
    for (const Key& key : keys)
        press(key.key, key.modifiers, key.text);
    EXPECT_EQ(port.written, "");
    enterTerminal();
    const QString before = loader.controls.txtStatus.text();
    for (const Key& key : keys) {
        port.written.clear();
        press(key.key, key.modifiers, key.text);
        loop.runFor(100ms);
        EXPECT_EQ(port.written, key.bytes) << key.key << " with " << key.modifiers.toInt();
    }
    EXPECT_EQ(loader.controls.txtStatus.text(), before);
    EXPECT_FALSE(console->toPlainText().contains("@"));
}

TEST_F(Keyboard, AltBAloneIsThePulse) {
    enterTerminal();
    const auto pulses = [&] { return port.callNames().filter(QStringLiteral("dtr")).join(' '); };
    press(Qt::Key_B, Qt::AltModifier | Qt::ShiftModifier, "B");
    press(Qt::Key_B, Qt::AltModifier | Qt::ControlModifier, "");
    EXPECT_EQ(pulses(), "");
    press(Qt::Key_B, Qt::AltModifier, "b");
    EXPECT_EQ(pulses(), "dtr 0 dtr 1");
    EXPECT_EQ(port.written, "");
}

TEST_F(Keyboard, PastingSendsTheTextAsTypedAndOnlyInTerminalMode) {
    QApplication::clipboard()->setText(QStringLiteral("md 80000000\nboot\n"));
    press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier, "");
    EXPECT_EQ(port.written, "");
    enterTerminal();
    press(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier, "");
    press(Qt::Key_Insert, Qt::ShiftModifier, "");
    loop.runFor(1s);
    EXPECT_EQ(port.written, "md 80000000\rboot\rmd 80000000\rboot\r");
    EXPECT_FALSE(console->toPlainText().contains("80000000"));
}

TEST_F(Keyboard, TabLeavesTheConsoleExceptInTerminalModeAndShiftTabAlways) {
    window.activateWindow();
    console->setFocus();
    QTest::keyClick(console, Qt::Key_Tab);
    EXPECT_NE(QApplication::focusWidget(), console);
    enterTerminal();
    QTest::keyClick(console, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), console);
    EXPECT_EQ(port.written, "\t");
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
        auto* control = find<QWidget>(QLatin1String(name));
        control->setFocus();
        EXPECT_TRUE(isWhole(control)) << name;
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
    QTest::mouseClick(find<QWidget>(QStringLiteral("tglDebug")), Qt::LeftButton);
    QStringList expected;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() && widget->isEnabled())
            expected += widget->objectName();
    }
    window.activateWindow();
    find<QWidget>(QStringLiteral("tglDebug"))->setFocus();
    QStringList visited;
    do {
        visited += QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (!visited.contains(QApplication::focusWidget()->objectName()) && visited.size() < 100);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "tglDebug");
    QStringList sorted = visited;
    sorted.sort();
    expected.sort();
    EXPECT_EQ(sorted.join(' '), expected.join(' '));
    EXPECT_EQ(visited.mid(3, 6).join(' '),
              "chkExeURK_6 txtFilNam_6 cmdBrowse_6 txtStartAddress_6 cmdPrgFlash chkExeURK_5");
    EXPECT_EQ(visited.last(), "txtStatus");
}

TEST_F(Keyboard, AnAddressIsEnteredOnLeavingEnterAndBeforeAnyAction) {
    auto& text = loader.controls.txtStartAddress[2].Text;
    auto* box = find<QWidget>(QStringLiteral("txtStartAddress_2"));
    const auto typeAddress = [&](const char* digits) {
        window.activateWindow();
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, QString::fromLatin1(digits));
        EXPECT_EQ(text.value(), digits);
    };
    typeAddress("0x8000abcd");
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(text.value(), "0x8000ABCD");
    typeAddress("0x81");
    find<QWidget>(QStringLiteral("txtFilNam_2"))->setFocus();
    EXPECT_EQ(text.value(), "0x00000081");
    // A menu entry and an access key act while the box keeps the focus.
    fill(2);
    for (const bool menu : {true, false}) {
        typeAddress("0x8");
        if (menu)
            find<QAction>(QStringLiteral("mnuLoadIni"))->trigger();
        else
            QTest::mouseClick(find<QWidget>(QStringLiteral("cmdValidateAdrs")), Qt::LeftButton);
        EXPECT_EQ(text.value(), "0x00000008");
    }
    EXPECT_EQ(boxes.shown.size(), 1) << "the check saw the entered address";
}

} // namespace
