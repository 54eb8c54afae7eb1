#include "app/terminal/TerminalCells.h"

#include <algorithm>
#include <array>

namespace zrk {
namespace {

// Each is legible on the view's dark ground and below light text.
constexpr std::array<std::uint32_t, 16> kColors{0x000000, 0xD04040, 0x4E9A06, 0xC4A000, 0x3F74C4, 0x9A62AA,
                                                0x06989A, 0xD3D7CF, 0x767676, 0xEF2929, 0x8AE234, 0xFCE94F,
                                                0x729FCF, 0xAD7FA8, 0x34E2E2, 0xEEEEEC};
constexpr char32_t kReplacement = U'\uFFFD';
constexpr uint32_t kSecondHalf = 0xFFFFFFFF; // the library's mark for a place that a wide character takes

bool isUnicode(uint32_t code) {
    return code <= QChar::LastValidCodePoint && !QChar::isSurrogate(code);
}

VTermColor colorOf(std::uint32_t rgb) {
    VTermColor color{};
    vterm_color_rgb(&color, static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8),
                    static_cast<uint8_t>(rgb));
    return color;
}

std::uint32_t rgbOf(const VTermScreen* screen, VTermColor color) {
    vterm_screen_convert_color_to_rgb(screen, &color);
    return static_cast<std::uint32_t>(color.rgb.red << 16 | color.rgb.green << 8 | color.rgb.blue);
}

ScreenCell cellOf(const VTermScreen* screen, const VTermScreenCell& from) {
    ScreenCell cell;
    cell.width = from.chars[0] == kSecondHalf ? 0 : from.width > 1 ? 2 : 1;
    // After a 0 there may be earlier characters.
    for (std::size_t i = 0; cell.width > 0 && i < cell.characters.size() && from.chars[i] != 0; ++i)
        cell.characters[i] = isUnicode(from.chars[i]) ? from.chars[i] : kReplacement;
    if (!VTERM_COLOR_IS_DEFAULT_FG(&from.fg))
        cell.foreground = rgbOf(screen, from.fg);
    if (!VTERM_COLOR_IS_DEFAULT_BG(&from.bg))
        cell.background = rgbOf(screen, from.bg);
    cell.bold = from.attrs.bold != 0;
    cell.italic = from.attrs.italic != 0;
    cell.underline = from.attrs.underline != VTERM_UNDERLINE_OFF;
    cell.strike = from.attrs.strike != 0;
    cell.reverse = from.attrs.reverse != 0;
    return cell;
}

VTermScreenCell cellOf(const ScreenCell& from) {
    VTermScreenCell cell{};
    std::copy(from.characters.begin(), from.characters.end(), std::begin(cell.chars));
    if (from.width == 0)
        cell.chars[0] = kSecondHalf;
    cell.width = from.width == 2 ? 2 : 1;
    cell.fg = colorOf(from.foreground);
    cell.bg = colorOf(from.background);
    if (from.foreground == ScreenCell::kDefault)
        cell.fg.type |= VTERM_COLOR_DEFAULT_FG;
    if (from.background == ScreenCell::kDefault)
        cell.bg.type |= VTERM_COLOR_DEFAULT_BG;
    cell.attrs.bold = from.bold;
    cell.attrs.italic = from.italic;
    cell.attrs.underline = from.underline;
    cell.attrs.strike = from.strike;
    cell.attrs.reverse = from.reverse;
    return cell;
}

} // namespace

bool ScreenCell::isBlank() const {
    return (characters[0] == 0 || characters[0] == U' ') && width == 1 && background == kDefault &&
           !reverse && !underline && !strike;
}

QString ScreenCell::text() const {
    if (characters[0] == 0)
        return width == 0 ? QString() : QStringLiteral(" ");
    const auto end = std::find(characters.begin(), characters.end(), U'\0');
    return QString::fromUcs4(characters.data(), end - characters.begin());
}

QString textOf(const ScreenLine& line, int from, int end) {
    QString text;
    for (int column = from; column < std::min(end, static_cast<int>(line.size())); ++column)
        text += line[static_cast<std::size_t>(column)].text();
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

void setColors(VTermState* state) {
    for (std::size_t i = 0; i < kColors.size(); ++i) {
        const VTermColor color = colorOf(kColors[i]);
        vterm_state_set_palette_color(state, static_cast<int>(i), &color);
    }
    vterm_state_set_bold_highbright(state, 1);
}

ScreenLine gridLine(const VTermScreen* screen, int row, int columns) {
    ScreenLine line;
    line.reserve(static_cast<std::size_t>(columns));
    for (int column = 0; column < columns; ++column) {
        VTermScreenCell cell{};
        (void)vterm_screen_get_cell(screen, VTermPos{row, column}, &cell);
        line.push_back(cellOf(screen, cell));
    }
    return line;
}

ScreenLine keptLine(const VTermScreen* screen, const VTermScreenCell* cells, int columns) {
    ScreenLine line;
    line.reserve(static_cast<std::size_t>(columns));
    std::transform(cells, cells + columns, std::back_inserter(line),
                   [screen](const VTermScreenCell& cell) { return cellOf(screen, cell); });
    while (!line.empty() && line.back().isBlank())
        line.pop_back();
    line.shrink_to_fit();
    return line;
}

void fillCells(VTermScreenCell* cells, int columns, const ScreenLine& line) {
    for (int column = 0; column < columns; ++column) {
        const auto i = static_cast<std::size_t>(column);
        const bool isWhole = i < line.size() && (line[i].width != 2 || column + 1 < columns);
        cells[column] = cellOf(isWhole ? line[i] : ScreenCell{});
    }
}

} // namespace zrk
