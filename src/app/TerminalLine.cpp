#include "app/TerminalLine.h"

#include <algorithm>

namespace zrk {
namespace {

constexpr std::size_t kTabColumns = 8;
constexpr QChar kBlank(u' ');

} // namespace

void TerminalLine::put(QChar character, const ConsoleStyle& style) {
    while (m_cells.size() < m_column)
        m_cells.push_back({kBlank, {}});
    changedFrom(m_column);
    if (m_column < m_cells.size())
        m_cells[m_column] = {character, style};
    else
        m_cells.push_back({character, style});
    ++m_column;
}

void TerminalLine::returnToStart() {
    if (m_column == kRowLength + 1 && m_cells.size() == m_column && m_cells.back().character == kBlank)
        m_hasRows = true;
    m_column = rowStart();
}

bool TerminalLine::moveToNextRow() {
    if (isInLastRow())
        return false;
    m_column = rowLimit();
    return true;
}

void TerminalLine::moveUp(std::size_t rows) {
    if (m_column > kRowLength)
        m_hasRows = true;
    if (m_hasRows)
        m_column -= kRowLength * std::min(rows, m_column / kRowLength);
}

void TerminalLine::moveDown(std::size_t rows) {
    for (; rows > 0 && !isInLastRow(); --rows)
        m_column += kRowLength;
}

void TerminalLine::moveLeft(std::size_t columns) {
    moveTo(m_column - std::min(m_column - rowStart(), columns));
}

void TerminalLine::moveRight(std::size_t columns) {
    moveTo(std::min(m_column + columns, rowLimit() - 1));
}

void TerminalLine::moveToColumn(std::size_t columnInRow) {
    moveTo(std::min(rowStart() + columnInRow, rowLimit() - 1));
}

void TerminalLine::moveToTab() {
    moveTo(std::min(m_cells.size(), (m_column / kTabColumns + 1) * kTabColumns));
}

void TerminalLine::moveTo(std::size_t column) {
    m_column = std::min(column, std::max(kLongest - 1, m_cells.size()));
}

void TerminalLine::eraseInRow(int mode) {
    const std::size_t from = mode == 0 ? m_column : rowStart();
    if (mode != 1 && isInLastRow())
        return erase(from, m_cells.size());
    blank(from, mode == 1 ? m_column + 1 : rowLimit());
}

void TerminalLine::eraseToEnd() {
    erase(m_column, m_cells.size());
}

void TerminalLine::eraseLast() {
    erase(m_cells.size() - 1, m_cells.size());
    moveToEnd();
}

void TerminalLine::deleteCharacters(std::size_t count) {
    const std::size_t deleted = std::min(count, rowLimit() - std::min(rowLimit(), m_column));
    const bool isLast = isInLastRow();
    erase(m_column, m_column + deleted);
    if (!isLast)
        insert(rowLimit() - deleted, deleted);
}

void TerminalLine::insertBlanks(std::size_t count) {
    if (m_column >= m_cells.size())
        return;
    const std::size_t inserted = std::min(count, rowLimit() - std::min(rowLimit(), m_column));
    insert(m_column, inserted);
    if (m_hasRows || m_cells.size() > kLongest) // what leaves the row at its end is lost
        erase(rowLimit(), rowLimit() + inserted);
}

void TerminalLine::blank(std::size_t from, std::size_t to) {
    changedFrom(from);
    for (std::size_t i = from; i < std::min(to, m_cells.size()); ++i)
        m_cells[i] = {kBlank, {}};
}

void TerminalLine::insert(std::size_t at, std::size_t count) {
    at = std::min(at, m_cells.size());
    changedFrom(at);
    m_cells.insert(m_cells.begin() + static_cast<std::ptrdiff_t>(at), count, Cell{kBlank, {}});
}

void TerminalLine::erase(std::size_t from, std::size_t to) {
    from = std::min(from, m_cells.size());
    changedFrom(from);
    m_cells.erase(m_cells.begin() + static_cast<std::ptrdiff_t>(from),
                  m_cells.begin() + static_cast<std::ptrdiff_t>(std::min(to, m_cells.size())));
}

void TerminalLine::changedFrom(std::size_t column) {
    m_unchanged = std::min(m_unchanged, std::min(column, m_cells.size()));
}

} // namespace zrk
