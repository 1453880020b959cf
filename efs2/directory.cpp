#include "efs2/directory.h"

#include <cstdio>
#include <new>

#include "diag/command.h"
#include "efs2/commands.h"
#include "efs2/exchange.h"

namespace {

constexpr size_t kEntryAnswer = 256;
constexpr size_t kNameOffset = 40;
constexpr size_t kLongestName = kEntryAnswer - kNameOffset;
constexpr unsigned char kEveryKind = 255;

enum EntryType : DWORD { kTypeFile = 0, kTypeDirectory = 1, kTypeLink = 2 };

/// One entry, as read from a response.
struct Entry {
    DWORD iType = 0;
    DWORD iSize = 0;
    DWORD iChangeTime = 0;
    char sName[kLongestName + 1] = {};
    bool bNameIsCut = false;
};

/// ReadEntry takes an entry from a response that has a directory handle and error number 0. The name must be
/// terminated, except in a response of the largest size, where it may be cut.
bool ReadEntry(const ResponseReader& answer, Entry& entry) {
    DWORD iDirectory = 0;
    DWORD iErrnum = 0;
    if (answer.Size() <= kNameOffset || !answer.U32At(4, iDirectory) || !answer.U32At(12, iErrnum))
        return false;
    if (iDirectory == 0 || iErrnum != 0)
        return false;
    answer.U32At(16, entry.iType);
    answer.U32At(24, entry.iSize);
    answer.U32At(36, entry.iChangeTime);
    const size_t iLength = answer.TextAt(kNameOffset, entry.sName, sizeof entry.sName);
    const bool bEnds = kNameOffset + iLength < answer.Size();
    entry.bNameIsCut = !bEnds && answer.Size() == kEntryAnswer;
    return bEnds || entry.bNameIsCut;
}

bool PassesFilter(DWORD iType, unsigned char iKindFilter) {
    return iKindFilter == kEveryKind || (iKindFilter <= kTypeLink && iType == iKindFilter);
}

DWORD KindOf(DWORD iType) {
    return iType == kTypeFile ? 1 : iType == kTypeLink ? 2 : 0;
}

/// FillItem makes the record of an entry; false when its path does not fit.
bool FillItem(const char* sPath, const Entry& entry, Efs2DirItem& item) {
    const char* sSeparator = entry.sName[0] == '/' ? "" : "/";
    const int iLength =
        std::snprintf(item.sName, sizeof item.sName, "%s%s%s", sPath, sSeparator, entry.sName);
    if (entry.bNameIsCut || iLength < 0 || static_cast<size_t>(iLength) >= sizeof item.sName)
        return false;
    item.isFile = KindOf(entry.iType);
    item.Date = entry.iChangeTime;
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
        Entry entry;
        Efs2Frame<kEntryAnswer> frame(m_frame, EFS2_CMD_READDIR);
        frame.Request().U32(iDirectory).U32(iSequence);
        if (!frame.ExchangeUntil(kEfs2Attempts,
                                 [&](const ResponseReader& answer) { return ReadEntry(answer, entry); }))
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
