// The copy of a whole folder, with its progress shown and its failures put in words.
#pragma once

#include <filesystem>

#include "wfxhost/session.h"

namespace tools::wfxhost {

/// CopyTreeFromPhone copies a folder of the phone with all that it holds, so that `local` is its copy, and
/// CopyTreeToPhone the other way. Folders that are there already are filled up; existing files are replaced
/// only with `force`.
///
/// What cannot be copied is told on standard error and left out, and the rest goes on; the copy stops at
/// Ctrl-C, when the handset no longer answers, and when the disk is full. What arrived stays. They throw
/// Failure unless everything was copied. Links to folders are told, not followed, and no failure.
void CopyTreeFromPhone(Session& session, const PhonePath& phone, const std::filesystem::path& local,
                       bool force);
void CopyTreeToPhone(Session& session, const std::filesystem::path& local, const PhonePath& phone,
                     bool force);

} // namespace tools::wfxhost
