// The phone's response about one entry of a directory.
#pragma once

#include "diag/packet.h"
#include "efs2/directory_entry.h"

/// The longest response about an entry. Longer ones are cut.
constexpr size_t kEfs2EntryResponse = 256;

/// ReadDirectoryEntry takes an entry from a response that has a directory handle and error number 0. The name
/// must be terminated, except in a response of the largest size, where it may be cut.
bool ReadDirectoryEntry(const ResponseReader& response, Efs2DirEntry& entry);
