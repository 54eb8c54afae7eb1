#include "app/terminal/TerminalScreen.h"

#include "app/terminal/TerminalPress.h"
#include "support/Rig.h"

#include <QStringList>

#include <utility>
#include <vector>

namespace {

using Answers = zrk::TerminalScreen::Answers;

struct Terminal : ::testing::Test {
    QByteArray sent;
    zrk::TerminalScreen screen{[this](const QByteArray& bytes) { sent += bytes; }};

    void feed(const QByteArray& bytes) { screen.feed(bytes, Answers::Send); }
    [[nodiscard]] QString row(qsizetype line) const { return zrk::textOf(screen.line(line), 0, 1000); }

    /// Returns the lines from `from` on, without the blank ones at the end; a change of the looks as "{...}".
    [[nodiscard]] QString lines(qsizetype from) const {
        QStringList all;
        for (qsizetype number = from; number < screen.endLine(); ++number) {
            QString shown;
            QString before;
            for (const zrk::ScreenCell& cell : screen.line(number)) {
                const QString now = looks(cell);
                if (now != before)
                    shown += '{' + now + '}';
                before = now;
                shown += cell.text();
            }
            while (shown.endsWith(' '))
                shown.chop(1);
            all += shown.endsWith("{}") ? shown.chopped(2) : shown;
        }
        while (!all.isEmpty() && all.last().isEmpty())
            all.removeLast();
        return all.join('|');
    }

