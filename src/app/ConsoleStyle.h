#pragma once

#include <QTextCharFormat>

#include <vector>

class QPalette;

namespace zrk {

/// How a character of the board's looks: what a display of plain text can show of its attributes.
struct ConsoleStyle {
    int colour = -1; ///< 0 to 7 as in ESC [ 30 to 37 m; -1: the text's own
    bool bold = false;
    bool underlined = false;
    bool inverse = false;

    bool operator==(const ConsoleStyle&) const = default;

    /// Applies ESC [ ... m. Backgrounds and finer colours are left out.
    void apply(const std::vector<int>& parameters);
};

/// The style on a background of this palette; its colours can be read on light and dark ones.
[[nodiscard]] QTextCharFormat formatOf(const ConsoleStyle& style, const QPalette& palette);

} // namespace zrk
