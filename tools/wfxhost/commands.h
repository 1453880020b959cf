// The commands of wfxhost.
#pragma once

#include <string>

#include "common/program.h"
#include "wfxhost/session.h"

namespace tools::wfxhost {

// The commands work on a plug-in that is started. They return after a success and throw Failure otherwise.

// list_commands.cpp
void ListCommand(Session& session, const Job& job);
void FindCommand(Session& session, const Job& job);
void UsageCommand(Session& session, const Job& job);
// get_command.cpp
void GetCommand(Session& session, const Job& job);
void PrintCommand(Session& session, const Job& job);
// put_command.cpp
void PutCommand(Session& session, const Job& job);
// remove_commands.cpp
void RemoveCommand(Session& session, const Job& job);
void RemoveFolderCommand(Session& session, const Job& job);
// change_commands.cpp
void MakeFolderCommand(Session& session, const Job& job);
void MoveCommand(Session& session, const Job& job);
void LinkCommand(Session& session, const Job& job);
// execute_commands.cpp
void ChangeFolderCommand(Session& session, const Job& job);
void PropertiesCommand(Session& session, const Job& job);

/// Existing returns the entry at `path`; throws Failure when there is none.
Entry Existing(Session& session, const PhonePath& path);

/// RequireNotRoot throws Failure for the root folder, with which some things cannot be done.
void RequireNotRoot(const PhonePath& path);

/// Fail throws the failure of the operation that was just tried: with the plug-in's reason if it sent one,
/// else "WHAT failed: the handset stopped answering" when that is so, else `otherwise`.
[[noreturn]] void Fail(Session& session, const std::string& what, const std::string& otherwise);

/// IntoFolder returns the path that a move to `typed` really means: inside it, under `name`, when it is a
/// folder (or was typed as one), else `typed` itself.
PhonePath IntoFolder(Session& session, const PhonePath& typed, const std::string& name);

/// RequireTargetFolder throws when the folder that is to hold `path` does not exist.
void RequireTargetFolder(Session& session, const PhonePath& path);

} // namespace tools::wfxhost
