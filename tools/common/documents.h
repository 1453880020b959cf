// The texts that are made from a program's table.
#pragma once

#include <string>

#include "common/program.h"

namespace tools {

/// ProgramHelp returns the help text of the whole program, CommandHelp that of one command.
std::string ProgramHelp(const Program& program);
std::string CommandHelp(const Program& program, const Command& command);

/// UsageOf returns "NAME COMMAND ARGUMENTS".
std::string UsageOf(const Program& program, const Command& command);

/// VersionLine returns "NAME VERSION" and a line feed.
std::string VersionLine(const Program& program);
/// Version returns the version of all programs: the one number of the build.
const char* Version();

/// FullName returns a command with its arguments, or an option with its short forms and its value.
std::string FullName(const Command& command);
std::string FullName(const Option& option);

/// ExitStatusText returns what the exit statuses of the program mean, as one paragraph.
std::string ExitStatusText(const Program& program);

/// ManualPage returns the program's page of section 1 for man(1).
std::string ManualPage(const Program& program);

/// BashCompletion returns a script that defines the program's completion when bash reads it.
std::string BashCompletion(const Program& program);

} // namespace tools
