// The terminal, as the system knows it (terminal_posix.cpp, terminal_windows.cpp).
#pragma once

namespace tools {

/// TerminalWidth gives the columns of the terminal on standard output; 0 when that is not a terminal.
int TerminalWidth();

} // namespace tools
