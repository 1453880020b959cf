// The terminal, and pipes, as the system knows them (terminal_posix.cpp, terminal_windows.cpp).
#pragma once

namespace tools {

/// Returns the columns of the terminal on standard output, 0 when it is not a terminal.
int TerminalWidth();

/// Makes writing to a pipe that nobody reads fail. On some systems it would end the program.
void LetClosedPipesFail();

} // namespace tools
