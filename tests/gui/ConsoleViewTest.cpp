#include "app/ConsoleView.h"

#include "app/ConsoleLog.h"
#include "app/ConsoleSearch.h"
#include "app/ConsoleTools.h"
#include "gui/WindowRig.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QEventLoop>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QVBoxLayout>

#include <random>

namespace {

using namespace std::chrono_literals;

/// A console text and its view.
struct Shown {
    zrk::ConsoleText text;
    zrk::ConsoleView view;

    Shown() {
        text.onEdit([this](qsizetype removed, const QString& inserted, zrk::TextOrigin) {
            view.follow(text.text(), removed, inserted.size());
        });
    }
    void say(const QByteArray& piece) { text.append(QString::fromLatin1(piece)); }
    QString copied() {
        QApplication::clipboard()->clear();
        view.selectAll();
        view.copy();
        return QApplication::clipboard()->text();
    }
};

TEST(ConsoleView, ShowsTheTextWithSignsForWhatHasNoGlyph) {
    struct ShownCase {
        std::vector<QByteArray> pieces;
        QString display;
        QString copied;
    };
    const ShownCase cases[] = {
        {{"one\r\ntwo\r\n"}, "one\ntwo\n", "one\ntwo\n"},
        {{"one\r", "\ntwo"}, "one\ntwo", "one\ntwo"},
        {{"a\rb"}, "a\u240Db", "a\rb"},
        {{"a\nb"}, "a\u240Ab", "a\nb"},
        {{QByteArray("\0\x02\x1B\x08\x7F\t!", 7)},
         "\u2400\u2402\u241B\u2408\u2421\t!",
         "\u2400\x02\x1B\x08\x7F\t!"},
        {{"\x80\xE4\xAD"}, "\uFFFD\u00E4-", "\uFFFD\u00E4-"},
    };
    for (const ShownCase& oneCase : cases) {
        Shown shown;
        for (const QByteArray& piece : oneCase.pieces)
            shown.say(piece);
        SCOPED_TRACE(oneCase.pieces.front().toStdString());
        EXPECT_EQ(shown.view.toPlainText(), oneCase.display);
        EXPECT_EQ(shown.copied(), oneCase.copied);
    }
}

/// The window in terminal mode, with a board on its port.
struct ConsoleWindow : zrktest::WindowTest {
    ConsoleWindow() { loader.terminal.cmdTerminal_Click(); }

