// Queries about local files. Paths use the encoding of the host, which is that of the system (on Windows its
// ANSI code page), as for fopen.
#pragma once

#include <optional>

#include "platform/types.h"

/// LocalFileExists returns whether a local path exists. Links are followed.
bool LocalFileExists(const char* sPath);

/// LocalFileSize returns the size of a local file; nullopt when it does not exist, is not a regular file, or
/// has 4 GiB or more, which no phone can hold.
std::optional<DWORD> LocalFileSize(const char* sPath);
