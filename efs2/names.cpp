#include "efs2/names.h"

#include "efs2/exchange.h"
#include "efs2/metadata.h"

namespace {

/// Exchanges what the buffer pair holds and logs the phone's verdict, which these answers carry behind their
/// header.
bool TakeVerdict(CommandFrame& frame, const char* sOperation, DWORD& iErrorNo) {
    if (!SendWholeRequest(frame) || !frame.Response().U32At(4, iErrorNo))
        return false;
    frame.Log().LogMessage(LOG_RET, "%s( iErrorNo = %d )", sOperation, AsInt(iErrorNo));
    return true;
}

} // namespace

bool Efs2Names::EFS2_DIAG_MAKE_DIRECTORY(const char* sFolderPath, DWORD iMode, DWORD& iErrorNo) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_EFS2_DIAG_MAKE_DIRECTORY( sFolderPath = %s, iMode = 0x%X )",
                             sFolderPath, AsInt(iMode));
    BeginEfs2Request(m_frame, EFS2_CMD_MKDIR).U16(iMode).Text(sFolderPath);
    return TakeVerdict(m_frame, "QLIB_EFS2_DIAG_MAKE_DIRECTORY", iErrorNo);
}

bool Efs2Names::EFS2_DIAG_REMOVE_DIRECTORY(const char* sFolderPath, DWORD& iErrorNo) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_EFS2_DIAG_REMOVE_DIRECTORY( sFolderPath = %s )", sFolderPath);
    BeginEfs2Request(m_frame, EFS2_CMD_RMDIR).Text(sFolderPath);
    return TakeVerdict(m_frame, "QLIB_EFS2_DIAG_REMOVE_DIRECTORY", iErrorNo);
}

bool Efs2Names::EFS2_DIAG_REMOVE_FILE(const char* sFilePath, DWORD& iErrorNo) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_EFS2_DIAG_REMOVE_FILE( sFilePath = %s )", sFilePath);
    BeginEfs2Request(m_frame, EFS2_CMD_UNLINK).Text(sFilePath);
    return TakeVerdict(m_frame, "QLIB_EFS2_DIAG_REMOVE_FILE", iErrorNo);
}

bool Efs2Names::EFS2_DIAG_MAKE_LINK(const char* sFilePath, const char* sPointedFilePath, DWORD& iErrorNo) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_EFS2_DIAG_MAKE_LINK( sFilePath = %s, sPointedFilePath = %s )",
                             sFilePath, sPointedFilePath);
    BeginEfs2Request(m_frame, EFS2_CMD_SYMLINK).Text(sFilePath).Text(sPointedFilePath);
    return TakeVerdict(m_frame, "QLIB_EFS2_DIAG_MAKE_LINK", iErrorNo);
}

bool Efs2Names::EFS2_DIAG_LINK_TARGET(const char* sFilePath, char* sPointedFilePath, DWORD& iErrorNo) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_EFS2_DIAG_LINK_TARGET( sFilePath = %s )", sFilePath);
    BeginEfs2Request(m_frame, EFS2_CMD_READLINK).Text(sFilePath);
    if (!TakeVerdict(m_frame, "QLIB_EFS2_DIAG_LINK_TARGET", iErrorNo))
        return false;
    if (iErrorNo == 0)
        m_frame.Response().TextAt(8, sPointedFilePath, Efs2Metadata::kEfs2TextSize);
    return true;
}
