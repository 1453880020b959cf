// Listing one directory of the phone.
#pragma once

#include <vector>

#include "efs2/callbacks.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// One listed entry.
struct Efs2DirItem {
    char sName[132];         // full path: listed directory, '/', name
    DWORD isFile;            // 1 file, 0 directory (and unknown kinds), 2 link
    unsigned short Mask;     // 0
    unsigned char BufOption; // 0
    unsigned char Clean;     // 0
    DWORD Date;              // time of change, on the phone's own scale
    DWORD FileSize;          // bytes
};
static_assert(sizeof(Efs2DirItem) == 148);

/// Efs2Directory reads directories, entry by entry, in the phone's order. It runs on the caller's thread, and
/// so does the directory callback, after the phone's directory has been closed. Frame and callbacks must
/// outlive it.
class QUILLET_API Efs2Directory {
public:
    Efs2Directory(CommandFrame& frame, Efs2Callbacks& callbacks) : m_frame(frame), m_callbacks(callbacks) {}

    /// EFS2_DIAG_ENUM_DIR lists one level of sFolderPath (empty: the root; at most 251 characters) to the
    /// directory callback. Each request is sent up to five times, with a time-out of 2000 ms. When the phone
    /// grants none of the five, the result is false and the callback is not called: listings are never
    /// partial. An entry whose full path exceeds the 131 characters of a record, or whose name exceeds what a
    /// response carries, is left out with an error line in the log, because a cut path would name something
    /// else.
    bool EFS2_DIAG_ENUM_DIR(const char* sFolderPath);

private:
    int IterateEFS2Entries(const char* sPath, std::vector<Efs2DirItem>* pList, DWORD* piCount,
                           unsigned char iKindFilter);
    bool OpenDirectory(const char* sPath, DWORD& iDirectory);
    bool ReadEntries(const char* sPath, DWORD iDirectory, unsigned char iKindFilter,
                     std::vector<Efs2DirItem>& list);
    bool CloseDirectory(DWORD iDirectory, int iAttempts);
    void Deliver(Efs2DirItem& item);

    CommandFrame& m_frame;
    Efs2Callbacks& m_callbacks;
};
