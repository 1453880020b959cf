// The commands of wfxhost.
#pragma once

#include <string>

#include "common/program.h"
#include "wfxhost/session.h"

namespace tools::wfxhost {

// The plug-in must have been started. Each command returns when it succeeded and throws Failure otherwise.

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

/// Returns the entry at `path`. Throws Failure when there is none.
Entry Existing(Session& session, const PhonePath& path);

/// Throws Failure when `path` is the root folder, which cannot be removed or moved.
void RequireNotRoot(const PhonePath& path);

/// Throws the Failure of the operation that was just tried. The reason is the plug-in's if it sent one, else
/// "WHAT failed: the handset stopped answering" if that is so, else `otherwise`.
[[noreturn]] void Fail(Session& session, const std::string& what, const std::string& otherwise);

/// Returns the path that a move to `typed` really leads to: `name` inside `typed` when that is a folder or
/// was typed as one, else `typed` itself.
PhonePath IntoFolder(Session& session, const PhonePath& typed, const std::string& name);

/// Throws Failure when the folder that is to contain `path` does not exist.
void RequireTargetFolder(Session& session, const PhonePath& path);

} // namespace tools::wfxhost
