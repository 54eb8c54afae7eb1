#pragma once

#include <QString>

#include <vector>

namespace zrk {

/// What a board's output asks a terminal to do.
class TerminalActions {
  public:
    virtual ~TerminalActions() = default;
    /// Show a character. It may be half of a surrogate pair.
    virtual void print(QChar character) = 0;
    /// A control character, code 0 to 31 or 127, outside of any sequence.
    virtual void control(QChar character) = 0;
    /// ESC [ parameters final. A parameter that is left out is -1.
    virtual void sequence(QChar final, const std::vector<int>& parameters) = 0;
};

/// Takes a board's bytes apart: UTF-8 text, control characters, and escape sequences, of which all that a
/// plain text display has no use for are swallowed. A sequence or a character may come in pieces. Bytes that
/// are no UTF-8 are shown as Latin-1, as a boot loader's are.
///
///   ESC [ ... @-~           control sequence     ESC ] ... BEL or ESC \   title and the like
///   ESC P ^ _ ... ESC \     device strings       ESC space-/ ... 0-~      character sets
class TerminalParser {
  public:
    /// `bytes` holds one byte in each character.
    void parse(QStringView bytes, TerminalActions& actions);

  private:
    enum class State { Text, Escape, Intermediate, Sequence, String, StringEscape };

    void take(QChar character, TerminalActions& actions);
    void takeText(QChar character, TerminalActions& actions);
    void takeEscape(QChar character);
    void takeSequence(QChar character, TerminalActions& actions);
    void takeString(QChar character);
    void flushPartial(TerminalActions& actions);

    State m_state = State::Text;
    std::vector<int> m_parameters;
    bool m_isPrivate = false;  ///< a sequence for what a display like this has none of
    qsizetype m_swallowed = 0; ///< of the present sequence
    QByteArray m_partial;      ///< the begun bytes of a UTF-8 character
    int m_missing = 0;         ///< and how many are to follow
};

} // namespace zrk
