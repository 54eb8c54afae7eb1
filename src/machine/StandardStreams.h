#pragma once

namespace zrk {

/// The mode of the standard streams: UTF-8 and whole messages, byte for byte, for as long as this exists. On
/// a console of Windows it sets the code page, which belongs to the console and is restored at the end.
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

/// Returns false for a program with a window that has neither a console nor a redirection to write to.
[[nodiscard]] bool hasStandardOutput();

/// Returns whether standard error is a terminal, where a line may be overwritten.
[[nodiscard]] bool standardErrorIsTerminal();
[[nodiscard]] bool standardOutputIsTerminal();

/// Returns the columns of the terminal of standard error; 80 if it reports none.
[[nodiscard]] int terminalColumns();

/// Returns the rows of that terminal; 24 if it reports none.
[[nodiscard]] int terminalRows();

/// False if the terminal's own description says that it can only append ("TERM=dumb").
[[nodiscard]] bool terminalOverwrites();

/// Makes writes to a closed pipe fail instead of ending the program, which may be in the middle of a board's
/// protocol.
void ignoreBrokenPipes();

} // namespace zrk
