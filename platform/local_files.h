// What the product asks about local files beyond reading and writing them. Paths are in the encoding in which
// hosts give them: that of the system, on Windows its ANSI code page, as in fopen.
#pragma once

#include <optional>

#include "platform/types.h"

/// LocalFileExists tells whether something stands at a local path, links followed.
bool LocalFileExists(const char* sPath);

/// LocalFileSize returns a local file's size in bytes; nothing when it does not exist, is no plain file, or
/// has 4 GiB or more, which no phone takes.
std::optional<DWORD> LocalFileSize(const char* sPath);
