#include "app/terminal/ScreenView.h"

#include "gui/WindowRig.h"

namespace {

using namespace zrktest;

/// The window in terminal mode.
class Screen : public WindowTest {
  protected:
    zrk::ConsoleView* text = find<zrk::ConsoleView>("txtStatus");
    zrk::ScreenView* view = find<zrk::ScreenView>("scrStatus");
    QString store = folder.filePath("window.conf");

    Screen() {
        window.activateWindow();
        loader.terminal.cmdTerminal_Click();
        loop.runFor(1s);
    }
    void say(const QByteArray& bytes) {
        port.follow({{.when = {}, .answer = bytes}});
        loop.runFor(400ms);
    }
    void showScreen() { trigger("mnuScreen"); }
    [[nodiscard]] QString row(int number) {
        return zrk::textOf(view->screen().line(view->screen().gridTop() + number), 0, 1000);
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& typed = {}) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, typed);
        QApplication::sendEvent(view, &down);
        loop.runFor(10ms);
    }
    [[nodiscard]] QString remembered() const {
        return QSettings(store, QSettings::IniFormat).value("screenView", "none").toString();
    }
    [[nodiscard]] QString panel() {
        loader.activity.refresh();
        return shown("staStatus_0");
    }
};

TEST_F(Screen, IsOneClickAndAKeyAwayAndRemembered) {
    EXPECT_TRUE(text->isVisible() && !view->isVisible()) << "text is the default";
    text->setFocus();
    click("tglScreen");
    EXPECT_TRUE(view->isVisible() && !text->isVisible());
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(view->geometry(), text->geometry());
    EXPECT_EQ(remembered(), "true");
    window.resize(window.width() + 100, window.height() + 100);
    EXPECT_EQ(view->geometry(), text->geometry());

    const zrk::MainWindow next(loader, catalog, store, [] {});
    EXPECT_FALSE(next.findChild<QWidget*>("scrStatus")->isHidden());
    EXPECT_TRUE(next.findChild<QWidget*>("txtStatus")->isHidden());

    QTest::keyClick(view, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(text->isVisible() && text->hasFocus());
    EXPECT_EQ(remembered(), "false");
    EXPECT_EQ(port.written, "");
}

TEST_F(Screen, BothViewsGetTheSameBytesAndTheScreenBeginsFreshWithThePort) {
    say("\x1B[31mred\x1B[m\r\nabc\b\bX\x1B[2");
    EXPECT_TRUE(loader.controls.txtStatus.text().endsWith("\x1B[31mred\x1B[m\r\naX\x1B[2"));
    EXPECT_EQ(row(0) + '|' + row(1), "red|aXc") << "the loader's lines before the opening are gone";
    loader.port.CloseComPort();
    port.steps.clear();
    loader.port.OpenComPort();
    say("Jx");
    EXPECT_EQ(row(0), "Jx") << "what was cut belongs to the port before";
    loader.console.PrintStatus("/n--- A line of ours ---/n");
    EXPECT_EQ(row(1), "--- A line of ours ---");
    EXPECT_EQ(port.written, "");
}

TEST_F(Screen, TheTextIsWholeWhenItIsShownAgain) {
    say("before");
    showScreen();
    say("\b\b ab");
    say("\bX\r\n");
    say(QByteArray(70'000, 'y'));
    say("\bend");
    showScreen();
    const QString whole = loader.controls.txtStatus.text();
    zrk::ConsoleView fresh;
    fresh.showAnew(whole);
    EXPECT_EQ(text->toPlainText(), fresh.toPlainText());
    EXPECT_TRUE(whole.contains("aX\r\nyyy") && whole.endsWith("yend"));
}

TEST_F(Screen, SaysOnceThatItExists) {
    say("plain");
    EXPECT_FALSE(panel().contains("Screen"));
    loader.state.Remark = {"Done."};
    say("\x1B");
    say("[1mbold");
    EXPECT_TRUE(panel().startsWith("Done. The board sends terminal sequences: Screen (Ctrl+Shift+S)"))
        << panel().toStdString();
    loader.state.Remark = {};
    say("\x1B[m");
    EXPECT_FALSE(panel().contains("Screen"));
}

TEST_F(Screen, SaysNothingToThoseWhoHaveIt) {
    showScreen();
    say("\x1B[1mbold");
    EXPECT_FALSE(panel().contains("Screen"));
}

TEST_F(Screen, AnswersOnlyWhileItIsShown) {
    say("\x1B[5n");
    EXPECT_EQ(port.written, "");
    showScreen();
    say("\x1B[5n");
    EXPECT_EQ(port.written, "\x1B[0n");
}

TEST_F(Screen, KeysGoToTheBoardButForThoseOfTheWindow) {
    showScreen();
    view->setFocus();
    struct Key {
        int key;
        Qt::KeyboardModifiers modifiers;
        QString text;
        QByteArray bytes;
    };
    QApplication::clipboard()->setText("p\u00E4");
    for (const Key& key :
         std::initializer_list<Key>{{Qt::Key_Adiaeresis, {}, QString(QChar(0xE4)), "\xC3\xA4"},
                                    {Qt::Key_C, Qt::ControlModifier, "\x03", "\x03"},
                                    {Qt::Key_Escape, {}, "\x1B", "\x1B"},
                                    {Qt::Key_F1, {}, "", "\x1BOP"},
                                    {Qt::Key_P, Qt::AltModifier, "p", "\x1Bp"},
                                    {Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier, "\x16", "p\xC3\xA4"},
                                    {Qt::Key_Insert, Qt::ShiftModifier, "", "p\xC3\xA4"},
                                    {Qt::Key_PageUp, Qt::ShiftModifier, "", ""},
                                    {Qt::Key_ScrollLock, {}, "", ""},
                                    {Qt::Key_End, {}, "", ""}, // ends what Scroll Lock began
                                    {Qt::Key_End, {}, "", "\x1B[F"}}) {
        port.written.clear();
        QKeyEvent asked(QEvent::ShortcutOverride, key.key, key.modifiers, key.text);
        asked.ignore();
        QApplication::sendEvent(view, &asked);
        press(key.key, key.modifiers, key.text);
        EXPECT_EQ(port.written, key.bytes) << key.key << " with " << key.modifiers.toInt();
        EXPECT_TRUE(asked.isAccepted() || key.bytes.isEmpty()) << "an access key must not get it";
    }
    QTest::keyClick(view, Qt::Key_Tab);
    EXPECT_TRUE(view->hasFocus());
    loop.runFor(10ms);
    EXPECT_TRUE(port.written.endsWith('\t'));

    port.calls.clear();
    port.written.clear();
    press(Qt::Key_B, Qt::AltModifier, "b");
    EXPECT_EQ(port.callNames().filter("dtr").join(' '), "dtr 0 dtr 1");
    EXPECT_EQ(port.written, "");
    QTest::keyClick(view, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_FALSE(view->hasFocus());
    loader.terminal.cmdTerminal_Click();
    press(Qt::Key_A, {}, "a");
    EXPECT_EQ(port.written, "");
}

TEST_F(Screen, EscapeStopsAPasteInEitherViewAndGoesToTheBoardOtherwise) {
    auto* pause = find<QMenu>("mnuPastePause")->actions().value(3);
    EXPECT_TRUE(find<QMenu>("mnuPastePause")->actions().value(0)->isChecked());
    pause->trigger();
    EXPECT_EQ(QSettings(store, QSettings::IniFormat).value("pastePause").toInt(), 200);
    const zrk::MainWindow next(loader, catalog, store, [] {});
    EXPECT_TRUE(next.findChild<QMenu*>("mnuPastePause")->actions().value(3)->isChecked());
    QApplication::clipboard()->setText("a\nb\nc\nd\n");
    for (QWidget* shown : {static_cast<QWidget*>(text), static_cast<QWidget*>(view)}) {
        if (shown == view)
            showScreen();
        port.written.clear();
        QTest::keyClick(shown, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
        loop.runFor(250ms);
        EXPECT_TRUE(panel().startsWith("Pasting: line 2 of 4")) << panel().toStdString();
        QTest::keyClick(shown, Qt::Key_Escape);
        loop.runFor(1s);
        EXPECT_EQ(port.written, "a\rb\r");
        QTest::keyClick(shown, Qt::Key_Escape);
        loop.runFor(10ms);
        EXPECT_EQ(port.written, "a\rb\r\x1B");
    }
}

TEST_F(Screen, TheEchoOfAKeyIsThereBeforeTheConsoleLooks) {
    showScreen();
    port.follow({{.when = "x", .answer = "x", .delay = 5ms}});
    press(Qt::Key_X, {}, "x");
    const QString before = loader.controls.txtStatus.text();
    loop.runFor(40ms);
    EXPECT_TRUE(row(view->screen().cursor().row).endsWith('x'));
    loop.runFor(400ms);
    EXPECT_EQ(loader.controls.txtStatus.text(), before + 'x') << "once, and not lost";
    EXPECT_EQ(row(view->screen().cursor().row), "x");
}

TEST_F(Screen, StandsStillWhileHeldAndCopiesWhatIsSelected) {
    showScreen();
    auto& bar = *view->verticalScrollBar();
    say("first word\r\n" + QByteArray("x\r\n").repeated(100));
    EXPECT_GT(bar.maximum(), 50);
    EXPECT_EQ(bar.value(), bar.maximum());
    for (const bool bySwitch : {true, false}) {
        if (bySwitch)
            click("tglHold");
        else
            bar.setValue(3);
        EXPECT_TRUE(view->isHeld());
        EXPECT_FALSE(find("cmdMore")->isVisible());
        const int before = bar.value();
        const QImage picture = view->viewport()->grab().toImage();
        say("y\r\n");
        EXPECT_EQ(view->viewport()->grab().toImage(), picture);
        EXPECT_EQ(bar.value(), before);
        const QRect mark = find("cmdMore")->geometry();
        EXPECT_TRUE(find("cmdMore")->isVisible());
        bar.setValue(1);
        EXPECT_EQ(find("cmdMore")->geometry(), mark) << "it does not scroll";
        click("cmdMore");
        EXPECT_EQ(bar.value(), bar.maximum());
        EXPECT_FALSE(view->isHeld());
    }
    view->reset();
    say("first word\r\nsecond\r\n");
    const int line = 3 + view->fontMetrics().height() * 3 / 2;
    const int letter = view->fontMetrics().horizontalAdvance('M');
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, {7 * letter, line / 3});
    press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier, "\x03");
    EXPECT_EQ(QApplication::clipboard()->text(), "word");
    QTest::mousePress(view->viewport(), Qt::LeftButton, {}, {6 * letter, line / 3});
    QTest::mouseMove(view->viewport(), {3 * letter, line});
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, {3 * letter, line});
    press(Qt::Key_Insert, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "word\nsec");
    click("cmdClear");
    EXPECT_EQ(row(0), "");
    EXPECT_TRUE(loader.controls.txtStatus.text().contains("second")) << "for Save";
}

TEST_F(Screen, TheGridFitsTheViewButIsNeverSmallerThanATerminal) {
    showScreen();
    const auto fits = [this] {
        const zrk::GridSize grid = view->screen().size();
        const QFontMetrics metrics(view->font());
        const QSize room = view->viewport()->size() - QSize(6, 6);
        return grid.columns == std::max(80, room.width() / metrics.horizontalAdvance('M')) &&
               grid.rows == std::max(24, room.height() / metrics.height());
    };
    for (const QSize size : {QSize(1600, 1200), QSize(500, 600)}) {
        window.resize(size);
        QApplication::processEvents();
        EXPECT_TRUE(fits()) << size.width();
    }
    EXPECT_GT(view->horizontalScrollBar()->maximum(), 0);
    QFont larger = view->font();
    larger.setPointSizeF(2 * larger.pointSizeF());
    view->setFont(larger);
    EXPECT_TRUE(fits());

    const auto isInSight = [this](const QByteArray& mark) {
        view->reset();
        say(mark);
        const QImage with = view->viewport()->grab().toImage();
        say("\x1B[D ");
        return view->viewport()->grab().toImage() != with;
    };
    for (const char* place : {"\x1B[24;1HX", "\x1B[24;1H\x1B[1;1HX", "\x1B[15;1HX"})
        EXPECT_TRUE(isInSight(place)) << "a view of a few rows shows the one with the cursor";
    view->setFont(text->font());
    window.resize(2000, 1600);
    QApplication::processEvents();
    EXPECT_TRUE(fits());
    view->setSmallGrid(true);
    EXPECT_EQ(view->screen().size(), zrk::GridSize());
}

TEST_F(Screen, PaintsColoursAndTheCursor) {
    showScreen();
    view->reset();
    view->setFocus();
    say("\x1B[41m \x1B[42m \x1B[7m \x1B[m");
    const QImage picture = view->viewport()->grab().toImage();
    const int letter = view->fontMetrics().horizontalAdvance('M');
    const auto at = [&](int column) {
        return picture.pixelColor(3 + column * letter + letter / 2, 5).name();
    };
    EXPECT_EQ(at(0), "#d04040");
    EXPECT_EQ(at(1), "#4e9a06");
    EXPECT_EQ(at(2), "#dcdcdc") << "reversed";
    EXPECT_EQ(at(3), view->hasFocus() ? "#dcdcdc" : "#1c1c1c") << "the cursor";
    EXPECT_EQ(at(5), "#1c1c1c");
}

} // namespace
