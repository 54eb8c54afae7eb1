#pragma once

#include "app/ConsoleStyle.h"

#include <QChar>

#include <algorithm>
#include <vector>

namespace zrk {

/// The line that a terminal's cursor is in: characters, and where the next one goes. It may be as long as a
/// board likes. A shell that edits a command takes the terminal for 80 columns wide, as a serial line tells
/// no other size, and goes on below behind the 80th; the line has rows then, and what the board says of the
/// cursor is meant within its row. That it does so shows only in how it moves the cursor.
class TerminalLine {
  public:
    /// The cursor goes no further on its own.
    static constexpr std::size_t kLongest = 1000;
    static constexpr std::size_t kRowLength = 80;

    struct Cell {
        QChar character;
        ConsoleStyle style;
    };

    [[nodiscard]] const std::vector<Cell>& cells() const { return m_cells; }
    [[nodiscard]] std::size_t size() const { return m_cells.size(); }
    [[nodiscard]] std::size_t column() const { return m_column; }

    /// How many cells from the beginning are what they were at the last noteSeen().
    [[nodiscard]] std::size_t unchanged() const { return m_unchanged; }
    void noteSeen() { m_unchanged = m_cells.size(); }

    /// Writes over what is there. Between the end of the line and the cursor there are blanks then.
    void put(QChar character, const ConsoleStyle& style);

    /// To the beginning of the row, as a CR. Behind a blank in the first column after 80 it is the shell's
    /// way to the next row, so that the line has rows from then on.
    void returnToStart();
    /// To the beginning of the row below, as CR and LF; false when there is none, so that the line ends.
    [[nodiscard]] bool moveToNextRow();
    /// In a line that goes on behind the first row; it has rows then.
    void moveUp(std::size_t rows);
    void moveDown(std::size_t rows);
    void moveLeft(std::size_t columns);
    void moveRight(std::size_t columns);
    void moveToColumn(std::size_t columnInRow);
    void moveToEnd() { m_column = m_cells.size(); }
    /// To the next tabulator column, but not behind the end.
    void moveToTab();

    /// Erases within the row: 0 from the cursor on, 1 up to it, 2 all.
    void eraseInRow(int mode);
    void eraseToEnd();
    void eraseLast();
    void deleteCharacters(std::size_t count);
    void insertBlanks(std::size_t count);

    void clear() { *this = {}; }

  private:
    [[nodiscard]] std::size_t rowStart() const { return m_hasRows ? m_column / kRowLength * kRowLength : 0; }
    /// Where the row ends, also one that is not full.
    [[nodiscard]] std::size_t rowLimit() const {
        return m_hasRows ? std::min(rowStart() + kRowLength, kLongest) : kLongest;
    }
    [[nodiscard]] bool isInLastRow() const { return !m_hasRows || m_cells.size() <= rowStart() + kRowLength; }
    void moveTo(std::size_t column);
    void blank(std::size_t from, std::size_t to);
    void insert(std::size_t at, std::size_t count);
    void erase(std::size_t from, std::size_t to);
    void changedFrom(std::size_t column);

    std::vector<Cell> m_cells;
    std::size_t m_column = 0;
    std::size_t m_unchanged = 0;
    bool m_hasRows = false;
};

} // namespace zrk
