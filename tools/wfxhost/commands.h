// The commands of wfxhost.
#pragma once

#include <string>
#include <vector>

#include "wfxhost/session.h"

namespace wfxhost {

/// What the command line asks for.
struct Job {
    std::vector<std::string> arguments; // of the command
    bool force = false;                 // replace existing files
};

/// One command: how it is called and what carries it out. `run` returns after a success and throws Failure
/// otherwise.
struct Command {
    const char* name;
    const char* arguments; // as the help text shows them
    const char* purpose;
    size_t least; // number of arguments
    size_t most;
    void (*run)(Session& session, const Job& job);
};

/// AllCommands gives the table of the commands, in the order of the help text.
const std::vector<Command>& AllCommands();

/// The two copy commands (copy_commands.cpp).
void GetCommand(Session& session, const Job& job);
void PutCommand(Session& session, const Job& job);

/// Links, folders and properties (execute_commands.cpp).
void LinkCommand(Session& session, const Job& job);
void ChangeFolderCommand(Session& session, const Job& job);
void PropertiesCommand(Session& session, const Job& job);

/// Existing gives the entry at `path`; throws when there is none.
Entry Existing(Session& session, const PhonePath& path);

/// Quoted gives a path for a message: in quotes, with control characters made visible.
std::string Quoted(const std::string& path);

/// RequireAnswer throws when the handset no longer answers, with `what` failed on the way ("the copy").
void RequireAnswer(Session& session, const std::string& what);

/// IntoFolder gives the path that a copy or move to `typed` really means: inside it, under `name`, when it
/// is a folder (or was typed as one), else `typed` itself.
PhonePath IntoFolder(Session& session, const PhonePath& typed, const std::string& name);

/// RequireTargetFolder throws when the folder that is to hold `path` is not there.
void RequireTargetFolder(Session& session, const PhonePath& path);

} // namespace wfxhost
