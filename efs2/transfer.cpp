// The operations that copy a file: open, blocks, close, and the removal after an abort.
#include "efs2/transfer.h"

#include <cstdio>
#include <cstring>

#include "diag/command.h"
#include "efs2/commands.h"
#include "efs2/exchange.h"
#include "efs2/local_files.h"

namespace {

constexpr LONG kOpenForReading = 0;
constexpr LONG kReadableByAll = 0444;
constexpr LONG kOpenForWriting = 0x241; // write-only, create, truncate
constexpr LONG kWritableByAll = 0666;
constexpr size_t kLocalPathSize = 1024;

using Kind = OperationFailure::Kind;

const char* PassOrFail(bool bPassed) {
    return bPassed ? "PASS" : "FAIL";
}

const char* Shown(const char* sText) {
    return sText == nullptr ? "(null)" : sText;
}

} // namespace

bool Efs2Transfer::Fail(const OperationFailure& failure) {
    m_frame.NoteFailure(failure);
    return false;
}

bool Efs2Transfer::EFS2FileOpen(const char* sEFS_File, LONG iOpenFlags, LONG iMode, LONG* piDescriptor) {
    Efs2Frame<12> frame(m_frame, EFS2_CMD_OPEN);
    frame.Request().S32(iOpenFlags).S32(iMode).Text(sEFS_File);
    DWORD iDescriptor = 0;
    if (!frame.ExchangeUntilGranted(kEfs2Attempts, 8) || !frame.Response().U32At(4, iDescriptor))
        return false;
    *piDescriptor = static_cast<LONG>(iDescriptor);
    return true;
}

bool Efs2Transfer::EFS2FileClose(LONG iDescriptor) {
    Efs2Frame<8> frame(m_frame, EFS2_CMD_CLOSE);
    frame.Request().S32(iDescriptor);
    return frame.ExchangeUntilGranted(kEfs2Attempts, 4);
}

bool Efs2Transfer::PerformEFS2ReadOp(const char* sEFS_File, DWORD* piBytesRead, const char* sLocalFile) {
    const bool bGiven = sLocalFile != nullptr && *sLocalFile != '\0';
    if (std::strlen(bGiven ? sLocalFile : sEFS_File) >= kLocalPathSize)
        return Fail({Kind::LocalNotWritten});
    LONG iDescriptor = 0;
    if (!EFS2FileOpen(sEFS_File, kOpenForReading, kReadableByAll, &iDescriptor))
        return false;
    char sDir[kLocalPathSize];
    char sResolved[kLocalPathSize];
    if (bGiven)
        std::snprintf(sResolved, sizeof sResolved, "%s", sLocalFile);
    else
        Efs2Metadata::EfsFnSplit(sEFS_File, sDir, sResolved);
    const bool bRead = EFS2ReadEntireFile(iDescriptor, piBytesRead, sLocalFile, sResolved);
    return EFS2FileClose(iDescriptor) && bRead;
}

bool Efs2Transfer::EFS2_DIAG_READ_FILE(const char* sLocalFile, const char* sEFS_File) {
    LogLine(m_frame, LOG_FN, "QLIB_EfsRead( sLocalFile = %s, sEFS_File = %s)", Shown(sLocalFile), sEFS_File);
    m_callbacks.m_bEfsAbort = 0;
    m_frame.ForgetFailure();
    DWORD iBytesRead = 0;
    const bool bPassed = PerformEFS2ReadOp(sEFS_File, &iBytesRead, sLocalFile);
    LogLine(m_frame, LOG_RET, "QLIB_EfsRead() - %s", PassOrFail(bPassed));
    return bPassed;
}

bool Efs2Transfer::PerformEFS2WriteOp(const char* sEFS_File, UploadSource& source) {
    if (!source.Measure())
        return Fail({Kind::LocalNotRead});
    const DWORD iAvailable = m_metadata.StatFSAvailSpace("");
    if (iAvailable == Efs2Metadata::kPathTooLong || source.Size() > iAvailable)
        return Fail({Kind::NoRoom});
    LONG iDescriptor = 0;
    if (!EFS2FileOpen(sEFS_File, kOpenForWriting, kWritableByAll, &iDescriptor))
        return false;
    m_bLastWriteOpenedTarget = true;
    const bool bWritten = EFS2WriteEntireFile(iDescriptor, source, sEFS_File);
    const bool bClosed = EFS2FileClose(iDescriptor);
    if (bWritten && IsAborted())
        m_metadata.EFS2_DIAG_UNLINK(sEFS_File);
    return bWritten && bClosed;
}

bool Efs2Transfer::Uploaded(const char* sOperation, const char* sEFS_File, UploadSource& source) {
    m_callbacks.m_bEfsAbort = 0;
    m_frame.ForgetFailure();
    m_bLastWriteOpenedTarget = false;
    const bool bPassed = PerformEFS2WriteOp(sEFS_File, source);
    LogLine(m_frame, LOG_RET, "%s() - %s", sOperation, PassOrFail(bPassed));
    return bPassed;
}

bool Efs2Transfer::EFS2_DIAG_WRITE_FILE(const char* sLocalFile, const char* sEFS_File) {
    LogLine(m_frame, LOG_FN, "QLIB_EfsWrite( sLocalFile = %s, sEFS_File = %s)", Shown(sLocalFile), sEFS_File);
    UploadSource source(sLocalFile);
    return Uploaded("QLIB_EfsWrite", sEFS_File, source);
}

bool Efs2Transfer::EFS2_DIAG_WRITE_FILE_MEM(const char* pLocalFile, DWORD iSize, const char* sEFS_File) {
    LogLine(m_frame, LOG_FN, "Diag_FTM::EFS2_DIAG_WRITE_FILE_MEM( pLocalFile = %p, iSize=%d, sEFS_File = %s)",
            static_cast<const void*>(pLocalFile), iSize, sEFS_File);
    UploadSource source(std::span(reinterpret_cast<const unsigned char*>(pLocalFile), iSize));
    return Uploaded("QLIB_EfsWriteMem", sEFS_File, source);
}

void Efs2Transfer::Report(const char* sFirstName, const char* sSecondName, int iOperation, DWORD iDone,
                          DWORD iInAll) {
    // The callback takes non-const names, although it must not write to them.
    if (m_callbacks.m_pfnEfsTransferCallBack != nullptr)
        m_callbacks.m_pfnEfsTransferCallBack(const_cast<char*>(sFirstName), const_cast<char*>(sSecondName),
                                             iOperation, 0, iDone, iInAll,
                                             m_callbacks.m_pEfsCallBackUserData);
}
