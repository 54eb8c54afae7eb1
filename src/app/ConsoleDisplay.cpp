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

/// The inverse of visibleSign, where a sign has one.
QChar signified(QChar sign) {
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
    // A backspace takes one character. More than that goes away only when the console is emptied.
    if (removed > 1)
        return showAll(text);
    Edit edit;
    if (removed == 1)
        edit.removed = hideLast(QStringView(text).chopped(added));
    edit.inserted = show(QStringView(text).last(added));
    return edit;
}

ConsoleDisplay::Edit ConsoleDisplay::showAll(const QString& text) {
    m_length = 0;
    m_lineStart = 0;
    m_longLineBreaks.clear();
    m_last = QChar();
    return {true, 0, show(text)};
}

qsizetype ConsoleDisplay::hideLast(QStringView remaining) {
    const bool lineEnd = m_last == kLineFeed && lastOf(remaining) == kCarriageReturn;
    qsizetype hidden = m_last == kCarriageReturn ? 0 : 1;
    m_length -= hidden;
    m_last = lastOf(remaining);
    if (!m_longLineBreaks.empty() && m_longLineBreaks.back() == m_length - 1) {
        m_longLineBreaks.pop_back();
        --m_length;
        ++hidden;
        findLineStart(remaining);
    }
    if (lineEnd)
        findLineStart(remaining);
    return hidden;
}

void ConsoleDisplay::findLineStart(QStringView remaining) {
    qsizetype length = 0;
    for (qsizetype i = remaining.size() - 1; i >= 0 && length < kLongestLine; --i) {
        if (remaining[i] == kLineFeed && i > 0 && remaining[i - 1] == kCarriageReturn)
            break;
        if (remaining[i] != kCarriageReturn)
            ++length;
    }
    m_lineStart = m_length - length;
    if (!m_longLineBreaks.empty())
        m_lineStart = std::max(m_lineStart, m_longLineBreaks.back() + 1);
}

QString ConsoleDisplay::show(QStringView added) {
    QString shown;
    shown.reserve(added.size());
    const auto end = [&] { return m_length + shown.size(); };
    for (const QChar c : added) {
        const bool lineEnd = c == kLineFeed && m_last == kCarriageReturn;
        m_last = c;
        if (c == kCarriageReturn)
            continue;
        if (!lineEnd && end() - m_lineStart >= kLongestLine) {
            m_longLineBreaks.push_back(end());
            shown += kLineFeed;
            m_lineStart = end();
        }
        shown += lineEnd ? kLineFeed : visibleSign(c);
        if (lineEnd)
            m_lineStart = end();
    }
    m_length += shown.size();
    return shown;
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
