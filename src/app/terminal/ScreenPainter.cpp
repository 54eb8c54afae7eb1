#include "app/terminal/ScreenPainter.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <tuple>

namespace zrk {
namespace {

constexpr QColor kSelectedGround{0x4A, 0x6D, 0xA7};
constexpr QColor kSelectedText{0xFF, 0xFF, 0xFF};
constexpr ushort kLastOfOneFont = 0x7E;

qreal advanceOf(const QFont& font) {
    constexpr int kMany = 32; // so that an advance that is no whole number shows
    return QFontMetricsF(font).horizontalAdvance(QString(kMany, QLatin1Char('M'))) / kMany;
}

/// Detects characters of the font itself, which may be drawn in one go; others may have other widths.
bool isOfTheFont(const ScreenCell& cell) {
    return cell.width == 1 && cell.characters[0] <= kLastOfOneFont && cell.characters[1] == 0;
}

QColor colorOr(std::uint32_t rgb, const QColor& other) {
    return rgb == ScreenCell::kDefault ? other : QColor(QRgb(rgb));
}

} // namespace

bool ScreenPainter::Style::operator==(const Style& other) const {
    const auto all = [](const Style& s) {
        return std::tuple(s.text.rgb(), s.ground.rgb(), s.bold, s.italic, s.underline, s.strike);
    };
    return all(*this) == all(other);
}

void ScreenPainter::setFont(const QFont& font) {
    const QFontMetricsF metrics(font);
    m_cell = {std::max(1, qRound(advanceOf(font))),
              std::max(1, qRound(metrics.ascent() + metrics.descent()))};
    m_ascent = qRound(metrics.ascent());
    for (int i = 0; i < 4; ++i) {
        QFont& one = m_fonts[i] = font;
        one.setBold((i & 1) != 0);
        one.setItalic((i & 2) != 0);
        one.setKerning(false);
        one.setLetterSpacing(QFont::AbsoluteSpacing, 0);
        one.setLetterSpacing(QFont::AbsoluteSpacing, m_cell.width() - advanceOf(one)); // each on its cell
    }
}

const QFont& ScreenPainter::fontFor(const Style& style) const {
    return m_fonts[(style.bold ? 1 : 0) + (style.italic ? 2 : 0)];
}

ScreenPainter::Style ScreenPainter::styleOf(const ScreenCell& cell, bool isSelected, bool isUnderCursor) {
    Style style{colorOr(cell.foreground, kText),
                colorOr(cell.background, kGround),
                cell.bold,
                cell.italic,
                cell.underline,
                cell.strike};
    if (cell.reverse)
        std::swap(style.text, style.ground);
    if (isSelected) {
        style.text = kSelectedText;
        style.ground = kSelectedGround;
    }
    if (isUnderCursor)
        std::swap(style.text, style.ground);
    return style;
}

void ScreenPainter::paintLine(QPainter& painter, QPoint at, const ScreenLine& line, int columns,
                              const Marks& marks) const {
    static const ScreenCell kBlank;
    const bool isBlock =
        marks.cursor && marks.cursorIsFilled && marks.cursor->shape == ScreenCursor::Shape::Block;
    Run run;
    for (int column = 0; column < columns; ++column) {
        const auto i = static_cast<std::size_t>(column);
        const ScreenCell& cell = i < line.size() ? line[i] : kBlank;
        if (cell.width == 0) // of the character before it
            continue;
        const bool isSelected = column >= marks.selected.first && column < marks.selected.second;
        const Style style = styleOf(cell, isSelected, isBlock && column == marks.cursor->column);
        if (run.columns > 0 && !(run.style == style && isOfTheFont(cell))) {
            paintRun(painter, at, run);
            run.columns = 0;
        }
        if (run.columns == 0)
            run = {column, 0, {}, style};
        run.text += cell.text();
        run.columns += cell.width;
        if (!isOfTheFont(cell)) {
            paintRun(painter, at, run);
            run.columns = 0;
        }
    }
    if (run.columns > 0)
        paintRun(painter, at, run);
    if (marks.cursor && !isBlock)
        paintCursor(painter, at, marks);
}

void ScreenPainter::paintRun(QPainter& painter, QPoint at, const Run& run) const {
    const QRect place(at.x() + run.column * m_cell.width(), at.y(), run.columns * m_cell.width(),
                      m_cell.height());
    painter.fillRect(place, run.style.ground);
    painter.setPen(run.style.text);
    const bool hasText =
        std::any_of(run.text.begin(), run.text.end(), [](QChar c) { return c != QLatin1Char(' '); });
    if (hasText) {
        painter.setFont(fontFor(run.style));
        painter.drawText(QPoint(place.x(), place.y() + m_ascent), run.text);
    }
    const int below = std::min(place.y() + m_ascent + 1, place.bottom());
    if (run.style.underline)
        painter.drawLine(place.x(), below, place.right(), below);
    if (run.style.strike)
        painter.drawLine(place.x(), place.y() + m_ascent * 2 / 3, place.right(),
                         place.y() + m_ascent * 2 / 3);
}

void ScreenPainter::paintCursor(QPainter& painter, QPoint at, const Marks& marks) const {
    constexpr int kThickness = 2;
    QRect place(at.x() + marks.cursor->column * m_cell.width(), at.y(), m_cell.width(), m_cell.height());
    if (marks.cursor->shape == ScreenCursor::Shape::Block) {
        painter.setPen(kText);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(place.adjusted(0, 0, -1, -1));
        return;
    }
    if (marks.cursor->shape == ScreenCursor::Shape::Underline)
        place.setTop(place.bottom() + 1 - kThickness);
    else
        place.setWidth(kThickness);
    painter.fillRect(place, kText);
}

} // namespace zrk
