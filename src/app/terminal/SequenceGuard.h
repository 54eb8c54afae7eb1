#pragma once

#include <QByteArray>

namespace zrk {

/// A filter between the line and the terminal library, which trusts its input: a noisy line sends sequences
/// with too many or too large numbers, and strings that never end. Passes text, control characters, and whole
/// sequences within the library's limits; drops strings for the terminal, such as window titles, which end at
/// the latest with their line. Cut sequences and characters wait for their rest.
class SequenceGuard {
  public:
    /// Returns the complete part for the library; keeps an incomplete end for the next call.
    [[nodiscard]] QByteArray pass(const QByteArray& bytes);

  private:
    enum class State { Text, Escape, Control, String };

    void take(char byte, QByteArray& passed);
    void takeText(char byte, QByteArray& passed);
    void takeInSequence(char byte, QByteArray& passed);
    void passCutCharacter(QByteArray& passed);
    void end();

    State m_state = State::Text;
    QByteArray m_begun; ///< of a sequence, in a text of a character, as far as it has come
};

} // namespace zrk
