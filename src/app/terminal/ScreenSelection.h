#pragma once

#include "app/terminal/TerminalScreen.h"

#include <QString>

#include <functional>
#include <utility>

namespace zrk {

/// A place between two cells: before the cell `column` of a line.
struct ScreenPoint {
    qsizetype line = 0;
    int column = 0;
    friend bool operator<(const ScreenPoint& a, const ScreenPoint& b) {
        return std::pair(a.line, a.column) < std::pair(b.line, b.column);
    }
};

/// The mouse's selection in the lines of a terminal: a run of cells that goes over line ends.
class ScreenSelection {
  public:
    void clear() { *this = {}; }
    void begin(ScreenPoint at);
    void extend(ScreenPoint to) { m_position = to; }
    void selectWord(const ScreenLine& line, ScreenPoint at);

    [[nodiscard]] bool isEmpty() const { return !(from() < end()) && !(end() < from()); }
    [[nodiscard]] ScreenPoint from() const { return m_position < m_anchor ? m_position : m_anchor; }
    [[nodiscard]] ScreenPoint end() const { return m_position < m_anchor ? m_anchor : m_position; }

    /// Returns the selected columns of a line: from the first to before the second; equal for none.
    [[nodiscard]] std::pair<int, int> columnsIn(qsizetype line, int columns) const;

    /// Returns the selected text of lines with so many columns: the lines are ended by '\n' and without the
    /// blanks at their ends.
    [[nodiscard]] QString text(const std::function<ScreenLine(qsizetype)>& line, int columns) const;

  private:
    ScreenPoint m_anchor;
    ScreenPoint m_position;
};

} // namespace zrk
