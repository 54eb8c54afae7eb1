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
constexpr std::size_t kTabColumns = 8;
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

void ConsoleDisplay::showLoaderText(QStringView text) {
    resolveLineEnd();
    const ConsoleStyle boards = std::exchange(m_style, {});
    moveTo(m_line.size());
    for (const QChar character : text) {
        const bool afterReturn = std::exchange(m_afterReturn, character == kCarriageReturn);
        if (character == kLineFeed && afterReturn) {
            erase(m_line.size() - 1, m_line.size()); // the sign that the CR had for as long as it stood alone
            endLine();
            continue;
        }
        // A CR is mostly half a line end, which needs no break before it.
        if (character != kCarriageReturn || afterReturn)
            breakLine();
        put(visibleSign(character));
    }
    m_style = boards;
}

void ConsoleDisplay::print(QChar character) {
    resolveLineEnd();
    breakLine();
    put(visibleSign(character));
}

void ConsoleDisplay::control(QChar character) {
    if (character == kLineFeed && m_returned) {
        m_returned = false;
        m_endsLinesWithFeeds = true;
        return endLine();
    }
    if (character == kCarriageReturn) {
        if (!std::exchange(m_fed, false)) {
            m_returned = true;
            return;
        }
        m_endsLinesWithFeeds = true;
        return endLine();
    }
    resolveLineEnd();
    if (character == kLineFeed)
        m_fed = true;
    else if (character == kBackspace)
        moveTo(m_column - std::min<std::size_t>(m_column, 1));
    else if (character == kTab && m_column < m_line.size())
        moveTo(std::min(m_line.size(), (m_column / kTabColumns + 1) * kTabColumns));
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
        return eraseInLine(mode);
    case u'J': // what is on the screen above stays: it is a record
        if (mode == 0)
            return erase(m_column, m_line.size());
        if (!m_line.empty())
            endLine();
        return;
    case u'C':
        return moveTo(m_column + count);
    case u'D':
        return moveTo(m_column - std::min(m_column, count));
    case u'G':
        return moveTo(count - 1);
    case u'P':
        return erase(m_column, m_column + count);
    case u'@':
        return insertBlanks(count);
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
        moveTo(0);
    else
        endLine();
}

void ConsoleDisplay::moveTo(std::size_t column) {
    m_column = std::min(column, std::max(kLongestLine - 1, m_line.size()));
}

void ConsoleDisplay::put(QChar shown) {
    while (m_line.size() < m_column)
        m_line.push_back({QChar(u' '), {}});
    changedFrom(m_column);
    if (m_column < m_line.size())
        m_line[m_column] = {shown, m_style};
    else
        m_line.push_back({shown, m_style});
    ++m_column;
}

void ConsoleDisplay::eraseInLine(int mode) {
    if (mode == 0)
        return erase(m_column, m_line.size());
    const std::size_t end = mode == 1 ? std::min(m_column + 1, m_line.size()) : m_line.size();
    changedFrom(0);
    std::fill_n(m_line.begin(), end, Cell{QChar(u' '), {}});
    if (mode == 2)
        erase(0, m_line.size());
}

void ConsoleDisplay::erase(std::size_t from, std::size_t to) {
    from = std::min(from, m_line.size());
    changedFrom(from);
    m_line.erase(m_line.begin() + static_cast<std::ptrdiff_t>(from),
                 m_line.begin() + static_cast<std::ptrdiff_t>(std::min(to, m_line.size())));
}

void ConsoleDisplay::insertBlanks(std::size_t count) {
    if (m_column >= m_line.size())
        return;
    const std::size_t room = kLongestLine - std::min(kLongestLine, m_line.size());
    changedFrom(m_column);
    m_line.insert(m_line.begin() + static_cast<std::ptrdiff_t>(m_column), std::min(count, room),
                  Cell{QChar(u' '), {}});
}

void ConsoleDisplay::changedFrom(std::size_t column) {
    m_unchanged = std::min(m_unchanged, std::min(column, m_line.size()));
}

void ConsoleDisplay::breakLine() {
    if (m_column < kLongestLine)
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
    m_column = m_shown = m_unchanged = 0;
}

/// Brings the document's last line up to date.
void ConsoleDisplay::flushLine() {
    m_edit.removed += static_cast<qsizetype>(m_shown - std::min(m_shown, m_unchanged));
    for (std::size_t i = m_unchanged; i < m_line.size(); ++i) {
        if (m_edit.inserted.empty() || m_edit.inserted.back().style != m_line[i].style)
            m_edit.inserted.push_back({{}, m_line[i].style});
        m_edit.inserted.back().text += m_line[i].character;
    }
    m_shown = m_unchanged = m_line.size();
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
