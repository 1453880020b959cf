// The terminal, the command line and pipes, as the system knows them (terminal_posix.cpp,
// terminal_windows.cpp).
#pragma once

#include <string>
#include <vector>

namespace tools {

/// CommandLineWords returns the words of the command line after the program's name, in UTF-8 where the system
/// knows the encoding. `count` and `words` are those of main. Throws when they cannot be read.
std::vector<std::string> CommandLineWords(int count, char** words);

/// ShowUtf8 makes the terminal show the program's output as UTF-8 until the program ends.
void ShowUtf8();

/// TerminalWidth returns the columns of the terminal on standard output; 0 when that is not a terminal.
int TerminalWidth();

/// LetWritesFail makes writing to a pipe that nobody reads, or beyond the size that files may have, an error,
/// which otherwise ends the program on some systems.
void LetWritesFail();

} // namespace tools