    /// In one read.
    void say(const QByteArray& chunk) {
        port.receive(chunk);
        loop.runFor(200ms);
    }
    [[nodiscard]] QByteArray saved() {
        fileDialog.choice = folder.filePath("saved.txt");
        click("cmdSaveConsole");
        return contentOf(fileDialog.choice);
    }
    static QByteArray contentOf(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
};

TEST_F(ConsoleWindow, ShowsSavesAndLogsEveryCharacterOfTheBoard) {
    struct Received {
        std::vector<QByteArray> chunks;
        QByteArray text;
        QString display;
    };
    const QByteArray padded("\0\a\x0E\x7F\x9B", 5);
    const Received cases[] = {
        {{"abc\bd"}, "abd", "abd"},
        {{"xyz", "\b\bQ"}, "xyQ", "xyQ"},
        {{"ls", "\b \b", "s"}, "ls", "ls"},
        {{"one\r\ntwo"}, "one\r\ntwo", "one\ntwo"},
        {{"one\ntwo"}, "onetwo", "onetwo"},
        {{"one\rtwo"}, "one\r\ntwo", "one\ntwo"},
        {{" 10 %\r", " 20 %\r"}, " 10 %\r\n 20 %\r\n", " 10 %\n 20 %\n"},
        // Half of a line end is taken back, then the other half and the character before it.
        {{"one\r", "\btwo"}, "one\rtwo", "one\u240Dtwo"},
        {{"one\r", "\b", "\b", "\b"}, "on", "on"},
        {{"\x1B[0;31mred\x1B[m\x1B[2J\x1B(B"},
         "\x1B[0;31mred\x1B[m\x1B[2J\x1B(B",
         "\u241B[0;31mred\u241B[m\u241B[2J\u241B(B"},
        {{padded}, padded, "\u2400\u2407\u240E\u2421\uFFFD"},
        {{"\xE4"}, "\xE4", "\u00E4"},
        {{"\xC3", "\xA4"}, "\xC3\xA4", "\u00C3\u00A4"},
    };
    zrk::ConsoleLog log(loop, loader.controls.txtStatus);
    for (const auto& [chunks, text, display] : cases) {
        SCOPED_TRACE(text.toStdString());
        const QByteArray savedBefore = saved();
        const QString shownBefore = shown("txtStatus", "plainText");
        log.start(folder.filePath("board.log"), {});
        for (const QByteArray& chunk : chunks)
            say(chunk);
        log.stop();
        EXPECT_EQ(saved(), savedBefore + text);
        EXPECT_EQ(shown("txtStatus", "plainText"), shownBefore + display);
        EXPECT_EQ(contentOf(folder.filePath("board.log")), text);
    }
}

TEST_F(ConsoleWindow, WhatABoardLeavesUnfinishedIsNoneOfTheNextOnes) {
    const QString before = shown("txtStatus", "plainText");
    say("\x1B]0;\xC3");
    loader.portControl.cmdCancel_Click();
    loader.terminal.cmdTerminal_Click();
    say("\xA4 login:");
    EXPECT_EQ(shown("txtStatus", "plainText"),
              before + "\u241B]0;\u00C3\n--- Closing port ---\n\n--- Switching to programmed mode ---\n"
                       "\n--- Enabling terminal mode ---\n\u00A4 login:");
}

TEST(ConsoleView, AnyEditsEndLikeTheWholeTextAtOnce) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 30; ++round) {
        Shown shown;
        for (int edit = 0; edit < 120; ++edit) {
            QString added(random() % 8 == 0 ? 990 : 0, 'x');
            const auto length = random() % 20;
            for (unsigned i = 0; i < length; ++i)
                added += "ab\r\n\r\n\r\n"[random() % 8];
            const qsizetype removed = random() % 3 == 0 ? static_cast<qsizetype>(random() % 30) : 0;
            shown.text.replaceEnd(std::min(removed, shown.text.text().size()), added);
        }
        Shown anew;
        anew.view.showAnew(shown.text.text());
        EXPECT_EQ(shown.view.toPlainText(), anew.view.toPlainText()) << "round " << round;
        EXPECT_EQ(shown.copied(), anew.copied()) << "round " << round;
    }
}

TEST(ConsoleView, AnEndlessLineIsBrokenForLayoutOnlyAndComesBackWhole) {
    Shown shown;
    for (int i = 0; i < 5000; ++i)
        shown.say(".");
    EXPECT_EQ(shown.view.blockCount(), 5);
    EXPECT_EQ(shown.copied(), QString(5000, '.'));
}

TEST(ConsoleView, AClearedViewHasNothingOfTheTextBefore) {
    Shown shown;
    shown.say("a\r");
    shown.view.clearView();
    shown.say("\n");
    EXPECT_EQ(shown.view.toPlainText(), "\u240A");
    shown.view.clearView();
    shown.text.replaceEnd(3, "?");
    EXPECT_EQ(shown.view.toPlainText(), "?");
}

TEST(ConsoleView, ASelectionHoldsNoCharacterThatComesLater) {
    struct Selection {
        QByteArray before;
        int from = 0;
        int length = 0;
        QByteArray after;
        QString copied;
    };
    const Selection selections[] = {
        {"the last", 4, 4, " word\r\n$ ", "last"},
        {"two\r\nlines\r\n", 0, 10, "more", "two\nlines\n"},
        // A backspace takes its last character.
        {"a command", 2, 7, "\band more", "comman"},
        {"a command", 0, 4, "\b\b", "a co"},
        {"two\r\n", 0, 4, "\bmore", "two"},
    };
    for (const auto& [before, from, length, after, copied] : selections) {
        for (const bool backward : {false, true}) {
            SCOPED_TRACE((before + ", then " + after).toStdString() + (backward ? ", backward" : ""));
            Shown shown;
            shown.say(before);
            QTextCursor selection(shown.view.document());
            selection.setPosition(backward ? from + length : from);
            selection.setPosition(backward ? from : from + length, QTextCursor::KeepAnchor);
            shown.view.setTextCursor(selection);
            for (const QChar character : QString::fromLatin1(after))
                shown.text.replaceEnd(character == '\b' ? 1 : 0, character == '\b' ? QString() : character);
            shown.view.copy();
            EXPECT_EQ(QApplication::clipboard()->text(), copied);
            EXPECT_EQ(shown.view.textCursor().position() < shown.view.textCursor().anchor(), backward);
        }
    }
}

