// Copying files and folders, and printing the progress, the failures and the result.
#pragma once

#include "wfxhost/session.h"
#include "wfxhost/tree.h"

namespace tools::wfxhost {

struct CopyOptions {
    bool force = false;  // replace existing files
    bool update = false; // replace existing files whose size differs or whose source is newer
    bool dryRun = false; // copy nothing; print what would be copied
    bool json = false;   // print the result as a JSON object
};

/// CopyFromPhone and CopyToPhone copy a tree. Existing folders are merged.
///
/// What cannot be copied is named on standard error and skipped. The copy stops early at Ctrl-C, when the
/// handset no longer answers, and when the disk is full; complete files stay. Links to folders are named and
/// not followed, which is not a failure. Throws Failure unless everything was copied.
void CopyFromPhone(Session& session, const Tree& tree, const CopyOptions& options);
void CopyToPhone(Session& session, const Tree& tree, const CopyOptions& options);

} // namespace tools::wfxhost
