#pragma once

#include <QString>

#include <vector>

namespace zrk {

/// Returns the sign for a character that has no glyph of its own, any other character as it is.
[[nodiscard]] QChar visibleSign(QChar character);

/// The console's text as a document that grows without end: each CR LF is one line end, and characters
/// without a glyph, including a single CR or LF, are small signs. Follows the text edit by edit, at a cost
/// that does not depend on the length of the text.
class ConsoleDisplay {
  public:
    /// The length at which the document (not a copy) breaks a line: the cost of laying out a line grows with
    /// its length, and a board need not end its lines at all.
    static constexpr qsizetype kLongestLine = 1000;

    /// An edit at the end of the document, where '\n' ends a line.
    struct Edit {
        qsizetype removed = 0; ///< characters to remove at the end
        QString inserted;
    };

    /// Returns the document's edit for one of the text: `removed` characters at its end were removed, then
    /// the last `added` ones of `text` were added. Removing more than was followed empties the document.
    [[nodiscard]] Edit follow(QStringView text, qsizetype removed, qsizetype added);

    /// Returns the text of a part of the document that begins at `position`: control characters instead of
    /// their signs (but for NUL), lines ended by '\n', and no breaks that only the document has.
    [[nodiscard]] QString original(QStringView shown, qsizetype position) const;

  private:
    struct Line {
        qsizetype start = 0;    ///< in the document
        bool continues = false; ///< the line before, which became too long
    };

    void put(QChar shown);
    void takeBack();
    void removeLast();
    void beginLine(bool continues);
    [[nodiscard]] qsizetype lastLineSize() const { return m_size - m_lines.back().start; }

    Edit m_edit;
    qsizetype m_size = 0; ///< of the document
    std::vector<Line> m_lines{1};
};

} // namespace zrk
