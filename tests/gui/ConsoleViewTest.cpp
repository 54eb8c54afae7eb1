#include "app/ConsoleView.h"

#include "app/ConsoleLog.h"
#include "gui/ShownConsole.h"
#include "gui/WindowRig.h"

#include <QApplication>
#include <QClipboard>

#include <random>

namespace {

using zrktest::ShownConsole;

using namespace std::chrono_literals;

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
        ShownConsole shown;
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

    /// Sends it in one read.
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
        // Half of a line end is removed, then the other half and the character before it.
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

TEST_F(ConsoleWindow, UnfinishedOutputOfABoardDoesNotReachTheNext) {
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
        ShownConsole shown;
        for (int edit = 0; edit < 120; ++edit) {
            QString added(random() % 8 == 0 ? 990 : 0, 'x');
            const auto length = random() % 20;
            for (unsigned i = 0; i < length; ++i)
                added += "ab\r\n\r\n\r\n"[random() % 8];
            const qsizetype removed = random() % 3 == 0 ? static_cast<qsizetype>(random() % 30) : 0;
            shown.text.replaceEnd(std::min(removed, shown.text.text().size()), added);
        }
        ShownConsole whole;
        whole.view.showAnew(shown.text.text());
        EXPECT_EQ(shown.view.toPlainText(), whole.view.toPlainText()) << "round " << round;
        EXPECT_EQ(shown.copied(), whole.copied()) << "round " << round;
    }
}

TEST(ConsoleView, AnEndlessLineIsBrokenForLayoutOnlyAndComesBackWhole) {
    ShownConsole shown;
    for (int i = 0; i < 5000; ++i)
        shown.say(".");
    EXPECT_EQ(shown.view.blockCount(), 5);
    EXPECT_EQ(shown.copied(), QString(5000, '.'));
}

TEST(ConsoleView, AClearedViewHasNothingOfTheTextBefore) {
    ShownConsole shown;
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
            ShownConsole shown;
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

} // namespace