  private:
    [[nodiscard]] static QString looks(const zrk::ScreenCell& cell) {
        QString all;
        const std::pair<bool, const char*> flags[]{{cell.bold, "b"},
                                                   {cell.italic, "i"},
                                                   {cell.underline, "u"},
                                                   {cell.strike, "s"},
                                                   {cell.reverse, "r"}};
        for (const auto& [isSet, name] : flags)
            all += isSet ? name : "";
        const auto color = [](const char* name, std::uint32_t rgb) {
            return rgb == zrk::ScreenCell::kDefault ? QString() : name + QString::number(rgb, 16);
        };
        return all + color("f", cell.foreground) + color("g", cell.background);
    }
};

TEST_F(Terminal, ASequenceDoesWhatATerminalDoesWhereverItIsCut) {
    struct Row {
        QByteArray bytes;
        const char* lines;
        int row = 0;
        int column = 0;
    };
    const std::vector<Row> table{
        {"one\r\ntwo", "one|two", 1, 3},
        {"one\rO", "One", 0, 1},
        {"ab\b\bX", "Xb", 0, 1},
        {"\rloading  10 %\rloading 100 %", "loading 100 %", 0, 13},
        {"a\tb", "a       b", 0, 9},
        {"\x1B[3;5Hx\x1B[Hy", "y||    x", 0, 1},
        {"abcdef\x1B[3D\x1B[K", "abc", 0, 3},
        {"one\r\ntwo\x1B[2J\x1B[H!", "!", 0, 1},
        {"abc\r\x1B[@x\x1B[P", "xbc", 0, 1},
        {"1\r\n2\r\n3\x1B[2;1H\x1B[L\x1B[M\x1B[M", "1|3", 1, 0},
        {"\x1B[2;3r\x1B[2;1Ha\r\nb\r\nc\x1B[r", "|b|c", 0, 0},
        {"\x1B[1mbold\x1B[0m plain", "{b}bold{} plain", 0, 10},
        {"\x1B[31mred\x1B[1mbright\x1B[m.", "{fd04040}red{bfef2929}bright{}.", 0, 10},
        {"\x1B[44;4mx\x1B[m", "{ug3f74c4}x", 0, 1},
        {"\x1B[7mx\x1B[27my\x1B[3;9mz\x1B[m", "{r}x{}y{is}z", 0, 3},
        {"\x1B[38;5;196mx\x1B[48;5;21my\x1B[m", "{fff0000}x{fff0000gff}y", 0, 2},
        {"\x1B[38;2;1;2;3mx\x1B[m", "{f10203}x", 0, 1},
        {"\x1B[94mx\x1B[39my", "{f729fcf}x{}y", 0, 2},
        {"gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x99\x82.", "gr\u00FC\u00DF \u20AC \U0001F642.", 0, 10},
        {"e\xCC\x81", "e\u0301", 0, 1},
        {"\xE4\xBD\xA0|", "\u4F60|", 0, 3},
        {"\xFFx", "\uFFFDx", 0, 2},
        {"\r\xC2\x80\x1B[K", "\uFFFD", 0, 1},
        {"\x1B(0lqk\x1B(B", "\u250C\u2500\u2510", 0, 3},
        {"\x0Eq\x0Fq", "qq", 0, 2},
        {"one\x1B[?1049h\x1B[Htwo\x1B[?1049l", "one", 0, 3},
        {"one\x1B[?1049h\x1B[H\x1B[2Jtwo", "two", 0, 3},
        {"\x1B[?25h\x1B[20h\x1B[20lx", "x", 0, 1},
        {QByteArray(81, 'x'),
         "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx|x", 1, 1},
        {"\x1B[?7l" + QByteArray(81, 'x') + "y",
         "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxy", 0, 79},
        // What a library must not see, and what is left of it.
        {"a\x1B[" + QByteArray("1;").repeated(40) + "1mb", "ab", 0, 2},
        {"a\x1B[99999999999999999999999Hb", "ab", 0, 2},
        {"a\x1B[" + QByteArray(5000, '1') + "Hb", "ab", 0, 2},
        {"a\x1B]0;title\x07"
         "b\x1B]2;title\x1B\\c\x1BPq\x1B\\d",
         "abcd", 0, 4},
        {"a\x1B]0;never ended\r\nb", "a|b", 1, 1},
        {"a\x1B[3\rCb\x1B[3\x18"
         "c",
         "a  bc", 0, 5},
        {"\x1B[3\xC3\xBC", "\u00FC", 0, 1},
    };
    for (const Row& row : table) {
        for (const bool oneByOne : {false, true}) {
            screen.reset();
            for (qsizetype i = 0; oneByOne && i < row.bytes.size(); ++i)
                feed(row.bytes.mid(i, 1));
            if (!oneByOne)
                feed(row.bytes);
            EXPECT_EQ(lines(screen.gridTop()), QString::fromUtf8(row.lines))
                << row.bytes.toPercentEncoding().data();
            EXPECT_EQ(std::pair(screen.cursor().row, screen.cursor().column), std::pair(row.row, row.column))
                << row.bytes.toPercentEncoding().data();
        }
    }
    EXPECT_EQ(sent, "");
}

TEST_F(Terminal, AnswersTheBoardOnlyWhereThatIsWanted) {
    const QByteArray questions = "\x1B[999;999H\x1B[6n\x1B[5n";
    screen.feed(questions, Answers::Drop);
    EXPECT_EQ(sent, "");
    feed(questions);
    EXPECT_EQ(sent, "\x1B[24;80R\x1B[0n");
    screen.resize({40, 100});
    sent.clear();
    feed(questions);
    EXPECT_EQ(sent, "\x1B[40;100R\x1B[0n");
}

TEST_F(Terminal, KeysAreWhatTheProgramOnTheBoardAsksFor) {
    struct Key {
        int key;
        Qt::KeyboardModifiers modifiers;
        QString text;
        QByteArray bytes;
        QByteArray inApplicationMode = {}; ///< where it is another
    };
    const Qt::KeyboardModifiers none = Qt::NoModifier;
    const Key keys[]{
        {Qt::Key_A, Qt::ShiftModifier, "A", "A"},
        {Qt::Key_Adiaeresis, none, QString(QChar(0xE4)), "\xC3\xA4"},
        {0, none, QString::fromUcs4(U"\U0001F642"), "\xF0\x9F\x99\x82"},
        {Qt::Key_Return, none, "\r", "\r"},
        {Qt::Key_Enter, Qt::KeypadModifier | Qt::ShiftModifier, "\r", "\r"},
        {Qt::Key_Backspace, none, "\b", "\x7F"},
        {Qt::Key_Backspace, Qt::AltModifier, "\b", "\x1B\x7F"},
        {Qt::Key_Escape, none, "\x1B", "\x1B"},
        {Qt::Key_Tab, none, "\t", "\t"},
        {Qt::Key_Tab, Qt::ControlModifier, "\t", ""},
        {Qt::Key_Backtab, Qt::ShiftModifier, "", ""},
        {Qt::Key_C, Qt::ControlModifier, "\x03", "\x03"},
        {Qt::Key_I, Qt::ControlModifier, "\t", "\t"},
        {Qt::Key_M, Qt::ControlModifier, "\r", "\r"},
        {Qt::Key_BracketLeft, Qt::ControlModifier, "\x1B", "\x1B"},
        {Qt::Key_Space, Qt::ControlModifier, " ", QByteArray(1, 0)},
        {Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier, "\x03", ""},
        {Qt::Key_F, Qt::AltModifier, "f",
         "\x1B"
         "f"},
        {Qt::Key_Adiaeresis, Qt::AltModifier, QString(QChar(0xE4)), "\x1B\xC3\xA4"},
        {Qt::Key_F4, Qt::AltModifier, "", ""},
        {Qt::Key_F, Qt::MetaModifier, "f", ""},
        {Qt::Key_Q, Qt::ControlModifier | Qt::AltModifier, "@", "@"}, // AltGr on some systems
        {Qt::Key_Up, none, "", "\x1B[A", "\x1BOA"},
        {Qt::Key_Left, none, "", "\x1B[D", "\x1BOD"},
        {Qt::Key_Home, Qt::KeypadModifier, "", "\x1B[H", "\x1BOH"},
        {Qt::Key_Right, Qt::ControlModifier, "", "\x1B[1;5C"},
        {Qt::Key_PageDown, none, "", "\x1B[6~"},
        {Qt::Key_Delete, none, "\x7F", "\x1B[3~"},
        {Qt::Key_F1, none, "", "\x1BOP"},
        {Qt::Key_F10, none, "", "\x1B[21~"},
        {Qt::Key_F5, Qt::ShiftModifier, "", "\x1B[15;2~"},
    };
    for (const bool application : {false, true}) {
        feed(application ? "\x1B[?1h" : "");
        for (const Key& key : keys) {
            sent.clear();
            screen.type(zrk::terminalPress(key.key, key.modifiers, key.text));
            const bool isOther = application && !key.inApplicationMode.isEmpty();
            EXPECT_EQ(sent.toPercentEncoding(),
                      (isOther ? key.inApplicationMode : key.bytes).toPercentEncoding())
                << key.key << " with " << key.modifiers.toInt();
        }
    }
}

TEST_F(Terminal, APasteIsMarkedForAProgramThatAsksAndCannotEndItsMarks) {
    const QString text = "a\r\n\u00E4\n\tb\x1B[201~rm\x03";
    const QByteArray bytes = "a\r\xC3\xA4\r\tb[201~rm";
    EXPECT_EQ(screen.pasted(text), bytes);
    feed("\x1B[?2004h");
    EXPECT_EQ(screen.pasted(text), "\x1B[200~" + bytes + "\x1B[201~");
}

TEST_F(Terminal, KeepsTheLinesThatLeaveTheTopUpToALimitAndBringsThemBack) {
    const int most = static_cast<int>(zrk::TerminalScreen::kMostKeptLines);
    for (int i = 0; i < most + 123; ++i)
        feed("\x1B[32mline " + QByteArray::number(i) + "\r\n");
    EXPECT_EQ(screen.gridTop() - screen.firstLine(), most);
    EXPECT_EQ(row(screen.firstLine()), "line " + QString::number(screen.firstLine()));
    EXPECT_EQ(row(screen.gridTop()), "line " + QString::number(screen.gridTop()));
    EXPECT_TRUE(screen.line(screen.firstLine() - 1).empty());
    EXPECT_TRUE(screen.line(screen.endLine()).empty());

    const qsizetype top = screen.gridTop();
    const QString before = lines(top - 6);
    screen.resize({30, 80});
    EXPECT_EQ(screen.gridTop(), top - 6);
    EXPECT_EQ(lines(screen.gridTop()), before);
    screen.resize({24, 90});
    EXPECT_EQ(screen.gridTop(), top);
    EXPECT_EQ(lines(screen.gridTop() - 6), before);

    feed("\x1B[?1049h" + QByteArray("x\r\n").repeated(100));
    EXPECT_EQ(screen.gridTop(), top) << "what a program draws is not kept";
    screen.reset();
    EXPECT_EQ(screen.endLine(), 24);
    EXPECT_EQ(lines(0), "");
    EXPECT_EQ(screen.size().columns, 90);

    feed(QByteArray(88, 'x') + "\xE4\xBD\xA0" + QByteArray("\r\n").repeated(40));
    screen.resize({60, 89}); // the wide character has no room any more
    EXPECT_EQ(row(0), QString(88, 'x'));
}

TEST_F(Terminal, TheLoadersLinesAreWholeWhateverTheBoardLeftOpen) {
    for (const char* open : {"\x1B[3", "\x1B]0;tit", "\xC3", "\x1B(0\x0E\x1B[41m"}) {
        screen.reset();
        feed("a\r\n" + QByteArray(open));
        screen.print("\r\n--- q\x1B\u00E4 ---\r\n");
        EXPECT_EQ(lines(0).section('|', 2), QString::fromUtf8("--- q\u241B\u00E4 ---")) << open;
    }
}

TEST_F(Terminal, ReportsWhatHasChanged) {
    (void)screen.takeDamage();
    feed("\x1B[5;1Hx");
    auto damage = screen.takeDamage();
    EXPECT_TRUE(damage.firstRow <= 4 && damage.endRow == 5 && !damage.scrolled);
    EXPECT_EQ(screen.takeDamage().endRow, 0);
    feed("\x1B[24;1H\r\n");
    EXPECT_TRUE(screen.takeDamage().scrolled);
    feed("\x1B[?25l");
    damage = screen.takeDamage();
    EXPECT_TRUE(damage.firstRow <= 23 && damage.endRow == 24);
    EXPECT_FALSE(screen.cursor().isVisible);
    feed("\x1B[?25h\x1B[4 q");
    EXPECT_EQ(screen.cursor().shape, zrk::ScreenCursor::Shape::Underline);
}

} // namespace
