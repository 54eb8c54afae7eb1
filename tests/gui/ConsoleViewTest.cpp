#include "app/ConsoleView.h"

#include "app/ConsoleSearch.h"
#include "app/ConsoleTools.h"
#include "support/Rig.h"

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

using Origin = zrk::TextOrigin;

/// A console text and its view.
struct Shown {
    zrk::ConsoleText text;
    zrk::ConsoleView view;

    Shown() {
        text.onPiece([this](const QString& piece, Origin origin) { view.follow(piece, origin); });
    }
    void say(Origin origin, const QByteArray& piece) {
        const QString characters = QString::fromLatin1(piece);
        if (origin == Origin::Board)
            text.receive(characters, 0, characters);
        else
            text.append(characters);
    }
    QString copied() {
        QApplication::clipboard()->clear();
        view.selectAll();
        view.copy();
        return QApplication::clipboard()->text();
    }
};

struct ShownCase {
    std::vector<QByteArray> pieces;
    QString display;
    QString copied;
};

void expectShown(const ShownCase& oneCase, Origin origin) {
    Shown shown;
    for (const QByteArray& piece : oneCase.pieces)
        shown.say(origin, piece);
    SCOPED_TRACE(oneCase.pieces.front().toStdString());
    EXPECT_EQ(shown.view.toPlainText(), oneCase.display);
    EXPECT_EQ(shown.copied(), oneCase.copied);
}

TEST(ConsoleView, ShowsWhatTheLoaderSaysAsTheWholeTextWouldLook) {
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
    for (const ShownCase& oneCase : cases)
        expectShown(oneCase, Origin::Loader);
}

TEST(ConsoleView, ShowsWhatTheBoardSaysAsAPlainTerminalDoes) {
    const ShownCase cases[] = {
        {{"one\r\ntwo\n\rthree"}, "one\ntwo\nthree", "one\ntwo\nthree"},
        {{"one\r", "\ntwo"}, "one\ntwo", "one\ntwo"},
        {{"one\ntwo"}, "onetwo", "onetwo"},
        // A board that ends its lines so goes on with a CR alone; another one ends them with it.
        {{"\r\n 10 %\r 20 %"}, "\n 20 %", "\n 20 %"},
        {{"one\rtwo\r"}, "one\ntwo", "one\ntwo"},
        // Colours, a prompt's title, character sets and private modes leave nothing behind, nor does a bell.
        {{"\x1B[0;32mok\x1B[m \x1B]0;root@board\x07$ \x1B(B\x1B[?2004h\x1B[38;5;200mx\x1B[1;4;7m\x07!"},
         "ok $ x!",
         "ok $ x!"},
        {{"\x1B[0;3", "2mok\x1B", "[mend"}, "okend", "okend"},
        // A line being edited: erased by a backspace, in its middle, to its end, as a whole.
        {{"abc\b \bd"}, "abd", "abd"},
        {{"abcd\b\b\x1B[1Px\x1B[@y"}, "abxy", "abxy"},
        {{"long line\b\b\b\b\b\x1B[K!"}, "long!", "long!"},
        {{"ab\x1B[2K\x1B[Gc\x1B[3Cd\x1B[2De"}, "c  ed", "c  ed"},
        {{"shell\x1B[H\x1B[2Jnew"}, "shell\nnew", "shell\nnew"},
        {{"\x1B[99999999C."}, QString(999, ' ') + '.', QString(999, ' ') + '.'},
        // UTF-8, also in pieces; what is none as Latin-1, as boot ROM noise is.
        {{"\xC3", "\xA4\xE2\x82", "\xAC\xE4n\x80\xFF"},
         "\u00E4\u20AC\u00E4n\uFFFD\u00FF",
         "\u00E4\u20AC\u00E4n\uFFFD\u00FF"},
        // A line with characters of several codes is overwritten, and the line above stays.
        {{"above\r\n", "\xF0\x9F\x98\x80 e\xCC\x81 50 %", "\r100 %\x1B[K"}, "above\n100 %", "above\n100 %"},
        {{"\x02\x7F"}, "\u2402\u2421", "\x02\x7F"},
        // The padding that terminals of old needed.
        {{QByteArray("\r\n\0one\r\0\ntwo\r\0t\0\x1B[\0K!", 21)}, "\none\nt!", "\none\nt!"},
        // A title that noise began and nothing ends takes 256 bytes with it and no more.
        {{"\x1B]" + QByteArray(300, 'x')}, QString(44, 'x'), QString(44, 'x')},
    };
    for (const ShownCase& oneCase : cases)
        expectShown(oneCase, Origin::Board);
}

