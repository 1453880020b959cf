// What the phone says about one entry of a directory.
#pragma once

#include "diag/packet.h"
#include "platform/types.h"

/// The longest answer about an entry that is taken, and where the name begins in it.
constexpr size_t kEfs2EntryAnswer = 256;
constexpr size_t kEfs2NameOffset = 40;

/// The values of Efs2DirEntry::iType; the phone may send others.
enum EFS2_EntryType_Enum : DWORD {
    EFS2_ENTRY_FILE = 0,
    EFS2_ENTRY_DIRECTORY = 1,
    EFS2_ENTRY_LINK = 2,
};

/// Efs2DirEntry is one entry, as the phone sent it. A link's values are its own, not those of its target.
struct Efs2DirEntry {
    DWORD iType = 0;
    DWORD iMode = 0;  // POSIX mode bits
    DWORD iSize = 0;  // bytes
    DWORD iAtime = 0; // times as the phone counts them (seconds)
    DWORD iMtime = 0;
    DWORD iCtime = 0;
    char sName[kEfs2EntryAnswer - kEfs2NameOffset + 1] = {}; // terminated; empty at the directory's end
    bool bNameIsCut = false;                                 // longer than the answer could carry
};

/// ReadDirectoryEntry takes an entry from an answer that grants it: with a directory handle, without an error
/// number, and with a name that ends, unless the longest answer there is could not hold its end. Otherwise it
/// is false.
bool ReadDirectoryEntry(const ResponseReader& answer, Efs2DirEntry& entry);
