#pragma once

#include "app/terminal/SequenceGuard.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

struct VTerm;
struct VTermScreen;

namespace zrk {

struct TerminalPress;

struct GridSize {
    int rows = 24;
    int columns = 80;
    friend bool operator==(const GridSize& a, const GridSize& b) {
        return a.rows == b.rows && a.columns == b.columns;
    }
};

/// One place of the screen.
struct ScreenCell {
    static constexpr std::uint32_t kDefault = 0xFF000000; ///< the default colour; the view chooses it

    std::array<char32_t, 3> characters{}; ///< a character and its accents; 0 after the last
    std::uint32_t foreground = kDefault;  ///< 0xRRGGBB
    std::uint32_t background = kDefault;
    std::uint8_t width = 1; ///< 2: takes the next place, too, whose width is 0
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool reverse = false;

    [[nodiscard]] bool isBlank() const;
    [[nodiscard]] QString text() const; ///< a space for a place without a character
};
using ScreenLine = std::vector<ScreenCell>;

struct ScreenCursor {
    enum class Shape { Block, Underline, Bar };
    int row = 0;
    int column = 0;
    bool isVisible = true;
    Shape shape = Shape::Block;
};

/// A terminal: bytes of the board become cells, keys become bytes for the board. Programs that draw, such as
/// an editor, have a screen of their own beside the lines. Lines that leave the top are kept.
///
/// A line keeps its number until it is dropped: firstLine() is the oldest one, gridTop() is the screen's
/// first row, endLine() is after its last.
class TerminalScreen {
  public:
    static constexpr std::size_t kMostKeptLines = 10'000;

    /// `send` gets bytes for the board: keys, and the terminal's answers to the board's questions.
    explicit TerminalScreen(std::function<void(const QByteArray&)> send);
    ~TerminalScreen();
    TerminalScreen(const TerminalScreen&) = delete;
    TerminalScreen& operator=(const TerminalScreen&) = delete;

    /// Forgets everything but the size.
    void reset();

    enum class Answers { Send, Drop };
    /// Takes bytes of the board, whose sequences and characters may be cut anywhere.
    void feed(const QByteArray& bytes, Answers answers);

    /// Shows a text of the loader: control characters other than line ends are signs.
    void print(const QString& text);

    void resize(GridSize size);
    [[nodiscard]] GridSize size() const { return m_size; }

    [[nodiscard]] qsizetype firstLine() const { return m_droppedLines; }
    [[nodiscard]] qsizetype gridTop() const { return m_droppedLines + qsizetype(m_keptLines.size()); }
    [[nodiscard]] qsizetype endLine() const { return gridTop() + m_size.rows; }

    /// Returns a line's cells, of a kept line without the blank ones at its end; none outside the lines.
    [[nodiscard]] ScreenLine line(qsizetype number) const;

    [[nodiscard]] const ScreenCursor& cursor() const { return m_cursor; }

    /// Types a key.
    void type(const TerminalPress& press);
    /// Returns the bytes of a text that is pasted: between marks, if the program on the board asked for them.
    [[nodiscard]] QByteArray pasted(const QString& text);

    /// Returns the rows of the screen that have changed since the last call; `scrolled`: all lines have.
    struct Damage {
        int firstRow = 0;
        int endRow = 0;
        bool scrolled = false;
    };
    [[nodiscard]] Damage takeDamage();

  private:
    friend struct TerminalCallbacks;
    struct Free {
        void operator()(VTerm* terminal) const;
    };

    void begin();
    void write(const QByteArray& bytes);
    void typeText(const QString& text);
    void noteDamage(int firstRow, int endRow);
    [[nodiscard]] QByteArray takeOutput();

    std::function<void(const QByteArray&)> m_send;
    std::unique_ptr<VTerm, Free> m_terminal;
    VTermScreen* m_screen = nullptr; ///< of the terminal
    GridSize m_size;
    ScreenCursor m_cursor;
    std::deque<ScreenLine> m_keptLines;
    qsizetype m_droppedLines = 0;
    Damage m_damage;
    SequenceGuard m_guard;
    QByteArray m_output;
};

/// Returns the text of a line from one column to another, without the blanks at its end.
[[nodiscard]] QString textOf(const ScreenLine& line, int from, int end);

} // namespace zrk
