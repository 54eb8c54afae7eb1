#include "app/terminal/TerminalScreen.h"

#include "app/ConsoleDisplay.h"
#include "app/terminal/TerminalCells.h"
#include "app/terminal/TerminalPress.h"

#include <QList>

#include <algorithm>
#include <utility>
#include <vterm.h>

namespace zrk {
namespace {

constexpr ushort kFirstPastable = 0x20;
constexpr uint32_t kEscape = 0x1B;

TerminalScreen& self(void* user) {
    return *static_cast<TerminalScreen*>(user);
}

VTermModifier modifiersOf(Qt::KeyboardModifiers modifiers) {
    int all = VTERM_MOD_NONE;
    all |= modifiers.testFlag(Qt::ShiftModifier) ? VTERM_MOD_SHIFT : 0;
    all |= modifiers.testFlag(Qt::AltModifier) ? VTERM_MOD_ALT : 0;
    all |= modifiers.testFlag(Qt::ControlModifier) ? VTERM_MOD_CTRL : 0;
    return static_cast<VTermModifier>(all);
}

} // namespace

/// The library's callbacks.
struct TerminalCallbacks {
    static int damage(VTermRect rect, void* user) {
        self(user).noteDamage(rect.start_row, rect.end_row);
        return 1;
    }

    static int moveCursor(VTermPos to, VTermPos from, int /*visible*/, void* user) {
        TerminalScreen& screen = self(user);
        screen.m_cursor.row = to.row;
        screen.m_cursor.column = to.col;
        screen.noteDamage(from.row, from.row + 1);
        screen.noteDamage(to.row, to.row + 1);
        return 1;
    }

    static int setProperty(VTermProp property, VTermValue* value, void* user) {
        TerminalScreen& screen = self(user);
        if (property == VTERM_PROP_CURSORVISIBLE)
            screen.m_cursor.isVisible = value->boolean != 0;
        else if (property == VTERM_PROP_CURSORSHAPE)
            screen.m_cursor.shape =
                value->number == VTERM_PROP_CURSORSHAPE_UNDERLINE  ? ScreenCursor::Shape::Underline
                : value->number == VTERM_PROP_CURSORSHAPE_BAR_LEFT ? ScreenCursor::Shape::Bar
                                                                   : ScreenCursor::Shape::Block;
        screen.noteDamage(screen.m_cursor.row, screen.m_cursor.row + 1);
        return 1;
    }

    static int keepLine(int columns, const VTermScreenCell* cells, void* user) {
        TerminalScreen& screen = self(user);
        screen.m_keptLines.push_back(keptLine(screen.m_screen, cells, columns));
        if (screen.m_keptLines.size() > TerminalScreen::kMostKeptLines) {
            screen.m_keptLines.pop_front();
            ++screen.m_droppedLines;
        }
        screen.m_damage.scrolled = true;
        return 1;
    }

    static int returnLine(int columns, VTermScreenCell* cells, void* user) {
        TerminalScreen& screen = self(user);
        if (screen.m_keptLines.empty())
            return 0;
        fillCells(cells, columns, screen.m_keptLines.back());
        screen.m_keptLines.pop_back();
        screen.m_damage.scrolled = true;
        return 1;
    }

    static void output(const char* bytes, size_t count, void* user) {
        self(user).m_output.append(bytes, static_cast<qsizetype>(count));
    }

