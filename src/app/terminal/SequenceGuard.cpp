#include "app/terminal/SequenceGuard.h"

namespace zrk {
namespace {

constexpr char kBell = '\x07';
constexpr char kCancel = '\x18';
constexpr char kSubstitute = '\x1A';
constexpr char kEscapeByte = '\x1B';
constexpr char kRuboutByte = '\x7F';
constexpr qsizetype kLongestSequence = 64;
constexpr int kMostNumbers = 15;
constexpr int kMostDigits = 5;

bool isControl(char byte) {
    return static_cast<uchar>(byte) < 0x20;
}

/// Detects a byte of a character that takes several.
bool isLetterOfMany(char byte) {
    return static_cast<uchar>(byte) > kRuboutByte;
}

qsizetype bytesOfCharacter(char first) {
    const auto code = static_cast<uchar>(first);
    return code >= 0xF0 ? 4 : code >= 0xE0 ? 3 : 2;
}

bool isFinal(char byte) {
    return byte >= 0x40 && byte < kRuboutByte;
}

bool isWithinLimits(const QByteArray& sequence) {
    if (sequence.size() > kLongestSequence)
        return false;
    int numbers = 1;
    int digits = 0;
    for (const char byte : sequence) {
        digits = byte >= '0' && byte <= '9' ? digits + 1 : 0;
        numbers += byte == ';' || byte == ':' ? 1 : 0;
        if (digits > kMostDigits)
            return false;
    }
    return numbers <= kMostNumbers;
}

} // namespace

QByteArray SequenceGuard::pass(const QByteArray& bytes) {
    QByteArray passed;
    passed.reserve(bytes.size() + m_begun.size());
    for (const char byte : bytes)
        take(byte, passed);
    return passed;
}

void SequenceGuard::take(char byte, QByteArray& passed) {
    if (m_state == State::Text && isControl(byte))
        passCutCharacter(passed);
    if (byte == kCancel || byte == kSubstitute) {
        end();
    } else if (byte == kEscapeByte) {
        m_state = State::Escape; // also ends a string
        m_begun = QByteArray(1, byte);
    } else if (m_state == State::String && !isControl(byte)) {
        return;
    } else if (m_state == State::String) {
        end();
        if (byte != kBell)
            passed += byte;
    } else if (isControl(byte)) {
        passed += byte; // carried out at once, also within a sequence
    } else if (m_state == State::Text) {
        takeText(byte, passed);
    } else if (byte != kRuboutByte) {
        takeInSequence(byte, passed);
    }
}

void SequenceGuard::takeText(char byte, QByteArray& passed) {
    const bool continues = (static_cast<uchar>(byte) & 0xC0) == 0x80;
    if (!continues)
        passCutCharacter(passed);
    if (!isLetterOfMany(byte) || (continues && m_begun.isEmpty())) {
        passed += byte;
        return;
    }
    m_begun += byte;
    if (m_begun.size() == bytesOfCharacter(m_begun[0]))
        passCutCharacter(passed);
}

void SequenceGuard::takeInSequence(char byte, QByteArray& passed) {
    if (isLetterOfMany(byte)) { // which no sequence has
        end();
        takeText(byte, passed);
        return;
    }
    const bool isSecond = m_begun.size() == 1;
    if (m_begun.size() <= kLongestSequence)
        m_begun += byte;
    if (m_state == State::Escape && isSecond && byte == '[') {
        m_state = State::Control;
    } else if (m_state == State::Escape && isSecond && QByteArrayView("]PX^_").contains(byte)) {
        m_state = State::String;
    } else if (isFinal(byte) || (m_state == State::Escape && byte >= '0')) {
        if (isWithinLimits(m_begun))
            passed += m_begun;
        end();
    }
}

/// The library shows a sign for a character whose rest does not come. For U+0080 to U+009F it would move the cursor
/// out of the line on the left, and crash there.
void SequenceGuard::passCutCharacter(QByteArray& passed) {
    const bool isControl =
        m_begun.size() == 2 && m_begun[0] == '\xC2' && static_cast<uchar>(m_begun[1]) < 0xA0;
    passed += isControl ? QByteArrayLiteral("\xEF\xBF\xBD") : m_begun;
    m_begun.clear();
}

void SequenceGuard::end() {
    m_state = State::Text;
    m_begun.clear();
}

} // namespace zrk
