// What the front asks about local files.
#pragma once

#include <optional>

#include "platform/types.h"

/// LocalFileExists tells whether something stands at a local path, links followed. A path that the system
/// cannot even look up for its characters counts as existing, so that nothing is replaced unasked.
bool LocalFileExists(const char* sPath);

/// LocalFileSize returns a local file's size in bytes; nothing when it does not exist, is no plain file, or
/// has 4 GiB or more, which no phone takes.
std::optional<DWORD> LocalFileSize(const char* sPath);