    static const VTermScreenCallbacks& all() {
        static const VTermScreenCallbacks callbacks = [] {
            VTermScreenCallbacks each{};
            each.damage = damage;
            each.movecursor = moveCursor;
            each.settermprop = setProperty;
            each.sb_pushline = keepLine;
            each.sb_popline = returnLine;
            return each;
        }();
        return callbacks;
    }
};

void TerminalScreen::Free::operator()(VTerm* terminal) const {
    vterm_free(terminal);
}

TerminalScreen::TerminalScreen(std::function<void(const QByteArray&)> send) : m_send(std::move(send)) {
    begin();
}

TerminalScreen::~TerminalScreen() = default;

void TerminalScreen::begin() {
    m_terminal.reset(vterm_new(m_size.rows, m_size.columns));
    VTerm* terminal = m_terminal.get();
    vterm_set_utf8(terminal, 1);
    vterm_output_set_callback(terminal, TerminalCallbacks::output, this);
    setColors(vterm_obtain_state(terminal));
    m_screen = vterm_obtain_screen(terminal);
    vterm_screen_set_callbacks(m_screen, &TerminalCallbacks::all(), this);
    vterm_screen_enable_altscreen(m_screen, 1);
    vterm_screen_set_damage_merge(m_screen, VTERM_DAMAGE_SCREEN);
    vterm_screen_reset(m_screen, 1);
    m_guard = {};
    m_output.clear();
}

void TerminalScreen::reset() {
    m_cursor = {};
    m_keptLines.clear();
    m_droppedLines = 0;
    begin(); // a reset of the library keeps a sequence that is not complete
    m_damage.scrolled = true;
}

void TerminalScreen::write(const QByteArray& bytes) {
    constexpr qsizetype kPiece = 4096; // the library takes four times that from the stack
    for (qsizetype begin = 0; begin < bytes.size(); begin += kPiece) {
        const auto size = static_cast<size_t>(std::min(kPiece, bytes.size() - begin));
        (void)vterm_input_write(m_terminal.get(), bytes.constData() + begin, size);
    }
    vterm_screen_flush_damage(m_screen);
}

void TerminalScreen::feed(const QByteArray& bytes, Answers answers) {
    write(m_guard.pass(bytes));
    const QByteArray answered = takeOutput();
    if (answers == Answers::Send && !answered.isEmpty())
        m_send(answered);
}

void TerminalScreen::print(const QString& text) {
    QString shown = text;
    for (QChar& character : shown) {
        if (character != QLatin1Char('\r') && character != QLatin1Char('\n'))
            character = visibleSign(character);
    }
    // Ends what the board has left open: a sequence, another character set, a colour.
    m_guard = {};
    write("\x1B(B\x0F\x1B[m" + shown.toUtf8());
}

void TerminalScreen::resize(GridSize size) {
    if (size == m_size)
        return;
    m_size = size;
    vterm_set_size(m_terminal.get(), size.rows, size.columns);
    vterm_screen_flush_damage(m_screen);
    m_damage.scrolled = true;
}

ScreenLine TerminalScreen::line(qsizetype number) const {
    if (number < firstLine() || number >= endLine())
        return {};
    if (number < gridTop())
        return m_keptLines[static_cast<std::size_t>(number - firstLine())];
    return gridLine(m_screen, static_cast<int>(number - gridTop()), m_size.columns);
}

void TerminalScreen::type(const TerminalPress& press) {
    if (press.special != 0) {
        vterm_keyboard_key(m_terminal.get(), static_cast<VTermKey>(press.special),
                           modifiersOf(press.modifiers));
    } else {
        if (press.followsEscape)
            vterm_keyboard_unichar(m_terminal.get(), kEscape, VTERM_MOD_NONE);
        typeText(press.text);
    }
    // At once: an ESC alone is another key.
    if (const QByteArray typed = takeOutput(); !typed.isEmpty())
        m_send(typed);
}

void TerminalScreen::typeText(const QString& text) {
    for (const uint character : text.toUcs4())
        vterm_keyboard_unichar(m_terminal.get(), character, VTERM_MOD_NONE);
}

QByteArray TerminalScreen::pasted(const QString& text) {
    QString typed = text;
    typed.replace(QLatin1String("\r\n"), QLatin1String("\r"));
    typed.replace(QLatin1Char('\n'), QLatin1Char('\r'));
    // An ESC in a foreign text could end the marks, and what follows would be commands.
    typed.removeIf([](QChar c) {
        return c.unicode() < kFirstPastable && c != QLatin1Char('\r') && c != QLatin1Char('\t');
    });
    vterm_keyboard_start_paste(m_terminal.get());
    typeText(typed);
    vterm_keyboard_end_paste(m_terminal.get());
    return takeOutput();
}

void TerminalScreen::noteDamage(int firstRow, int endRow) {
    const bool isFirst = m_damage.firstRow == m_damage.endRow;
    m_damage.firstRow = isFirst ? firstRow : std::min(m_damage.firstRow, firstRow);
    m_damage.endRow = isFirst ? endRow : std::max(m_damage.endRow, endRow);
}

TerminalScreen::Damage TerminalScreen::takeDamage() {
    return std::exchange(m_damage, {});
}

QByteArray TerminalScreen::takeOutput() {
    return std::exchange(m_output, {});
}

} // namespace zrk