/// What a shell sends that takes the terminal for 80 columns wide, as it does on a serial line.
TEST(ConsoleView, ALongCommandIsEditedInRowsOf80Columns) {
    const QByteArray full = "$ " + QByteArray("12345678 ").repeated(8) + "123456"; // 80 characters
    const ShownCase cases[] = {
        {{full + " \r7 end\r\nout"}, full + "7 end\nout", full + "7 end\nout"},
        {{full, " ", "\r", "7"}, full + "7", full + "7"},
        // Two rows further, and back at the beginning of that row.
        {{full + " \r" + QByteArray(80, 'b') + " \rccc\rd"},
         full + QByteArray(80, 'b') + "dcc",
         full + QByteArray(80, 'b') + "dcc"},
        // Up into the first row, where something is deleted, inserted and erased, and down again.
        {{full + " \rabcde\x1B[A\r#\x1B[P\x1B[2C\x1B[@!\x1B[B\b\b\b\b\b\b\b\bA"},
         "#12!" + full.mid(4) + "Abcde",
         "#12!" + full.mid(4) + "Abcde"},
        {{full + " \rabc\x1B[A\x1B[K\x1B[B\x1B[GA\x1B[K"},
         full.left(3) + QByteArray(77, ' ') + "A",
         full.left(3) + QByteArray(77, ' ') + "A"},
        {{full + " \rabc\x1B[9Ax\x1B[J"}, full.left(3) + "x", full.left(3) + "x"},
        // One of an earlier command, which comes all at once.
        {{full + "7 end\x1B[A\r$>\x1B[BX"}, "$>" + full.mid(2) + "7 Xnd", "$>" + full.mid(2) + "7 Xnd"},
        // Enter in the first row: the shell goes below before it ends the line.
        {{full + " \rabc\x1B[A\r\n\r\nout"}, full + "abc\nout", full + "abc\nout"},
        // The last row that a line can have ends with the line, at a thousand characters.
        {{full + " \r" + QByteArray(915, 'b') + "\r\x1B[30@"},
         full + QByteArray(880, 'b') + QByteArray(30, ' ') + QByteArray(10, 'b'),
         full + QByteArray(880, 'b') + QByteArray(30, ' ') + QByteArray(10, 'b')},
        // No row: a progress that is written over, and what is below is another line.
        {{full + " 10 %\r" + "20 %\x1B[K"}, "20 %", "20 %"},
        {{"above\r\nb\x1B[Ac"}, "above\nbc", "above\nbc"},
    };
    for (const ShownCase& oneCase : cases) {
        ShownCase afterLine = oneCase;
        afterLine.pieces.insert(afterLine.pieces.begin(), "\r\n");
        afterLine.display.prepend('\n');
        afterLine.copied.prepend('\n');
        expectShown(afterLine, Origin::Board);
    }
}

TEST(ConsoleView, TheCaretIsWhereTheBoardsCursorIs) {
    Shown shown;
    const std::pair<const char*, int> steps[] = {{"one\r\n$ command", 13}, {"\b\b", 11}, {"\x1B[3D", 8},
                                                 {"X\x1B[K", 9},           {"\r\n", 10}, {"\x1B[5C", 10}};
    for (const auto& [piece, position] : steps) {
        shown.say(Origin::Board, piece);
        EXPECT_EQ(shown.view.textCursor().position(), position) << piece;
    }
}

TEST(ConsoleView, AnyPiecesEndLikeTheWholeTextAtOnce) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 30; ++round) {
        Shown shown;
        Shown atOnce;
        QByteArray all;
        for (int piece = 0; piece < 120; ++piece) {
            QByteArray added(random() % 8 == 0 ? 900 : 0, 'x');
            const auto length = random() % 40;
            for (unsigned i = 0; i < length; ++i)
                added += "ab\r\n\r\n\x1B[K3;m\b\xC3\xA4"
                         "CAP@"[random() % 20];
            shown.say(Origin::Board, added);
            all += added;
        }
        atOnce.say(Origin::Board, all);
        EXPECT_EQ(shown.view.toPlainText(), atOnce.view.toPlainText()) << "round " << round;
        EXPECT_EQ(shown.copied(), atOnce.copied()) << "round " << round;
        Shown anew;
        anew.view.follow(shown.text.text(), Origin::Anew);
        shown.view.follow(shown.text.text(), Origin::Anew);
        EXPECT_EQ(shown.view.toPlainText(), anew.view.toPlainText()) << "round " << round;
    }
}

TEST(ConsoleView, AnEndlessLineIsBrokenForLayoutOnlyAndComesBackWhole) {
    for (const Origin origin : {Origin::Loader, Origin::Board}) {
        Shown shown;
        for (int i = 0; i < 5000; ++i)
            shown.say(origin, ".");
        EXPECT_EQ(shown.view.blockCount(), 5);
        EXPECT_EQ(shown.copied(), QString(5000, '.'));
    }
}

