// The copy of files and folders, with its progress, its failures and its result printed.
#pragma once

#include "wfxhost/session.h"
#include "wfxhost/tree.h"

namespace tools::wfxhost {

struct CopyOptions {
    bool force = false;  // existing files are replaced
    bool update = false; // existing files are replaced when they differ in size or the source is newer
    bool dryRun = false; // nothing is copied; what would be is printed
    bool json = false;   // the result is printed as a JSON object
};

/// CopyFromPhone and CopyToPhone copy what is in a tree. Folders that are there already are filled up.
///
/// What cannot be copied is named on standard error and left out, and the rest goes on; the copy stops at
/// Ctrl-C, when the handset no longer answers, and when the disk is full. What arrived stays. They throw
/// Failure unless everything was copied. Links to folders are named, not followed, and no failure.
void CopyFromPhone(Session& session, const Tree& tree, const CopyOptions& options);
void CopyToPhone(Session& session, const Tree& tree, const CopyOptions& options);

} // namespace tools::wfxhost
