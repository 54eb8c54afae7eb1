#include "app/TerminalParser.h"

namespace zrk {
namespace {

constexpr ushort kEscape = 0x1B;
constexpr ushort kBell = 0x07;
constexpr ushort kCancel = 0x18;
constexpr ushort kSubstitute = 0x1A;
constexpr ushort kDelete = 0x7F;
constexpr ushort kFirstPrintable = 0x20;
constexpr int kMostParameter = 9999;
constexpr std::size_t kMostParameters = 16;
// Noise may begin a string that never ends; the text behind it must not be lost with it.
constexpr qsizetype kLongestString = 256;

bool isControl(ushort code) {
    return code < kFirstPrintable || code == kDelete;
}

/// How many bytes follow a first byte of UTF-8; 0 for one that is none.
int followersOf(ushort code) {
    if (code >= 0xC2 && code <= 0xDF)
        return 1;
    if (code >= 0xE0 && code <= 0xEF)
        return 2;
    return code >= 0xF0 && code <= 0xF4 ? 3 : 0;
}

} // namespace

void TerminalParser::parse(QStringView bytes, TerminalActions& actions) {
    for (const QChar character : bytes)
        take(character, actions);
}

void TerminalParser::take(QChar character, TerminalActions& actions) {
    const ushort code = character.unicode();
    if (m_state == State::Text)
        return takeText(character, actions);
    if (code == kCancel || code == kSubstitute || ++m_swallowed > kLongestString) {
        m_state = State::Text;
        return;
    }
    if (code == kEscape && m_state != State::String) {
        m_state = State::Escape;
        return;
    }
    if (m_state == State::String || m_state == State::StringEscape)
        return takeString(character);
    if (isControl(code))
        return actions.control(character); // acts at once, as on a terminal, and the sequence goes on
    if (m_state == State::Sequence)
        return takeSequence(character, actions);
    takeEscape(character);
}

void TerminalParser::takeText(QChar character, TerminalActions& actions) {
    const ushort code = character.unicode();
    if (m_missing > 0) {
        if ((code & 0xC0U) == 0x80) {
            m_partial += static_cast<char>(code);
            if (--m_missing == 0)
                flushPartial(actions);
            return;
        }
        flushPartial(actions);
    }
    if (code == kEscape) {
        m_state = State::Escape;
        m_swallowed = 0;
    } else if (isControl(code)) {
        actions.control(character);
    } else if (const int followers = code < 0x100 ? followersOf(code) : 0; followers > 0) {
        m_partial = QByteArray(1, static_cast<char>(code));
        m_missing = followers;
    } else {
        actions.print(character);
    }
}

/// Shows the collected bytes: as the character that they are, or each as it stands.
void TerminalParser::flushPartial(TerminalActions& actions) {
    m_missing = 0;
    const QString decoded = QString::fromUtf8(m_partial);
    const QString shown =
        decoded.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(m_partial) : decoded;
    for (const QChar character : shown)
        actions.print(character);
}

void TerminalParser::takeEscape(QChar character) {
    const ushort code = character.unicode();
    if (m_state == State::Escape && code == u'[') {
        m_state = State::Sequence;
        m_parameters.assign(1, -1);
        m_isPrivate = false;
    } else if (m_state == State::Escape && (code == u']' || code == u'P' || code == u'^' || code == u'_')) {
        m_state = State::String;
    } else if (code < u'0') {
        m_state = State::Intermediate;
    } else {
        m_state = State::Text;
    }
}

void TerminalParser::takeSequence(QChar character, TerminalActions& actions) {
    const ushort code = character.unicode();
    if (character.isDigit()) {
        int& last = m_parameters.back();
        last = qMin(qMax(last, 0) * 10 + character.digitValue(), kMostParameter);
    } else if (code == u';' || code == u':') {
        if (m_parameters.size() < kMostParameters)
            m_parameters.push_back(-1);
    } else if (code < 0x40) {
        m_isPrivate = true;
    } else {
        m_state = State::Text;
        if (!m_isPrivate)
            actions.sequence(character, m_parameters);
    }
}

void TerminalParser::takeString(QChar character) {
    const ushort code = character.unicode();
    if (m_state == State::StringEscape)
        m_state = code == u'\\' ? State::Text : State::String;
    else if (code == kEscape)
        m_state = State::StringEscape;
    else if (code == kBell)
        m_state = State::Text;
}

} // namespace zrk
