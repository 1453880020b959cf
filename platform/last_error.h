// The thread's last error, through which an entry point reports more than its result.
#pragma once

#include "platform/types.h"

/// "There are no more files": an empty listing.
constexpr DWORD kErrorNoMoreFiles = 18;

/// SetThreadLastError sets the calling thread's last error as the host sees it. On Windows that is the
/// system's own. On Linux, where hosts have no such convention, it is errno: ENODATA for kErrorNoMoreFiles
/// (nothing else in the library sets it), EIO for every other value.
void SetThreadLastError(DWORD iError);
