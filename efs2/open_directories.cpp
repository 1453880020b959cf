#include "efs2/open_directories.h"

#include "diag/command.h"
#include "efs2/commands.h"
#include "efs2/entry_response.h"
#include "efs2/exchange.h"

bool Efs2OpenDirectories::EFS2_DIAG_OPENDIR(const char* sFolderPath, DWORD& iDirectory, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_OPENDIR( sFolderPath = %s )", sFolderPath);
    m_frame.ForgetFailure();
    Efs2Frame<12> frame(m_frame, EFS2_CMD_OPENDIR);
    frame.Request().Text(*sFolderPath == '\0' ? "/" : sFolderPath);
    if (!frame.ExchangeForVerdict(kEfs2Attempts, 8, iErrorNo))
        return false;
    if (iErrorNo == 0)
        frame.Response().U32At(4, iDirectory);
    LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_OPENDIR( iErrorNo = %d )", iErrorNo);
    return true;
}

bool Efs2OpenDirectories::EFS2_DIAG_READDIR(DWORD iDirectory, DWORD iSequence, Efs2DirEntry& entry,
                                            DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_READDIR( iDirectory = %u, iSequence = %u )", iDirectory,
            iSequence);
    m_frame.ForgetFailure();
    Efs2Frame<kEfs2EntryResponse> frame(m_frame, EFS2_CMD_READDIR);
    frame.Request().U32(iDirectory).U32(iSequence);
    Efs2DirEntry found;
    bool bAnswered = false;
    frame.ExchangeUntil(kEfs2Attempts, [&](const ResponseReader& response) {
        const bool bGranted = ReadDirectoryEntry(response, found);
        DWORD iVerdict = 0;
        if (bGranted || (response.U32At(12, iVerdict) && iVerdict != 0)) {
            bAnswered = true;
            iErrorNo = iVerdict;
        }
        return bGranted;
    });
    if (!bAnswered)
        return false;
    if (iErrorNo == 0)
        entry = found;
    LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_READDIR( sName = %s, iErrorNo = %d )",
            iErrorNo == 0 ? entry.sName : "", iErrorNo);
    return true;
}

bool Efs2OpenDirectories::EFS2_DIAG_CLOSEDIR(DWORD iDirectory, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_CLOSEDIR( iDirectory = %u )", iDirectory);
    m_frame.ForgetFailure();
    Efs2Frame<8> frame(m_frame, EFS2_CMD_CLOSEDIR);
    frame.Request().U32(iDirectory);
    if (!frame.ExchangeForVerdict(kEfs2Attempts, 4, iErrorNo))
        return false;
    LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_CLOSEDIR( iErrorNo = %d )", iErrorNo);
    return true;
}