/// A view with more text than it has room for.
struct Reading : Shown, ::testing::Test {
    Reading() {
        view.resize(400, 120);
        view.show();
        say("line" + QByteArray("\r\n").repeated(100));
        QObject::connect(&view, &zrk::ConsoleView::holdChanged, [this](bool held, bool more) {
            state = more ? "more" : held ? "held" : "follows";
        });
    }
    [[nodiscard]] bool atEnd() const { return bar.value() == bar.maximum(); }
    void expectStands(const std::function<void()>& release) {
        const int before = bar.value();
        say("new\r\n");
        EXPECT_EQ(bar.value(), before);
        EXPECT_EQ(state, "more");
        release();
        EXPECT_TRUE(atEnd());
        EXPECT_EQ(state, "follows");
        say("newer\r\n");
        EXPECT_TRUE(atEnd());
    }

    QScrollBar& bar = *view.verticalScrollBar();
    QString state = "follows";
};

TEST_F(Reading, TheEndStaysInSightAndASelectionLasts) {
    EXPECT_GT(bar.maximum(), 50);
    EXPECT_TRUE(atEnd());
    QTextCursor selection(view.document());
    selection.setPosition(view.document()->characterCount() - 3);
    selection.movePosition(QTextCursor::Start, QTextCursor::KeepAnchor);
    view.setTextCursor(selection);
    bar.setValue(bar.maximum());
    say("new");
    EXPECT_TRUE(view.textCursor().selectedText().startsWith("line"));
    EXPECT_TRUE(atEnd());
    selection.clearSelection();
    view.setTextCursor(selection);
    bar.setValue(bar.maximum());
    say("new");
    EXPECT_TRUE(view.textCursor().atEnd());
    const QFontMetrics metrics(view.font());
    EXPECT_EQ(metrics.horizontalAdvance("iii"), metrics.horizontalAdvance("WWW"));
}

TEST_F(Reading, StandsStillWhileHeldScrolledUpOrPressedAndGoesBackToTheEnd) {
    const auto press = [this](Qt::Key key) { QTest::keyClick(&view, key); };
    view.setHeld(true);
    expectStands([&] { press(Qt::Key_End); });
    press(Qt::Key_ScrollLock);
    expectStands([&] { press(Qt::Key_ScrollLock); });
    view.selectAll();
    bar.setValue(bar.value() - 5);
    EXPECT_EQ(state, "held");
    expectStands([&] { press(Qt::Key_Return); });
    bar.setValue(0);
    expectStands([&] { bar.setValue(bar.maximum()); });

    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, view.viewport()->rect().bottomRight());
    EXPECT_TRUE(view.textCursor().atEnd());
    const int before = bar.value();
    const int pressedAt = view.textCursor().anchor();
    say("new\r\n");
    EXPECT_EQ(bar.value(), before);
    EXPECT_EQ(view.textCursor().anchor(), pressedAt) << "where a drag begins";
    EXPECT_TRUE(state.contains("more")) << state.toStdString();
    QTest::mouseRelease(view.viewport(), Qt::LeftButton);
    EXPECT_TRUE(atEnd());
    bar.setValue(0);
    EXPECT_EQ(state, "held") << "nothing has come since";
    view.clearView();
    EXPECT_FALSE(view.isHeld());

    // The menu of the other button takes its release.
    QTest::mousePress(view.viewport(), Qt::RightButton);
    say(QByteArray("x\r\n").repeated(100));
    EXPECT_TRUE(atEnd());
    QTest::mouseRelease(view.viewport(), Qt::RightButton);
}

