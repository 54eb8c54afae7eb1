#pragma once

#include "controls/SentImage.h"
#include "serial/Link.h"

#include <QByteArray>

#include <chrono>
#include <functional>

namespace zrk {

/// A check of the board's memory: it asks a program at its prompt for the checksum of what was sent. The
/// download's own acknowledgements confirm that bytes have come, not which ones.
///
/// In the command "%a" is the image's address and "%n" its number of bytes, both hexadecimal with 0x. The
/// answer is what comes after the prompt's echo of the command; it is right if one of its words, between
/// characters other than letters and digits, is the CRC-32 in eight hexadecimal digits.
class MemoryCheck {
  public:
    explicit MemoryCheck(Link& link) : m_link(link) {}

    /// Checks one slot, which SharedState::Sent must have. An operation, whose outcome Operation keeps;
    /// yields. A line of answer without the sum, and a second of quiet after the prompt that follows it (five
    /// without a prompt: the command may be at work), is a WrongAnswer; no answer within `limit` a
    /// LimitReached. `heard` gets what the board sends, also what was unread before.
    void check(std::size_t slot, const QString& command, std::chrono::milliseconds limit,
               const std::function<void(const QByteArray&)>& heard);

  private:
    [[nodiscard]] QString commandFor(std::size_t slot, const QString& command) const;
    [[nodiscard]] Operation::End compare(std::size_t slot, const QString& command,
                                         std::chrono::milliseconds limit,
                                         const std::function<void(const QByteArray&)>& heard);

    Link& m_link;
};

} // namespace zrk
