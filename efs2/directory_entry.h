// An entry of a directory, as the phone reports it.
#pragma once

#include <cstddef>

#include "platform/types.h"

/// The values of Efs2DirEntry::iType; the phone may send others.
enum EFS2_EntryType_Enum : DWORD {
    EFS2_ENTRY_FILE = 0,
    EFS2_ENTRY_DIRECTORY = 1,
    EFS2_ENTRY_LINK = 2,
};

/// Efs2DirEntry is one entry, as the phone sent it. A link's values are its own, not those of its target.
struct Efs2DirEntry {
    /// The longest name that a response can carry.
    static constexpr size_t kLongestName = 216;

    DWORD iType = 0;                   // an EFS2_EntryType_Enum
    DWORD iMode = 0;                   // POSIX mode bits
    DWORD iSize = 0;                   // bytes
    DWORD iAtime = 0;                  // last access, in seconds as the phone counts them
    DWORD iMtime = 0;                  // last change of the content
    DWORD iCtime = 0;                  // last change of the entry
    char sName[kLongestName + 1] = {}; // terminated; empty at the directory's end
    bool bNameIsCut = false;           // longer than the response could carry
};
