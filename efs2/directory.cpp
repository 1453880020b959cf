#include "efs2/directory.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "diag/command.h"
#include "efs2/commands.h"
#include "efs2/entry_response.h"
#include "efs2/exchange.h"

namespace {

constexpr unsigned char kEveryKind = 255;

bool PassesFilter(DWORD iType, unsigned char iKindFilter) {
    return iKindFilter == kEveryKind || (iKindFilter <= EFS2_ENTRY_LINK && iType == iKindFilter);
}

DWORD KindOf(DWORD iType) {
    return iType == EFS2_ENTRY_FILE ? 1 : iType == EFS2_ENTRY_LINK ? 2 : 0;
}

/// FillItem makes the record of an entry; false when its path does not fit.
bool FillItem(const char* sPath, const Efs2DirEntry& entry, Efs2DirItem& item) {
    const size_t iPath = std::strlen(sPath);
    const size_t iName = std::strlen(entry.sName);
    const size_t iSeparator = entry.sName[0] == '/' ? 0 : 1;
    if (entry.bNameIsCut || iPath + iSeparator + iName >= sizeof item.sName)
        return false;
    char* const sName = std::fill_n(std::copy_n(sPath, iPath, item.sName), iSeparator, '/');
    *std::copy_n(entry.sName, iName, sName) = '\0';
    item.isFile = KindOf(entry.iType);
    item.Date = entry.iCtime;
    item.FileSize = entry.iSize;
    return true;
}

bool Append(std::vector<Efs2DirItem>& list, const Efs2DirItem& item) {
    try {
        list.push_back(item);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace

bool Efs2Directory::OpenDirectory(const char* sPath, DWORD& iDirectory) {
    Efs2Frame<12> frame(m_frame, EFS2_CMD_OPENDIR);
    frame.Request().Text(*sPath == '\0' ? "/" : sPath);
    return frame.ExchangeUntilGranted(kEfs2Attempts, 8) && frame.Response().U32At(4, iDirectory);
}

bool Efs2Directory::ReadEntries(const char* sPath, DWORD iDirectory, unsigned char iKindFilter,
                                std::vector<Efs2DirItem>& list) {
    for (DWORD iSequence = 1;; ++iSequence) {
        Efs2DirEntry entry;
        Efs2Frame<kEfs2EntryResponse> frame(m_frame, EFS2_CMD_READDIR);
        frame.Request().U32(iDirectory).U32(iSequence);
        if (!frame.ExchangeUntil(kEfs2Attempts, [&](const ResponseReader& response) {
                return ReadDirectoryEntry(response, entry);
            }))
            return false;
        if (entry.sName[0] == '\0')
            return true;
        if (!PassesFilter(entry.iType, iKindFilter))
            continue;
        Efs2DirItem item{};
        if (!FillItem(sPath, entry, item))
            LogLine(m_frame, LOG_ERR, "QLIB_EfsDirectory() - Path too long, entry left out: %s/%s", sPath,
                    entry.sName);
        else if (!Append(list, item))
            return false;
    }
}

bool Efs2Directory::CloseDirectory(DWORD iDirectory, int iAttempts) {
    Efs2Frame<8> frame(m_frame, EFS2_CMD_CLOSEDIR);
    frame.Request().U32(iDirectory);
    return frame.ExchangeUntilGranted(iAttempts, 4);
}

int Efs2Directory::IterateEFS2Entries(const char* sPath, std::vector<Efs2DirItem>* pList, DWORD* piCount,
                                      unsigned char iKindFilter) {
    DWORD iDirectory = 0;
    if (!OpenDirectory(sPath, iDirectory))
        return 0;
    const bool bRead = ReadEntries(sPath, iDirectory, iKindFilter, *pList);
    if (bRead && piCount != nullptr)
        *piCount = static_cast<DWORD>(pList->size());
    // Also after a failed read, or the phone would run out of directory handles. A phone that has just
    // ignored five attempts is asked only once.
    const bool bClosed = CloseDirectory(iDirectory, bRead ? kEfs2Attempts : 1);
    return bRead && bClosed ? 1 : 0;
}

void Efs2Directory::Deliver(Efs2DirItem& item) {
    m_callbacks.m_pfnEfsDirCallBack(item.sName, static_cast<unsigned char>(item.isFile), item.Mask,
                                    item.BufOption, item.Clean, item.Date, item.FileSize,
                                    m_callbacks.m_pEfsCallBackUserData);
    LogLine(m_frame, LOG_RET, " EFS DIR - '%s' %d bytes", item.sName, item.FileSize);
}

bool Efs2Directory::EFS2_DIAG_ENUM_DIR(const char* sFolderPath) {
    LogLine(m_frame, LOG_FN, "QLIB_EfsDirectory( sFolderPath = %s )", sFolderPath);
    m_frame.ForgetFailure();
    std::vector<Efs2DirItem> list;
    DWORD iCount = 0;
    if (IterateEFS2Entries(sFolderPath, &list, &iCount, kEveryKind) == 0) {
        LogLine(m_frame, LOG_FN, "QLIB_EfsDirectory( sFolderPath = %s ) - Failed", sFolderPath);
        return false;
    }
    for (Efs2DirItem& item : list)
        if (m_callbacks.m_pfnEfsDirCallBack != nullptr) // an earlier call may have switched it off
            Deliver(item);
    return true;
}
