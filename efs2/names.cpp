#include "efs2/names.h"

#include "diag/command.h"
#include "efs2/commands.h"
#include "efs2/exchange.h"
#include "efs2/metadata.h"

namespace {

/// Exchanges the request in the buffer pair and logs the phone's error number, which follows the header of
/// these responses.
bool TakeVerdict(CommandFrame& frame, const char* sOperation, DWORD& iErrorNo) {
    if (!AskWholeRequest(frame))
        return false;
    if (!frame.Response().U32At(4, iErrorNo)) {
        frame.NoteFailure({OperationFailure::Kind::UnusableResponse});
        return false;
    }
    LogLine(frame, LOG_RET, "%s( iErrorNo = %d )", sOperation, iErrorNo);
    return true;
}

} // namespace

bool Efs2Names::EFS2_DIAG_MAKE_DIRECTORY(const char* sFolderPath, DWORD iMode, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_MAKE_DIRECTORY( sFolderPath = %s, iMode = 0x%X )", sFolderPath,
            iMode);
    BeginEfs2Request(m_frame, EFS2_CMD_MKDIR).U16(iMode).Text(sFolderPath);
    return TakeVerdict(m_frame, "QLIB_EFS2_DIAG_MAKE_DIRECTORY", iErrorNo);
}

bool Efs2Names::EFS2_DIAG_REMOVE_DIRECTORY(const char* sFolderPath, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_REMOVE_DIRECTORY( sFolderPath = %s )", sFolderPath);
    BeginEfs2Request(m_frame, EFS2_CMD_RMDIR).Text(sFolderPath);
    return TakeVerdict(m_frame, "QLIB_EFS2_DIAG_REMOVE_DIRECTORY", iErrorNo);
}

bool Efs2Names::EFS2_DIAG_REMOVE_FILE(const char* sFilePath, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_REMOVE_FILE( sFilePath = %s )", sFilePath);
    BeginEfs2Request(m_frame, EFS2_CMD_UNLINK).Text(sFilePath);
    return TakeVerdict(m_frame, "QLIB_EFS2_DIAG_REMOVE_FILE", iErrorNo);
}

bool Efs2Names::EFS2_DIAG_MAKE_LINK(const char* sFilePath, const char* sPointedFilePath, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_MAKE_LINK( sFilePath = %s, sPointedFilePath = %s )", sFilePath,
            sPointedFilePath);
    BeginEfs2Request(m_frame, EFS2_CMD_SYMLINK).Text(sFilePath).Text(sPointedFilePath);
    return TakeVerdict(m_frame, "QLIB_EFS2_DIAG_MAKE_LINK", iErrorNo);
}

bool Efs2Names::EFS2_DIAG_LINK_TARGET(const char* sFilePath, char* sPointedFilePath, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_LINK_TARGET( sFilePath = %s )", sFilePath);
    BeginEfs2Request(m_frame, EFS2_CMD_READLINK).Text(sFilePath);
    if (!TakeVerdict(m_frame, "QLIB_EFS2_DIAG_LINK_TARGET", iErrorNo))
        return false;
    if (iErrorNo == 0)
        m_frame.Response().TextAt(8, sPointedFilePath, Efs2Metadata::kEfs2TextSize);
    return true;
}
