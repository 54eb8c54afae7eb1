#include "app/ConsoleView.h"

#include "support/Rig.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>

#include <random>

namespace {

/// A console text and its view.
struct Shown {
    zrk::ConsoleText text;
    zrk::ConsoleView view;

    Shown() {
        text.onEdit([this](qsizetype removed, const QString& inserted) {
            view.follow(text.text(), removed, inserted.size());
        });
    }
    void replaceEnd(qsizetype removed, const QByteArray& inserted) {
        text.replaceEnd(removed, QString::fromLatin1(inserted));
    }
    QString copied() {
        QApplication::clipboard()->clear();
        view.selectAll();
        view.copy();
        return QApplication::clipboard()->text();
    }
};

TEST(ConsoleView, ShowsEachEditAsTheWholeTextWouldLook) {
    struct Case {
        std::vector<std::pair<qsizetype, QByteArray>> edits; ///< characters removed at the end, then inserted
        QString display;
        QString copied;
    };
    const Case cases[] = {
        {{{0, "one\r\ntwo\r\n"}}, "one\ntwo\n", "one\ntwo\n"},
        {{{0, "one\r"}, {0, "\ntwo"}}, "one\ntwo", "one\ntwo"},
        {{{0, "a\rb"}}, "a\u240Db", "a\rb"},
        {{{0, "a\nb"}}, "a\u240Ab", "a\nb"},
        {{{0, "a\r\n"}, {1, "b"}}, "a\u240Db", "a\rb"},
        {{{0, "a\r\n"}, {1, ""}, {1, ""}, {1, "b"}}, "b", "b"},
        {{{0, "a\r\n"}, {1, "\nb"}}, "a\nb", "a\nb"},
        {{{0, "abc"}, {1, "de"}}, "abde", "abde"},
        {{{0, QByteArray("\0\x02\x1B\x08\x7F\t!", 7)}},
         "\u2400\u2402\u241B\u2408\u2421\t!",
         "\u2400\x02\x1B\x08\x7F\t!"},
        {{{0, "\x80\xE4\xAD"}}, "\uFFFD\u00E4-", "\uFFFD\u00E4-"},
        {{{0, "gone\r\n"}, {6, "new"}}, "new", "new"},
    };
    for (const Case& oneCase : cases) {
        Shown shown;
        for (const auto& [removed, inserted] : oneCase.edits)
            shown.replaceEnd(removed, inserted);
        EXPECT_EQ(shown.view.toPlainText(), oneCase.display);
        EXPECT_EQ(shown.copied(), oneCase.copied);
    }
}

TEST(ConsoleView, AnyOrderOfEditsEndsLikeTheWholeTextAtOnce) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 30; ++round) {
        Shown shown;
        for (int edit = 0; edit < 120; ++edit) {
            QByteArray added(random() % 8 == 0 ? 900 : 0, 'x');
            const auto length = random() % 40;
            for (unsigned i = 0; i < length; ++i)
                added += "ab\r\n\r\n\x1B"[random() % 7];
            shown.replaceEnd(shown.text.text().isEmpty() ? 0 : random() % 2, added);
        }
        Shown atOnce;
        atOnce.text.append(shown.text.text());
        // Where a long line is broken may depend on its history; what it says may not.
        EXPECT_EQ(shown.copied(), atOnce.copied()) << "round " << round;
    }
}

TEST(ConsoleView, AnEndlessLineIsBrokenForLayoutOnlyAndComesBackWhole) {
    Shown shown;
    for (int i = 0; i < 5000; ++i)
        shown.replaceEnd(0, ".");
    EXPECT_EQ(shown.view.blockCount(), 5);
    EXPECT_EQ(shown.copied(), QString(5000, '.'));
    for (int i = 0; i < 1500; ++i)
        shown.replaceEnd(1, "");
    EXPECT_EQ(shown.view.blockCount(), 4);
    EXPECT_EQ(shown.copied(), QString(3500, '.'));
}

TEST(ConsoleView, ViewAndCaretGoToTheEndAndASelectionLastsUntilNewText) {
    Shown shown;
    shown.view.resize(400, 120);
    shown.view.show();
    shown.replaceEnd(0, "line" + QByteArray("\r\n").repeated(100));
    QScrollBar& bar = *shown.view.verticalScrollBar();
    EXPECT_GT(bar.maximum(), 50);
    EXPECT_EQ(bar.value(), bar.maximum());

    QTextCursor selection(shown.view.document());
    selection.setPosition(4, QTextCursor::KeepAnchor);
    shown.view.setTextCursor(selection);
    QApplication::processEvents();
    EXPECT_EQ(shown.view.textCursor().selectedText(), "line");
    EXPECT_LT(bar.value(), bar.maximum());
    shown.replaceEnd(0, "new");
    EXPECT_FALSE(shown.view.textCursor().hasSelection());
    EXPECT_TRUE(shown.view.textCursor().atEnd());
    EXPECT_EQ(bar.value(), bar.maximum());
    const QFontMetrics metrics(shown.view.font());
    EXPECT_EQ(metrics.horizontalAdvance("iii"), metrics.horizontalAdvance("WWW"));
}

} // namespace
