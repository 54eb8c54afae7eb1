#pragma once

#include "app/terminal/TerminalScreen.h"

#include <QColor>
#include <QFont>
#include <QSize>

#include <optional>
#include <utility>

class QPainter;

namespace zrk {

/// A painter of terminal lines.
class ScreenPainter {
  public:
    /// The default colours: light on dark, as programs expect.
    static constexpr QColor kGround{0x1C, 0x1C, 0x1C};
    static constexpr QColor kText{0xDC, 0xDC, 0xDC};

    /// Sets a fixed-pitch font.
    void setFont(const QFont& font);

    /// Returns the size in pixels.
    [[nodiscard]] QSize cell() const { return m_cell; }

    struct Marks {
        std::pair<int, int> selected; ///< first column, and the one after the last
        std::optional<ScreenCursor> cursor;
        bool cursorIsFilled = true;
    };
    /// Paints a line of so many columns with its top left at `at`.
    void paintLine(QPainter& painter, QPoint at, const ScreenLine& line, int columns,
                   const Marks& marks) const;

  private:
    struct Style {
        QColor text;
        QColor ground;
        bool bold = false;
        bool italic = false;
        bool underline = false;
        bool strike = false;
        [[nodiscard]] bool operator==(const Style& other) const;
    };
    struct Run {
        int column = 0;
        int columns = 0;
        QString text;
        Style style;
    };
    [[nodiscard]] static Style styleOf(const ScreenCell& cell, bool isSelected, bool isUnderCursor);
    void paintRun(QPainter& painter, QPoint at, const Run& run) const;
    void paintCursor(QPainter& painter, QPoint at, const Marks& marks) const;
    [[nodiscard]] const QFont& fontFor(const Style& style) const;

    QFont m_fonts[4]; ///< plain, bold, italic, both
    QSize m_cell{1, 1};
    int m_ascent = 0;
};

} // namespace zrk