TEST_F(Reading, AnotherWidthOrAClearGoesThroughNothingThatIsOutOfSight) {
    say(QByteArray("123456789 ").repeated(30) + "\r\n");
    const QTextBlock longLine = view.document()->lastBlock().previous();
    QApplication::processEvents();
    say(QByteArray("x\r\n").repeated(100) + QByteArray(300, 'x'));
    const auto rows = [&] { return std::pair(longLine.lineCount(), longLine.layout()->lineAt(0).width()); };
    const auto room = [&] { return view.viewport()->width() - 2 * view.document()->documentMargin(); };
    const auto [before, width] = rows();
    EXPECT_EQ(width, room());
    view.resize(250, 120);
    QApplication::processEvents();
    EXPECT_EQ(rows(), std::pair(before, width));
    const int range = bar.maximum();
    bar.setValue(longLine.firstLineNumber());
    QApplication::processEvents();
    EXPECT_GT(longLine.lineCount(), before);
    EXPECT_EQ(bar.maximum() - range, longLine.lineCount() - before);
    EXPECT_EQ(longLine.layout()->lineAt(0).width(), room());
    view.setHeld(false);
    for (const int wide : {300, 200, 280}) { // the end stays in sight
        view.resize(wide, 120);
        QApplication::processEvents();
        EXPECT_TRUE(atEnd());
        EXPECT_TRUE(view.viewport()->rect().contains(view.cursorRect())) << wide;
        EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
        EXPECT_EQ(view.document()->documentLayout()->frameBoundingRect(nullptr).width(),
                  view.viewport()->width())
            << "within which a selection is painted";
    }

    say(QByteArray("\r\n").repeated(50'000));
    const QPointer<QTextDocument> old = view.document();
    const qreal tabStop = view.tabStopDistance();
    view.clearView();
    EXPECT_FALSE(old.isNull()) << "it takes its time";
    while (!old.isNull())
        QApplication::processEvents();
    EXPECT_EQ(view.tabStopDistance(), tabStop);
    EXPECT_EQ(view.document()->defaultFont(), view.font());
    say("x\ty");
    EXPECT_TRUE(atEnd());
    EXPECT_EQ(copied(), "x\ty");
}

TEST_F(Reading, ASearchEndsWithTheTextThatItGoesThrough) {
    QGroupBox frame;
    QVBoxLayout inFrame(&frame);
    auto* shown = new zrk::ConsoleView(&frame);
    inFrame.addWidget(shown);
    zrk::ConsoleTools tools(shown, &frame, [] {});
    shown->showAnew(QStringLiteral("x\r\n").repeated(100'000));
    auto* txtFind = frame.findChild<QLineEdit*>("txtFind");
    ASSERT_NE(txtFind, nullptr);
    txtFind->setText("absent");
    QTest::keyClick(txtFind, Qt::Key_Return);
    QApplication::processEvents();
    shown->clearView();
    QApplication::processEvents();
    EXPECT_TRUE(frame.findChild<QLabel*>("lblFind")->isHidden());
}

TEST_F(Reading, KeysThatLeadBackAreNotForTheBoardAndOthersAre) {
    view.setKeysGoToBoard([] { return true; });
    QString typed;
    QObject::connect(&view, &zrk::ConsoleView::typed, [&](int character) { typed += QChar(character); });
    view.setHeld(true);
    QTest::keyClick(&view, Qt::Key_X);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_TRUE(view.isHeld()) << "what was stopped with intent";
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_FALSE(view.isHeld());
    for (const auto key : {Qt::Key_Y, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&view, Qt::Key_PageUp, Qt::ShiftModifier);
        EXPECT_TRUE(view.isHeld());
        QTest::keyClick(&view, key);
        EXPECT_FALSE(view.isHeld()) << "who types wants to see it";
    }
    EXPECT_EQ(typed, "x\ry\r\r");
    view.setKeysGoToBoard([] { return false; });
    view.setHeld(true);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_FALSE(view.isHeld());
}

TEST_F(Reading, FindsInBothDirectionsAroundTheEndsAndClearsTheView) {
    say("Boot one\r\n" + QByteArray("x\r\n").repeated(5000) + "boot two boot\r\n");
    zrk::ConsoleSearch search(&view);
    QEventLoop untilAnswered;
    QStringList answers;
    const auto answer = [&](const QString& wanted) {
        answers += wanted;
        untilAnswered.quit();
    };
    QObject::connect(&search, &zrk::ConsoleSearch::found, [&](const QTextCursor& found) {
        view.showFound(found);
        answer(QString("%1 at %2").arg(found.selectedText()).arg(found.positionInBlock()));
    });
    QObject::connect(&search, &zrk::ConsoleSearch::notFound, [&] { answer("none"); });
    const auto find = [&](const QString& wanted, zrk::ConsoleSearch::Direction direction) {
        search.start(wanted, direction);
        untilAnswered.exec();
    };
    using enum zrk::ConsoleSearch::Direction;
    find("boot", Forward);
    EXPECT_TRUE(view.isHeld());
    for (const auto direction : {Forward, Forward, Forward, Backward, Backward})
        find("boot", direction);
    find("absent", Forward);
    EXPECT_EQ(answers.join(", "), "Boot at 4, boot at 4, boot at 13, Boot at 4, boot at 13, boot at 4, none");
    view.clearView();
    EXPECT_EQ(view.toPlainText(), "");
    say("on");
    EXPECT_EQ(view.toPlainText(), "on");
}

} // namespace
