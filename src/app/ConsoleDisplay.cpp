#include "app/ConsoleDisplay.h"

#include <algorithm>
#include <utility>

namespace zrk {
namespace {

constexpr QChar kLineFeed(u'\n');
constexpr QChar kCarriageReturn(u'\r');
constexpr QChar kBackspace(u'\b');
constexpr QChar kTab(u'\t');
constexpr QChar kBell(u'\a');
constexpr ushort kControlPictures = 0x2400;
constexpr ushort kDelete = 0x7F;
constexpr ushort kPictureOfDelete = 0x2421;

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

ConsoleDisplay::Edit ConsoleDisplay::show(QStringView text, TextOrigin origin) {
    m_edit = {};
    if (origin != TextOrigin::Board)
        showLoaderText(text);
    else
        m_parser.parse(text, *this);
    flushLine();
    return std::move(m_edit);
}

qsizetype ConsoleDisplay::cursor() const {
    return m_lineStart + static_cast<qsizetype>(std::min(m_line.column(), m_line.size()));
}

void ConsoleDisplay::showLoaderText(QStringView text) {
    resolveLineEnd();
    const ConsoleStyle boards = std::exchange(m_style, {});
    m_line.moveToEnd();
    for (const QChar character : text) {
        const bool afterReturn = std::exchange(m_afterReturn, character == kCarriageReturn);
        if (character == kLineFeed && afterReturn) {
            m_line.eraseLast(); // the sign that the CR had for as long as it stood alone
            endLine();
            continue;
        }
        // A CR is mostly half a line end, which needs no break before it.
        if (character != kCarriageReturn || afterReturn)
            breakLine();
        put(character);
    }
    m_style = boards;
}

void ConsoleDisplay::print(QChar character) {
    resolveLineEnd();
    breakLine();
    put(character);
}

void ConsoleDisplay::control(QChar character) {
    if (character.isNull()) // shells send them to terminals of old to win time
        return;
    if (character == kLineFeed && m_returned) {
        m_returned = false;
        return feedLine();
    }
    if (character == kCarriageReturn) {
        if (!std::exchange(m_fed, false)) {
            m_returned = true;
            return;
        }
        return feedLine();
    }
    resolveLineEnd();
    if (character == kLineFeed)
        m_fed = true;
    else if (character == kBackspace)
        m_line.moveLeft(1);
    else if (character == kTab && m_line.column() < m_line.size())
        m_line.moveToTab();
    else if (character != kBell)
        print(character);
}

void ConsoleDisplay::sequence(QChar final, const std::vector<int>& parameters) {
    if (final == u'm')
        return m_style.apply(parameters);
    resolveLineEnd();
    const int mode = std::max(parameters.front(), 0);
    const auto count = static_cast<std::size_t>(std::max(parameters.front(), 1));
    switch (final.unicode()) {
    case u'K':
        return m_line.eraseInRow(mode);
    case u'J': // what is on the screen above stays: it is a record
        if (mode == 0)
            return m_line.eraseToEnd();
        if (m_line.size() > 0)
            endLine();
        return;
    case u'A':
        return m_line.moveUp(count);
    case u'B':
        return m_line.moveDown(count);
    case u'C':
        return m_line.moveRight(count);
    case u'D':
        return m_line.moveLeft(count);
    case u'G':
        return m_line.moveToColumn(count - 1);
    case u'P':
        return m_line.deleteCharacters(count);
    case u'@':
        return m_line.insertBlanks(count);
    default:
        return;
    }
}

/// What a CR or an LF of the board's meant, now that something else follows. An LF alone means nothing.
void ConsoleDisplay::resolveLineEnd() {
    m_fed = false;
    if (!std::exchange(m_returned, false))
        return;
    if (m_endsLinesWithFeeds)
        m_line.returnToStart();
    else
        endLine();
}

/// CR and LF of the board's.
void ConsoleDisplay::feedLine() {
    m_endsLinesWithFeeds = true;
    if (!m_line.moveToNextRow())
        endLine();
}

void ConsoleDisplay::breakLine() {
    if (m_line.column() < kLongestLine)
        return;
    m_longLineBreaks.push_back(m_lineStart + static_cast<qsizetype>(m_line.size()));
    endLine();
}

void ConsoleDisplay::endLine() {
    flushLine();
    if (m_edit.inserted.empty() || m_edit.inserted.back().style != ConsoleStyle())
        m_edit.inserted.push_back({});
    m_edit.inserted.back().text += kLineFeed;
    m_lineStart += static_cast<qsizetype>(m_line.size()) + 1;
    m_line.clear();
    m_shown = 0;
}

/// Brings the document's last line up to date.
void ConsoleDisplay::flushLine() {
    const auto& cells = m_line.cells();
    m_edit.removed += static_cast<qsizetype>(m_shown - std::min(m_shown, m_line.unchanged()));
    for (std::size_t i = m_line.unchanged(); i < cells.size(); ++i) {
        if (m_edit.inserted.empty() || m_edit.inserted.back().style != cells[i].style)
            m_edit.inserted.push_back({{}, cells[i].style});
        m_edit.inserted.back().text += cells[i].character;
    }
    m_line.noteSeen();
    m_shown = cells.size();
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