TEST(ConsoleView, ColoursAreOfTheTextBehindThem) {
    Shown shown;
    shown.say(Origin::Board, "a\x1B[1;31mb\x1B[0mc\r\n");
    shown.say(Origin::Loader, "d");
    QStringList looks;
    for (const int position : {1, 2, 3, 5}) {
        QTextCursor at(shown.view.document());
        at.setPosition(position);
        const QTextCharFormat format = at.charFormat();
        looks += QString("%1%2").arg(format.fontWeight() > QFont::Normal ? "bold " : "",
                                     format.hasProperty(QTextFormat::ForegroundBrush) ? "colour" : "plain");
    }
    EXPECT_EQ(looks.join(", "), "plain, bold colour, plain, plain");
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
        {"an inner", 0, 2, "\b\b\b\b\bword", "an"},
        // The board writes over a part of it: with other characters, with the same ones, with none.
        {"a command", 2, 7, "\b\b\bXYZ and more", "comm"},
        {"\r\n 10 %", 2, 4, "\r 10 % of all", "10 %"},
        {"\r\n 10 %", 2, 4, "\r 19 % of all", "1"},
        {"a command", 2, 7, "\b\b\b\x1B[K", "comm"},
    };
    for (const auto& [before, from, length, after, copied] : selections) {
        for (const bool backward : {false, true}) {
            SCOPED_TRACE((before + ", then " + after).toStdString() + (backward ? ", backward" : ""));
            Shown shown;
            shown.say(Origin::Board, before);
            QTextCursor selection(shown.view.document());
            selection.setPosition(backward ? from + length : from);
            selection.setPosition(backward ? from : from + length, QTextCursor::KeepAnchor);
            shown.view.setTextCursor(selection);
            for (const char character : after)
                shown.say(Origin::Board, QByteArray(1, character));
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
        say(Origin::Board, "line" + QByteArray("\r\n").repeated(100));
        QObject::connect(&view, &zrk::ConsoleView::holdChanged, [this](bool held, bool more) {
            state = more ? "more" : held ? "held" : "follows";
        });
    }
    [[nodiscard]] bool atEnd() const { return bar.value() == bar.maximum(); }
    void expectStands(const std::function<void()>& release) {
        const int before = bar.value();
        say(Origin::Board, "new\r\n");
        EXPECT_EQ(bar.value(), before);
        EXPECT_EQ(state, "more");
        release();
        EXPECT_TRUE(atEnd());
        EXPECT_EQ(state, "follows");
        say(Origin::Board, "newer\r\n");
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
    say(Origin::Board, "new");
    EXPECT_TRUE(view.textCursor().selectedText().startsWith("line"));
    EXPECT_TRUE(atEnd());
    selection.clearSelection();
    view.setTextCursor(selection);
    bar.setValue(bar.maximum());
    say(Origin::Board, "new");
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
    say(Origin::Board, "new\r\n");
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
    say(Origin::Board, QByteArray("x\r\n").repeated(100));
    EXPECT_TRUE(atEnd());
    QTest::mouseRelease(view.viewport(), Qt::RightButton);
}

TEST_F(Reading, AnotherWidthOrAClearGoesThroughNothingThatIsOutOfSight) {
    say(Origin::Board, QByteArray("123456789 ").repeated(30) + "\r\n");
    const QTextBlock longLine = view.document()->lastBlock().previous();
    QApplication::processEvents();
    say(Origin::Board, QByteArray("x\r\n").repeated(100) + QByteArray(300, 'x'));
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

    say(Origin::Board, QByteArray("\r\n").repeated(50'000));
    const QPointer<QTextDocument> old = view.document();
    const qreal tabStop = view.tabStopDistance();
    view.clearView();
    EXPECT_FALSE(old.isNull()) << "it takes its time";
    while (!old.isNull())
        QApplication::processEvents();
    EXPECT_EQ(view.tabStopDistance(), tabStop);
    EXPECT_EQ(view.document()->defaultFont(), view.font());
    say(Origin::Board, "x\ty");
    EXPECT_TRUE(atEnd());
    EXPECT_EQ(copied(), "x\ty");
}

TEST_F(Reading, ASearchEndsWithTheTextThatItGoesThrough) {
    QGroupBox frame;
    QVBoxLayout inFrame(&frame);
    auto* shown = new zrk::ConsoleView(&frame);
    inFrame.addWidget(shown);
    zrk::ConsoleTools tools(shown, &frame, [] {});
    shown->follow(QStringLiteral("x\r\n").repeated(100'000), zrk::TextOrigin::Board);
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
    say(Origin::Board, "Boot one\r\n" + QByteArray("x\r\n").repeated(5000) + "boot two boot\r\n");
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
    say(Origin::Board, "on");
    EXPECT_EQ(view.toPlainText(), "on");
}

} // namespace
