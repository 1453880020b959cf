// Directories of the phone as open objects: opened, read entry by entry, closed.
#pragma once

#include "efs2/directory_entry.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// Efs2OpenDirectories: each request is tried five times until the phone grants it, within 2000 ms per
/// attempt. Caller's thread. The frame must outlive it.
///
/// True means that the phone answered; whether it granted the request is in iErrorNo (0: yes; otherwise
/// the phone's error number, of the last response). Other out-values are written only when it did. Without a
/// usable response the result is false and no out-value changes.
class QUILLET_API Efs2OpenDirectories {
public:
    explicit Efs2OpenDirectories(CommandFrame& frame) : m_frame(frame) {}

    /// EFS2_DIAG_OPENDIR opens a directory (empty: the root; at most 251 characters). Every handle needs its
    /// EFS2_DIAG_CLOSEDIR: the phone has few.
    bool EFS2_DIAG_OPENDIR(const char* sFolderPath, DWORD& iDirectory, DWORD& iErrorNo);

    /// EFS2_DIAG_READDIR reads entry number iSequence: 1, 2, 3 ..., in the phone's order. After the last one
    /// its name is empty.
    bool EFS2_DIAG_READDIR(DWORD iDirectory, DWORD iSequence, Efs2DirEntry& entry, DWORD& iErrorNo);

    /// EFS2_DIAG_CLOSEDIR closes a directory.
    bool EFS2_DIAG_CLOSEDIR(DWORD iDirectory, DWORD& iErrorNo);

private:
    CommandFrame& m_frame;
};
