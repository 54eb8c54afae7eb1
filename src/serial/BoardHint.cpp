#include "serial/BoardHint.h"

#include <algorithm>
#include <cctype>

namespace zrk {
namespace {

constexpr qsizetype kLeastForText = 12;
// "U-Boot 1.1.5" has five, and its last figure ends a wait for a BootID.
constexpr qsizetype kLeastLetters = 4;
constexpr qsizetype kLeastForGarbage = 6;
constexpr char kBootId = '5';

bool isText(char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return std::isprint(code) != 0 || std::isspace(code) != 0;
}

/// Returns whether it looks like a program's output, such as a boot loader's banner.
bool looksLikeText(const QByteArray& received) {
    const qsizetype handshake = received.lastIndexOf("5R"); // answers of the primary boot may follow
    const QByteArray bytes = handshake < 0 ? received : received.mid(handshake + 2);
    const auto letters = std::count_if(bytes.cbegin(), bytes.cend(), [](char byte) {
        return std::isalpha(static_cast<unsigned char>(byte)) != 0;
    });
    return bytes.size() >= kLeastForText && std::all_of(bytes.cbegin(), bytes.cend(), isText) &&
           letters >= kLeastLetters;
}

bool looksGarbled(const QByteArray& bytes) {
    const auto strange = bytes.size() - std::count_if(bytes.cbegin(), bytes.cend(), isText);
    const bool understood = bytes.contains("55R"); // by the boot ROM; frames are not text either
    return !understood && bytes.size() >= kLeastForGarbage && strange * 2 > bytes.size();
}

/// Returns the bits that all bytes lack or all have, as "bits 0x81 are always 0"; "" if there are none.
QString stuckBits(const QByteArray& bytes) {
    unsigned char seen = 0;
    unsigned char always = 0xFF;
    for (const char byte : bytes) {
        seen = static_cast<unsigned char>(seen | static_cast<unsigned char>(byte));
        always = static_cast<unsigned char>(always & static_cast<unsigned char>(byte));
    }
    QString text;
    if (seen != 0xFF)
        text =
            QStringLiteral("; the bits 0x%1 are 0 in all of them").arg(0xFF & ~seen, 2, 16, QLatin1Char('0'));
    if (always != 0)
        text += QStringLiteral("; the bits 0x%1 are 1 in all of them").arg(always, 2, 16, QLatin1Char('0'));
    return text;
}

} // namespace

QString boardHint(Outcome outcome, const QByteArray& received, const QString& port) {
    const bool silent = outcome == Outcome::TimedOut || outcome == Outcome::LimitReached;
    if (!silent && outcome != Outcome::WrongAnswer)
        return {};
    if (received.isEmpty())
        return QStringLiteral(
                   "Nothing was received from %1: check that this is the board's port, the cable and "
                   "the board's power.")
            .arg(port);
    if (looksGarbled(received))
        return QStringLiteral("The data from %1 is garbled: check the speed (115200 8N1), the ground and the "
                              "cable%2.")
            .arg(port, stuckBits(received));
    if (looksLikeText(received))
        return QStringLiteral("The board runs a program that prints text instead of waiting in its boot ROM: "
                              "install the service jumper, then cycle the power.");
    // A board in its boot ROM announces itself; in the middle of a run it has restarted.
    if (outcome == Outcome::WrongAnswer && received.endsWith(kBootId) && received.count(kBootId) > 2)
        return QStringLiteral("The board announced its BootID (\"5\") again in the middle: it has restarted. "
                              "Check its power supply.");
    return {};
}

QString bootRomHint(const QByteArray& received) {
    if (received.isEmpty() || received.count(kBootId) < received.size())
        return {};
    return QStringLiteral(
        "The board announces its BootID (\"5\"): it waits in its boot ROM and runs no program. "
        "Put the step load before this one, or remove the service jumper and cycle the power.");
}

} // namespace zrk
