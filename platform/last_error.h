// The thread's last error, by which an entry point tells its caller more than its result does.
#pragma once

#include "platform/types.h"

/// "There are no more files": an empty listing.
constexpr DWORD kErrorNoMoreFiles = 18;

/// SetThreadLastError sets the calling thread's last error as the host sees it. On Windows that is the
/// system's own; on Linux, where hosts have no such convention, it is errno, with ENODATA standing for
/// kErrorNoMoreFiles (an errno that nothing else in the library produces) and EIO for every other value.
void SetThreadLastError(DWORD iError);
