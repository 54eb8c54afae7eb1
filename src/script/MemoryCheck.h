#pragma once

#include "controls/SentImage.h"
#include "serial/Link.h"

#include <QByteArray>

#include <chrono>
#include <functional>

namespace zrk {

/// Asks a program at its prompt for the checksum of what was sent into the board's memory. The download's own
/// acknowledgements say that bytes have come, not which; this says whether they are the same.
///
/// In the command "%a" stands for the image's address and "%n" for its bytes, both hexadecimal with 0x. The
/// answer is what comes behind the prompt's echo of the command; it is right when one of its words, between
/// characters that are no letters and digits, is the CRC-32 in eight hexadecimal digits.
class MemoryCheck {
  public:
    explicit MemoryCheck(Link& link) : m_link(link) {}

    /// Checks one slot, which SharedState::Sent has to know. An operation, with its outcome at the gate;
    /// yields. A line of answer without the sum, and a second of quiet behind the prompt that follows it
    /// (five where none follows: the command may be at work), is a WrongAnswer; no answer within `limit` a
    /// LimitReached. `heard` gets what the board says, also what nobody had read before.
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
