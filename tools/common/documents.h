// Texts generated from a program's table of commands.
#pragma once

#include <string>

#include "common/program.h"

namespace tools {

/// Returns the help text of the whole program.
std::string ProgramHelp(const Program& program);
/// Returns the help text of one command.
std::string CommandHelp(const Program& program, const Command& command);

/// Returns "NAME COMMAND ARGUMENTS".
std::string UsageOf(const Program& program, const Command& command);

/// Returns "NAME VERSION" and a line feed.
std::string VersionLine(const Program& program);
/// Returns the version, which is the same for all programs.
const char* Version();

/// Returns a command with its arguments, or an option with its short forms and its value.
std::string FullName(const Command& command);
std::string FullName(const Option& option);

/// Returns a paragraph that explains the exit statuses of the program.
std::string ExitStatusText(const Program& program);

/// Returns the program's manual page (section 1) in the macro language of man(7).
std::string ManualPage(const Program& program);

/// Returns a script that defines the program's completion when bash sources it.
std::string BashCompletion(const Program& program);

} // namespace tools
