// The terminal, the command line and pipes, as the system knows them (terminal_posix.cpp,
// terminal_windows.cpp).
#pragma once

#include <string>
#include <vector>

namespace tools {

/// Returns the words of the command line after the program's name, in UTF-8 where the system knows the
/// encoding. `count` and `words` are those of main. Throws when the words cannot be read.
std::vector<std::string> CommandLineWords(int count, char** words);

/// Makes the terminal show the program's output as UTF-8 until the program ends.
void ShowUtf8();

/// Returns the columns of the terminal on standard output, 0 when it is not a terminal.
int TerminalWidth();

/// Makes writing fail to a pipe that nobody reads, and beyond the largest size of a file. On some systems it
/// would end the program.
void LetWritesFail();

} // namespace tools
