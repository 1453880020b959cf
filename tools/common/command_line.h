// A program's command line and its exit status.
#pragma once

#include "common/program.h"

namespace tools {

/// RunProgram does what the command line asks for and prints the reason of a failure. Returns the exit
/// status. A pipe that nobody reads any more makes writing to it fail, and does not end the program.
int RunProgram(const Program& program, int count, char** words);

} // namespace tools
