#include "efs2/directory_entry.h"

bool ReadDirectoryEntry(const ResponseReader& answer, Efs2DirEntry& entry) {
    DWORD iDirectory = 0;
    DWORD iErrnum = 0;
    if (answer.Size() <= kEfs2NameOffset || !answer.U32At(4, iDirectory) || !answer.U32At(12, iErrnum))
        return false;
    if (iDirectory == 0 || iErrnum != 0)
        return false;
    size_t iOffset = 16;
    for (DWORD* piValue :
         {&entry.iType, &entry.iMode, &entry.iSize, &entry.iAtime, &entry.iMtime, &entry.iCtime}) {
        answer.U32At(iOffset, *piValue);
        iOffset += sizeof(DWORD);
    }
    const size_t iLength = answer.TextAt(kEfs2NameOffset, entry.sName, sizeof entry.sName);
    const bool bEnds = kEfs2NameOffset + iLength < answer.Size();
    entry.bNameIsCut = !bEnds && answer.Size() == kEfs2EntryAnswer;
    return bEnds || entry.bNameIsCut;
}
