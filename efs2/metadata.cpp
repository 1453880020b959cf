// The operations on names, permissions and links.
#include "efs2/metadata.h"

#include "diag/command.h"
#include "efs2/commands.h"
#include "efs2/exchange.h"

namespace {

constexpr unsigned kEverybody = 0777;

} // namespace

bool Efs2Metadata::SendPath(EFS2_Cmd_Enum eCommand, const char* sPath) {
    BeginEfs2Request(m_frame, eCommand).Text(sPath);
    return SendWholeRequest(m_frame);
}

bool Efs2Metadata::AskOfPath(EFS2_Cmd_Enum eCommand, const char* sPath) {
    BeginEfs2Request(m_frame, eCommand).Text(sPath);
    return AskWholeRequest(m_frame);
}

bool Efs2Metadata::TakeErrorNo(DWORD& iErrorNo) {
    if (!AskWholeRequest(m_frame))
        return false;
    m_frame.Response().Take(iErrorNo);
    return true;
}

bool Efs2Metadata::EFS2_DIAG_MKDIR(const char* strDir) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_MKDIR( strDir = %s )", strDir);
    Efs2Frame<8> frame(m_frame, EFS2_CMD_MKDIR);
    frame.Request().U16(kEverybody).Text(strDir);
    m_frame.ForgetFailure();
    const bool bMade = frame.ExchangeUntilGranted(1, 4);
    DWORD iErrnum = 0;
    if (!frame.Response().U32At(4, iErrnum))
        return false;
    LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_MKDIR() - Results mkdir_rsp.errnum = %d", iErrnum);
    return bMade;
}

bool Efs2Metadata::EFS2_DIAG_RMDIR(const char* sFolderPath) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_RMDIR( sFolderPath = %s)", sFolderPath);
    return SendPath(EFS2_CMD_RMDIR, sFolderPath);
}

bool Efs2Metadata::EFS2_DIAG_UNLINK(const char* sFilePath) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_UNLINK( sFilePath = %s )", sFilePath);
    return SendPath(EFS2_CMD_UNLINK, sFilePath);
}

bool Efs2Metadata::EFS2_DIAG_RENAME(const char* sOldFilePath, const char* sNewFilePath, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_RENAME( sOldFilePath = %s, sNewFilePath = %s, iErrorNo = %d)",
            sOldFilePath, sNewFilePath, iErrorNo);
    BeginEfs2Request(m_frame, EFS2_CMD_RENAME).Text(sOldFilePath).Text(sNewFilePath);
    return TakeErrorNo(iErrorNo);
}

bool Efs2Metadata::EFS2_DIAG_CHMOD(DWORD iMode, const char* sFilePath, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_CHMOD( iMode = %d, sFilePath = %s )", iMode, sFilePath);
    BeginEfs2Request(m_frame, EFS2_CMD_CHMOD).U32(iMode).Text(sFilePath);
    return TakeErrorNo(iErrorNo);
}

bool Efs2Metadata::EFS2_DIAG_ACCESS(DWORD iPermissionBits, const char* sFilePath, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_ACCESS( iPermissionBits = 0x%X, sFilePath = %s, iErrorNo = %d)",
            iPermissionBits, sFilePath, iErrorNo);
    BeginEfs2Request(m_frame, EFS2_CMD_ACCESS).Text(sFilePath);
    return TakeErrorNo(iErrorNo);
}

bool Efs2Metadata::EFS2_DIAG_READ_LINK(const char* sFilePath, char* sPointedFilePath) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_READ_LINK( sFilePath = %s, sPointedFilePath = %s)", sFilePath,
            sPointedFilePath);
    if (!AskOfPath(EFS2_CMD_READLINK, sFilePath))
        return false;
    m_frame.Response().TextAt(8, sPointedFilePath, kEfs2TextSize);
    return true;
}

bool Efs2Metadata::EFS2_DIAG_CREATE_LINK(const char* sFilePath, const char* sPointedFilePath) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_CREATE_LINK( sFilePath = %s, sPointedFilePath = %s )", sFilePath,
            sPointedFilePath);
    BeginEfs2Request(m_frame, EFS2_CMD_SYMLINK).Text(sFilePath).Text(sPointedFilePath);
    return SendWholeRequest(m_frame);
}

OperationFailure Efs2Metadata::EFS2_LastFailure() const {
    return m_frame.LastFailure();
}
