#pragma once

#include "app/ConsoleStyle.h"
#include "app/TerminalLine.h"
#include "app/TerminalParser.h"
#include "controls/ConsoleText.h"

#include <QString>

#include <vector>

namespace zrk {

/// The sign for a character that has no glyph of its own, any other character as it is.
[[nodiscard]] QChar visibleSign(QChar character);

/// How the console's text looks in a document that grows without end. What the board says looks as on a plain
/// terminal: colours, and within the last line the cursor, overwriting and erasing; of what the loader says
/// each CR LF is one line end. Characters without a glyph, a CR or an LF alone among them, are small signs.
/// Follows the text piece by piece, at a cost that does not depend on the length of the text.
///
/// It is no grid of a terminal emulator: those keep a screen of fixed size and cut or reflow what leaves it,
/// whereas here every line stays, can be searched and is copied as it came.
class ConsoleDisplay : private TerminalActions {
  public:
    /// A line that goes on for so long is broken in the document (not in what is copied), because the
    /// cost of laying out a line grows with its length and a board need not end its lines at all.
    static constexpr std::size_t kLongestLine = TerminalLine::kLongest;

    /// Characters that look alike.
    struct Run {
        QString text;
        ConsoleStyle style;
    };

    /// An edit at the end of the document, where '\n' ends a line.
    struct Edit {
        qsizetype removed = 0; ///< characters that go away at the end
        std::vector<Run> inserted;
    };

    /// The piece that the text went on with.
    [[nodiscard]] Edit show(QStringView text, TextOrigin origin);

    /// Where in the document the next character goes, or its end where the line does not reach so far.
    [[nodiscard]] qsizetype cursor() const;

    /// What a part of the document that begins at `position` stands for: control characters instead of
    /// their signs (but for NUL), lines ended by '\n', and no breaks that only the document has.
    [[nodiscard]] QString original(QStringView shown, qsizetype position) const;

  private:
    void print(QChar character) override;
    void control(QChar character) override;
    void sequence(QChar final, const std::vector<int>& parameters) override;

    void showLoaderText(QStringView text);
    void put(QChar shown) { m_line.put(visibleSign(shown), m_style); }
    void feedLine();
    void endLine();
    void breakLine();
    void flushLine();
    void resolveLineEnd();

    TerminalParser m_parser;
    Edit m_edit;
    TerminalLine m_line;     ///< the last one
    std::size_t m_shown = 0; ///< characters of it that the document has
    ConsoleStyle m_style;
    bool m_returned = false; ///< a CR of the board's, which the next character gives its meaning
    bool m_fed = false;      ///< an LF of the board's without a CR before it
    /// The board has ended a line with CR and LF, so that a CR alone is a return to the line's start. From a
    /// board that never does, a CR alone ends the line.
    bool m_endsLinesWithFeeds = false;
    bool m_afterReturn = false;              ///< the last character of the loader's was a CR
    qsizetype m_lineStart = 0;               ///< where the last line begins in the document
    std::vector<qsizetype> m_longLineBreaks; ///< positions of the breaks that are not in the text
};

} // namespace zrk
