#include "app/ConsoleStyle.h"

#include <QPalette>

#include <array>

namespace zrk {
namespace {

// Black, red, green, yellow, blue, magenta, cyan, white. "Black" on black and "white" on white are what
// boards mean by "inconspicuous", so both are greys.
constexpr std::array<QRgb, 8> kOnLight{0xFF444444, 0xFFB00020, 0xFF1A7A1A, 0xFF8A6000,
                                       0xFF1F4FC0, 0xFF9A2D9A, 0xFF006E7A, 0xFF6A6A6A};
constexpr std::array<QRgb, 8> kOnDark{0xFF9A9A9A, 0xFFFF7B72, 0xFF7EE787, 0xFFE3C04B,
                                      0xFF79B8FF, 0xFFE29BF0, 0xFF6FDCE8, 0xFFE6E6E6};

constexpr int kExtended = 38;           // ESC [ 38 ; 5 ; n m and ESC [ 38 ; 2 ; r ; g ; b m
constexpr int kExtendedBackground = 48; // the same
constexpr int kIndexed = 5;

} // namespace

void ConsoleStyle::apply(const std::vector<int>& parameters) {
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const int parameter = parameters[i];
        if (parameter <= 0)
            *this = {};
        else if (parameter == 1)
            bold = true;
        else if (parameter == 22)
            bold = false;
        else if (parameter == 4 || parameter == 24)
            underlined = parameter == 4;
        else if (parameter == 7 || parameter == 27)
            inverse = parameter == 7;
        else if (parameter >= 30 && parameter <= 37)
            colour = parameter - 30;
        else if (parameter >= 90 && parameter <= 97)
            colour = parameter - 90;
        else if (parameter == 39)
            colour = -1;
        else if (parameter == kExtended || parameter == kExtendedBackground)
            i += i + 1 < parameters.size() && parameters[i + 1] == kIndexed ? 2 : 4;
    }
}

QTextCharFormat formatOf(const ConsoleStyle& style, const QPalette& palette) {
    QTextCharFormat format;
    const QColor base = palette.color(QPalette::Base);
    const auto& colours = base.lightness() < 128 ? kOnDark : kOnLight;
    if (style.colour >= 0)
        format.setForeground(QColor::fromRgb(colours.at(static_cast<std::size_t>(style.colour))));
    if (style.inverse) {
        const QColor text = style.colour >= 0 ? format.foreground().color() : palette.color(QPalette::Text);
        format.setForeground(base);
        format.setBackground(text);
    }
    if (style.bold)
        format.setFontWeight(QFont::Bold);
    format.setFontUnderline(style.underlined);
    return format;
}

} // namespace zrk
