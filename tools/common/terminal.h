// The terminal, and pipes, as the system knows them (terminal_posix.cpp, terminal_windows.cpp).
#pragma once

namespace tools {

/// TerminalWidth returns the columns of the terminal on standard output; 0 when that is not a terminal.
int TerminalWidth();

/// LetClosedPipesFail makes writing to a pipe that nobody reads an error, which otherwise ends the program on
/// some systems.
void LetClosedPipesFail();

} // namespace tools
