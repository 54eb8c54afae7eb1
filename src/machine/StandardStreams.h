#pragma once

namespace zrk {

/// Has the standard streams take UTF-8 and write whole messages, byte for byte, for as long as it lives. On a
/// console of Windows it sets the code page, which belongs to the console and is put back at the end.
class StandardStreams {
  public:
    StandardStreams();
    ~StandardStreams();
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;

  private:
    unsigned m_inputBefore = 0; ///< code pages; 0 without a console
    unsigned m_outputBefore = 0;
};

/// False for a program with a window that neither a console nor a redirection gives a place to write to.
[[nodiscard]] bool hasStandardOutput();

/// True when standard error is a terminal, where a line may be written over.
[[nodiscard]] bool standardErrorIsTerminal();
[[nodiscard]] bool standardOutputIsTerminal();

/// The columns of the terminal that standard error is; 80 where it tells none.
[[nodiscard]] int terminalColumns();

/// The rows of that terminal; 24 where it tells none.
[[nodiscard]] int terminalRows();

/// False if the terminal's own description says that it can only append ("TERM=dumb").
[[nodiscard]] bool terminalOverwrites();

/// Lets writes to a closed pipe fail instead of ending the program, which may be in the middle of
/// talking to a board.
void ignoreBrokenPipes();

} // namespace zrk
