#pragma once

namespace zrk {

/// False for a program with a window that neither a console nor a redirection gives a place to write to.
[[nodiscard]] bool hasStandardOutput();

/// True when standard error is a terminal, where a line may be written over.
[[nodiscard]] bool standardErrorIsTerminal();
[[nodiscard]] bool standardOutputIsTerminal();

/// The columns of the terminal that standard error is; 80 where it tells none.
[[nodiscard]] int terminalColumns();

/// Lets writes to a closed pipe fail instead of ending the program, which may be in the middle of
/// talking to a board.
void ignoreBrokenPipes();

} // namespace zrk
