// Listing one directory of the phone.
#pragma once

#include <vector>

#include "efs2/callbacks.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// One listed entry.
struct Efs2DirItem {
    char sName[132];         // full path: the listed directory's path, '/', the name
    DWORD isFile;            // 1 file, 0 directory (and kinds that are not known), 2 link
    unsigned short Mask;     // 0
    unsigned char BufOption; // 0
    unsigned char Clean;     // 0
    DWORD Date;              // the phone's change time, as the phone counts it
    DWORD FileSize;          // bytes
};
static_assert(sizeof(Efs2DirItem) == 148);

/// Efs2Directory reads directories, entry by entry, in the phone's order. Caller's thread, on which the
/// directory callback runs too, after the phone's directory has been closed again. Frame and callbacks must
/// outlive it.
class QUILLET_API Efs2Directory {
public:
    Efs2Directory(CommandFrame& frame, Efs2Callbacks& callbacks) : m_frame(frame), m_callbacks(callbacks) {}

    /// EFS2_DIAG_ENUM_DIR lists one level of sFolderPath (empty: the root; at most 251 characters) to the
    /// directory callback. False when the phone did not grant every request in five attempts each (2000 ms
    /// for each unanswered one): then the callback is not called at all, so a listing that arrives is whole.
    /// An entry whose full path exceeds the 131 characters of a record, or whose name exceeds what an answer
    /// carries, is left out with an error line in the log: cut, it would name something else.
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
