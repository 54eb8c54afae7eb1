#pragma once

#include <QString>

#include <vector>

namespace zrk {

/// How the console's text looks in a document: CR LF is one line end, characters without a glyph, a CR or
/// an LF alone among them, are small signs. Follows the text edit by edit, at a cost that does not depend on
/// the length of the text.
class ConsoleDisplay {
  public:
    /// A line that goes on for so long is broken in the document (not in what is copied), because the
    /// cost of laying out a line grows with its length and a board need not end its lines at all.
    static constexpr qsizetype kLongestLine = 1000;

    /// An edit at the end of the document, where '\n' ends a line.
    struct Edit {
        bool removesAll = false;
        qsizetype removed = 0; ///< characters that go away at the end, unless all do
        QString inserted;
    };

    /// The console's text became `text` by an edit that took `removed` characters away at its end and
    /// then added the last `added` characters of `text`.
    [[nodiscard]] Edit follow(const QString& text, qsizetype removed, qsizetype added);

    /// What a part of the document that begins at `position` stands for: control characters instead of
    /// their signs (but for NUL), lines ended by '\n', and no breaks that only the document has.
    [[nodiscard]] QString original(QStringView shown, qsizetype position) const;

  private:
    void put(QChar shown, Edit& edit);
    void takeBack(Edit& edit);
    void show(QChar character, Edit& edit);
    void hideLast(QStringView remaining, Edit& edit);
    void findLineStart(QStringView remaining);

    qsizetype m_length = 0;                  ///< of the document
    qsizetype m_lineStart = 0;               ///< where its last line begins
    std::vector<qsizetype> m_longLineBreaks; ///< positions of the breaks that are not in the text
    QChar m_last;                            ///< the last character of the text; NUL when there is none
};

/// The sign for a character that has no glyph of its own, any other character as it is.
[[nodiscard]] QChar visibleSign(QChar character);

} // namespace zrk
