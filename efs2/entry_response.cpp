#include "efs2/entry_response.h"

namespace {

constexpr size_t kNameOffset = 40;

static_assert(kNameOffset + Efs2DirEntry::kLongestName == kEfs2EntryResponse);

} // namespace

bool ReadDirectoryEntry(const ResponseReader& response, Efs2DirEntry& entry) {
    DWORD iDirectory = 0;
    DWORD iErrnum = 0;
    if (response.Size() <= kNameOffset || !response.U32At(4, iDirectory) || !response.U32At(12, iErrnum))
        return false;
    if (iDirectory == 0 || iErrnum != 0)
        return false;
    size_t iOffset = 16;
    for (DWORD* piValue :
         {&entry.iType, &entry.iMode, &entry.iSize, &entry.iAtime, &entry.iMtime, &entry.iCtime}) {
        response.U32At(iOffset, *piValue);
        iOffset += sizeof(DWORD);
    }
    const size_t iLength = response.TextAt(kNameOffset, entry.sName, sizeof entry.sName);
    const bool bEnds = kNameOffset + iLength < response.Size();
    entry.bNameIsCut = !bEnds && response.Size() == kEfs2EntryResponse;
    return bEnds || entry.bNameIsCut;
}
