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
    QString copied() {
        QApplication::clipboard()->clear();
        view.selectAll();
        view.copy();
        return QApplication::clipboard()->text();
    }
};

QString latin1(const QByteArray& bytes) {
    return QString::fromLatin1(bytes);
}

TEST(ConsoleView, ShowsEachEditAsTheWholeTextWouldLook) {
    struct Edit {
        qsizetype removed;
        QByteArray inserted;
    };
    struct Case {
        std::vector<Edit> edits;
        QString display;
        QString copied;
    };
    const std::vector<Case> cases{
        {{{0, "one\r\ntwo\r\n"}}, "one\ntwo\n", "one\ntwo\n"},
        {{{0, "one\r"}, {0, "\ntwo"}}, "one\ntwo", "one\ntwo"},
        {{{0, "a\rb"}}, QString::fromUtf8("a\u240Db"), "a\rb"},
        {{{0, "a\nb"}}, QString::fromUtf8("a\u240Ab"), "a\nb"},
        {{{0, "a\r\n"}, {1, "b"}}, QString::fromUtf8("a\u240Db"), "a\rb"},
        {{{0, "a\r\n"}, {1, ""}, {1, ""}, {1, "b"}}, "b", "b"},
        {{{0, "a\r\n"}, {1, "\nb"}}, "a\nb", "a\nb"},
        {{{0, "abc"}, {1, "de"}}, "abde", "abde"},
        {{{0, QByteArray("\0\x02\x1B\x08\x7F\t!", 7)}},
         QString::fromUtf8("\u2400\u2402\u241B\u2408\u2421\t!"),
         QString::fromUtf8("\u2400\x02\x1B\x08\x7F\t!")},
        {{{0, "\x80\xE4\xAD"}}, QString::fromUtf8("\uFFFD\u00E4-"), QString::fromUtf8("\uFFFD\u00E4-")},
        {{{0, "gone\r\n"}, {6, "new"}}, "new", "new"},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        Shown shown;
        for (const Edit& edit : cases[i].edits)
            shown.text.replaceEnd(edit.removed, latin1(edit.inserted));
        EXPECT_EQ(shown.view.toPlainText(), cases[i].display) << "case " << i;
        EXPECT_EQ(shown.copied(), cases[i].copied) << "case " << i;
    }
}

TEST(ConsoleView, AnyOrderOfEditsEndsLikeTheWholeTextAtOnce) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 30; ++round) {
        Shown shown;
        for (int edit = 0; edit < 120; ++edit) {
            QByteArray added;
            const auto length = random() % 40;
            for (unsigned i = 0; i < length; ++i)
                added += "ab\r\n\r\n\x1B"[random() % 7];
            if (random() % 8 == 0)
                added += QByteArray(900, 'x');
            const qsizetype removed = shown.text.text().isEmpty() ? 0 : static_cast<qsizetype>(random() % 2);
            shown.text.replaceEnd(removed, latin1(added));
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
        shown.text.append(QStringLiteral("."));
    EXPECT_EQ(shown.view.blockCount(), 5);
    EXPECT_EQ(shown.copied(), QString(5000, '.'));
    for (int i = 0; i < 1500; ++i)
        shown.text.replaceEnd(1, QString());
    EXPECT_EQ(shown.view.blockCount(), 4);
    EXPECT_EQ(shown.copied(), QString(3500, '.'));
}

TEST(ConsoleView, ViewAndCaretGoToTheEndAndASelectionLastsUntilNewText) {
    Shown shown;
    shown.view.resize(400, 120);
    shown.view.show();
    QString lines;
    for (int i = 0; i < 100; ++i)
        lines += QStringLiteral("line %1\r\n").arg(i);
    shown.text.append(lines);
    QScrollBar& bar = *shown.view.verticalScrollBar();
    EXPECT_GT(bar.maximum(), 50);
    EXPECT_EQ(bar.value(), bar.maximum());

    QTextCursor selection(shown.view.document());
    selection.setPosition(4, QTextCursor::KeepAnchor);
    shown.view.setTextCursor(selection);
    QApplication::processEvents();
    EXPECT_EQ(shown.view.textCursor().selectedText(), "line");
    EXPECT_LT(bar.value(), bar.maximum());
    shown.text.append(QStringLiteral("new"));
    EXPECT_FALSE(shown.view.textCursor().hasSelection());
    EXPECT_TRUE(shown.view.textCursor().atEnd());
    EXPECT_EQ(bar.value(), bar.maximum());
    EXPECT_TRUE(shown.view.toPlainText().endsWith("line 99\nnew"));
    const QFontMetrics metrics(shown.view.font());
    EXPECT_EQ(metrics.horizontalAdvance(QStringLiteral("iii")),
              metrics.horizontalAdvance(QStringLiteral("WWW")));
}

} // namespace
