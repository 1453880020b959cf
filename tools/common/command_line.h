// A program's command line and exit status.
#pragma once

#include "common/program.h"

namespace tools {

/// Runs the command that the command line names and prints the reason if it fails. Returns the exit status.
/// Writing to a pipe that nobody reads fails instead of ending the program.
int RunProgram(const Program& program, int count, char** words);

} // namespace tools
