#pragma once

#include "app/terminal/TerminalScreen.h"

#include <vterm.h>

namespace zrk {

// Converts between the library's cells and those of TerminalScreen.

/// Gives a terminal its sixteen colours. Bold text gets the bright one of its colour.
void setColors(VTermState* state);

/// Returns the cells of a row of the screen.
[[nodiscard]] ScreenLine gridLine(const VTermScreen* screen, int row, int columns);

/// Returns the cells of a line that leaves the screen, without the blank ones at its end.
[[nodiscard]] ScreenLine keptLine(const VTermScreen* screen, const VTermScreenCell* cells, int columns);

/// Makes `columns` cells of a line that comes back to the screen.
void fillCells(VTermScreenCell* cells, int columns, const ScreenLine& line);

} // namespace zrk
