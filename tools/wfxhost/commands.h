// The commands of wfxhost.
#pragma once

#include <string>

#include "common/command_line.h"
#include "wfxhost/session.h"

namespace tools::wfxhost {

// The commands work on a plug-in that is started. They return after a success and throw Failure otherwise.

// commands.cpp
void ListCommand(Session& session, const Job& job);
void MakeFolderCommand(Session& session, const Job& job);
void RemoveFolderCommand(Session& session, const Job& job);
void RemoveFileCommand(Session& session, const Job& job);
void MoveCommand(Session& session, const Job& job);
// copy_commands.cpp
void GetCommand(Session& session, const Job& job);
void PutCommand(Session& session, const Job& job);
// execute_commands.cpp
void LinkCommand(Session& session, const Job& job);
void ChangeFolderCommand(Session& session, const Job& job);
void PropertiesCommand(Session& session, const Job& job);

/// Existing gives the entry at `path`; throws when there is none.
Entry Existing(Session& session, const PhonePath& path);

/// RequireAnswer throws when the handset no longer answers, with `what` failed on the way ("the copy").
void RequireAnswer(Session& session, const std::string& what);

/// Remove has the phone remove an entry, and looks whether it is gone: the plug-in's result tells only that
/// the phone answered. Throws when it is still there, with `ifRefused` behind the reason, and when nothing
/// tells.
void Remove(Session& session, const PhonePath& path, bool (Session::*remove)(const PhonePath&),
            const std::string& ifRefused);

/// IntoFolder gives the path that a copy or move to `typed` really means: inside it, under `name`, when it
/// is a folder (or was typed as one), else `typed` itself.
PhonePath IntoFolder(Session& session, const PhonePath& typed, const std::string& name);

/// RequireTargetFolder throws when the folder that is to hold `path` is not there.
void RequireTargetFolder(Session& session, const PhonePath& path);

} // namespace tools::wfxhost
