#include "app/ConsoleDisplay.h"

#include <algorithm>

namespace zrk {
namespace {

constexpr QChar kLineFeed(u'\n');
constexpr QChar kCarriageReturn(u'\r');
constexpr ushort kControlPictures = 0x2400;
constexpr ushort kDelete = 0x7F;
constexpr ushort kPictureOfDelete = 0x2421;

QChar lastOf(QStringView text) {
    return text.isEmpty() ? QChar() : text.back();
}

/// The inverse of visibleSign, where a sign has one. A NUL keeps its sign: many a clipboard ends there.
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
    // The rest of the codes without a glyph, and those that a document takes for marks of its own.
    const bool unprintable = (code > kDelete && code < 0xA0) || code == QChar::LineSeparator ||
                             code == QChar::ParagraphSeparator || code == QChar::ObjectReplacementCharacter ||
                             (code >= 0xFDD0 && code <= 0xFDEF);
    return unprintable ? QChar(QChar::ReplacementCharacter) : character;
}

ConsoleDisplay::Edit ConsoleDisplay::follow(const QString& text, qsizetype removed, qsizetype added) {
    Edit edit;
    if (removed > 1) {
        *this = {};
        edit.removesAll = true;
        added = text.size();
    } else if (removed == 1) {
        hideLast(QStringView(text).chopped(added), edit);
    }
    edit.inserted.reserve(edit.inserted.size() + added);
    for (const QChar character : QStringView(text).last(added))
        show(character, edit);
    return edit;
}

void ConsoleDisplay::put(QChar shown, Edit& edit) {
    edit.inserted += shown;
    ++m_length;
}

void ConsoleDisplay::takeBack(Edit& edit) {
    if (edit.inserted.isEmpty())
        ++edit.removed;
    else
        edit.inserted.chop(1);
    --m_length;
}

void ConsoleDisplay::show(QChar character, Edit& edit) {
    const bool afterReturn = m_last == kCarriageReturn;
    m_last = character;
    if (character == kLineFeed && afterReturn) {
        takeBack(edit); // the sign that the CR had for as long as it stood alone
        put(kLineFeed, edit);
        m_lineStart = m_length;
        return;
    }
    // A CR is mostly half a line end, which needs no break before it.
    const bool endsLine = character == kCarriageReturn && !afterReturn;
    if (m_length - m_lineStart >= kLongestLine && !endsLine) {
        m_longLineBreaks.push_back(m_length);
        put(kLineFeed, edit);
        m_lineStart = m_length;
    }
    put(visibleSign(character), edit);
}

void ConsoleDisplay::hideLast(QStringView remaining, Edit& edit) {
    const bool lineEnd = m_last == kLineFeed && lastOf(remaining) == kCarriageReturn;
    m_last = lastOf(remaining);
    takeBack(edit);
    if (lineEnd) {
        put(visibleSign(kCarriageReturn), edit);
        findLineStart(remaining);
    } else if (!m_longLineBreaks.empty() && m_longLineBreaks.back() == m_length - 1) {
        m_longLineBreaks.pop_back();
        takeBack(edit);
        findLineStart(remaining);
    }
}

void ConsoleDisplay::findLineStart(QStringView remaining) {
    qsizetype length = 0;
    for (qsizetype i = remaining.size() - 1; i >= 0 && length < kLongestLine; --i) {
        if (remaining[i] == kLineFeed && i > 0 && remaining[i - 1] == kCarriageReturn)
            break;
        ++length;
    }
    m_lineStart = m_length - length;
    if (!m_longLineBreaks.empty())
        m_lineStart = std::max(m_lineStart, m_longLineBreaks.back() + 1);
}

QString ConsoleDisplay::original(QStringView shown, qsizetype position) const {
    QString text;
    text.reserve(shown.size());
    auto nextBreak = std::lower_bound(m_longLineBreaks.begin(), m_longLineBreaks.end(), position);
    for (qsizetype i = 0; i < shown.size(); ++i) {
        if (nextBreak != m_longLineBreaks.end() && *nextBreak == position + i)
            ++nextBreak;
        else
            text += signified(shown[i]);
    }
    return text;
}

} // namespace zrk
