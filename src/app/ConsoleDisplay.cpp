#include "app/ConsoleDisplay.h"

#include <algorithm>
#include <utility>

namespace zrk {
namespace {

constexpr QChar kLineFeed(u'\n');
constexpr QChar kCarriageReturn(u'\r');
constexpr ushort kControlPictures = 0x2400;
constexpr ushort kDelete = 0x7F;
constexpr ushort kPictureOfDelete = 0x2421;

/// Inverts visibleSign, if a sign has an inverse. A NUL keeps its sign: many a clipboard ends there.
QChar signified(QChar sign) {
    if (sign.unicode() == kControlPictures)
        return sign;
    if (sign.unicode() == kPictureOfDelete)
        return QChar(kDelete);
    if (sign.unicode() >= kControlPictures && sign.unicode() < kControlPictures + 0x20)
        return QChar(static_cast<ushort>(sign.unicode() - kControlPictures));
    return sign;
}

} // namespace

QChar visibleSign(QChar character) {
    const ushort code = character.unicode();
    if (code == u'\t')
        return character;
    if (code < 0x20)
        return QChar(static_cast<ushort>(kControlPictures + code));
    if (code == kDelete)
        return QChar(kPictureOfDelete);
    if (code == 0xAD) // a soft hyphen is drawn only where a line is broken
        return QChar(u'-');
    // The other codes without a glyph, and those that a document uses as its own marks.
    const bool unprintable = (code > kDelete && code < 0xA0) || code == QChar::LineSeparator ||
                             code == QChar::ParagraphSeparator || code == QChar::ObjectReplacementCharacter ||
                             (code >= 0xFDD0 && code <= 0xFDEF);
    return unprintable ? QChar(QChar::ReplacementCharacter) : character;
}

ConsoleDisplay::Edit ConsoleDisplay::follow(QStringView text, qsizetype removed, qsizetype added) {
    m_edit = {};
    m_edit.inserted.reserve(added);
    for (; removed > 0 && m_size > 0; --removed)
        removeLast();
    const QStringView before = text.chopped(added);
    // A text that was cleared from the view may end with a CR that is not in the document.
    bool afterReturn = before.endsWith(kCarriageReturn) && lastLineSize() > 0;
    for (const QChar character : text.last(added)) {
        if (character == kLineFeed && afterReturn) {
            takeBack(); // the sign of the CR while it stood alone
            beginLine(false);
        } else {
            // A CR is mostly half a line end, which needs no break before it.
            if (lastLineSize() >= kLongestLine && (character != kCarriageReturn || afterReturn))
                beginLine(true);
            put(visibleSign(character));
        }
        afterReturn = character == kCarriageReturn;
    }
    return std::move(m_edit);
}

void ConsoleDisplay::put(QChar shown) {
    m_edit.inserted += shown;
    ++m_size;
}

void ConsoleDisplay::takeBack() {
    if (m_edit.inserted.isEmpty())
        ++m_edit.removed;
    else
        m_edit.inserted.chop(1);
    --m_size;
}

/// Removes what the last character of the text added to the document.
void ConsoleDisplay::removeLast() {
    const Line last = m_lines.back();
    takeBack();
    if (m_size < last.start) { // the LF of a line end, whose CR stands alone now
        m_lines.pop_back();
        put(visibleSign(kCarriageReturn));
    } else if (last.continues && m_size == last.start) {
        m_lines.pop_back();
        takeBack();
    }
}

void ConsoleDisplay::beginLine(bool continues) {
    put(kLineFeed);
    m_lines.push_back({m_size, continues});
}

QString ConsoleDisplay::original(QStringView shown, qsizetype position) const {
    QString text;
    text.reserve(shown.size());
    auto next = std::upper_bound(m_lines.begin(), m_lines.end(), position,
                                 [](qsizetype at, const Line& line) { return at < line.start; });
    for (const QChar character : shown) {
        if (character != kLineFeed)
            text += signified(character);
        else if (next != m_lines.end() && !(next++)->continues)
            text += kLineFeed;
    }
    return text;
}

} // namespace zrk
