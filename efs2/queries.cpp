// The operations that only read status.
#include "efs2/commands.h"
#include "efs2/exchange.h"
#include "efs2/metadata.h"

namespace {

constexpr size_t kStatSize = 32;
constexpr size_t kStatfsSize = 48;
constexpr size_t kShortTypeStatfsSize = 44;

/// The offset of the block size in a file-system status: after a type of 8 bytes, or of 4.
size_t BlockSizeOffset(const ResponseReader& response) {
    return response.Size() == kShortTypeStatfsSize ? 16 : 20;
}

} // namespace

bool Efs2Metadata::EFS2_DIAG_STAT(const char* sFilePath, DWORD& iErrorNo, DWORD& iMode, DWORD& iSize,
                                  DWORD& iNlink, DWORD& iAtime, DWORD& iMtime, DWORD& iCtime) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_STAT( sFilePath = %s", sFilePath);
    if (!AskOfPath(EFS2_CMD_STAT, sFilePath))
        return false;
    ResponseReader response = m_frame.Response();
    // In a short response the header would be read as the error number, and an existing entry would appear
    // not to exist.
    if (response.Size() >= kStatSize)
        for (DWORD* piValue : {&iCtime, &iMtime, &iAtime, &iNlink, &iSize, &iMode, &iErrorNo})
            response.Take(*piValue);
    LogLine(m_frame, LOG_RET,
            "QLIB_EFS2_DIAG_STAT( \t\t\tsFilePath = %s, iErrorNo = 0x%X, iMode = 0x%X, "
            "iSize = 0x%X, \t\t\tiNlink = 0x%X, iAtime = 0x%X, iMtime = 0x%X, iCtime  = 0x%X)",
            sFilePath, iErrorNo, iMode, iSize, iNlink, iAtime, iMtime, iCtime);
    return true;
}

bool Efs2Metadata::EFS2_DIAG_STATFS(const char* sFilePath, DWORD& iErrorNo, DWORD& iFS_ID, DWORD& iFS_Type,
                                    DWORD& iBlockSize, DWORD& iTotalBlocks, DWORD& iAvailBlocks,
                                    DWORD& iFreeBlocks, DWORD& iMaxFileSize, DWORD& iNfiles,
                                    DWORD& iMaxNfiles) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_STATFS( sFilePath = %s)", sFilePath);
    if (!AskOfPath(EFS2_CMD_STATFS, sFilePath))
        return false;
    const ResponseReader response = m_frame.Response();
    if (!response.U32At(4, iErrorNo))
        return false;
    response.U32At(8, iFS_ID);
    response.U32At(12, iFS_Type);
    size_t iOffset = BlockSizeOffset(response);
    for (DWORD* piValue :
         {&iBlockSize, &iTotalBlocks, &iAvailBlocks, &iFreeBlocks, &iMaxFileSize, &iNfiles, &iMaxNfiles}) {
        response.U32At(iOffset, *piValue);
        iOffset += sizeof(DWORD);
    }
    LogLine(m_frame, LOG_RET,
            "QLIB_EFS2_DIAG_STATFS( \t\t\tsFilePath = %s, iErrorNo  = %d, iFS_ID  = %d, "
            "iFS_Type  = %d, iBlockSize  = %d, \t\t\tiTotalBlocks  = %d, iAvailBlocks  = %d, "
            "iFreeBlocks  = %d, iMaxFileSize  = %d,\t\t\tiNfiles  = %d, iMaxNfiles  = %d)",
            sFilePath, iErrorNo, iFS_ID, iFS_Type, iBlockSize, iTotalBlocks, iAvailBlocks, iFreeBlocks,
            iMaxFileSize, iNfiles, iMaxNfiles);
    return true;
}

DWORD Efs2Metadata::StatFSAvailSpace(const char* sPath) {
    Efs2Frame<kStatfsSize> frame(m_frame, EFS2_CMD_STATFS);
    if (!frame.Request().Text(sPath).Complete())
        return kPathTooLong;
    DWORD iBlockSize = 0;
    DWORD iAvailBlocks = 0;
    const bool bTold = frame.ExchangeUntil(1, [&](const ResponseReader& response) {
        const size_t iOffset = BlockSizeOffset(response);
        return response.U32At(iOffset, iBlockSize) && response.U32At(iOffset + 8, iAvailBlocks);
    });
    return bTold ? iBlockSize * iAvailBlocks : 0;
}

bool Efs2Metadata::EFS2_DIAG_DEV_INFO(DWORD& iErrorNo, DWORD& iTotalNumOfBlocks, DWORD& iNumPagesPerBlock,
                                      DWORD& iPageSize, DWORD& iTotalPageSize, DWORD& iMakerId,
                                      DWORD& iDeviceId, unsigned char& iDeviceType, char* psDeviceName) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_DEV_INFO()");
    BeginEfs2Request(m_frame, EFS2_CMD_DEV_INFO);
    if (!AskWholeRequest(m_frame))
        return false;
    // More fields may follow the name, so the values cannot be taken from the end.
    const ResponseReader response = m_frame.Response();
    size_t iOffset = 4;
    for (DWORD* piValue : {&iErrorNo, &iTotalNumOfBlocks, &iNumPagesPerBlock, &iPageSize, &iTotalPageSize,
                           &iMakerId, &iDeviceId}) {
        response.U32At(iOffset, *piValue);
        iOffset += sizeof(DWORD);
    }
    response.U8At(32, iDeviceType);
    response.TextAt(33, psDeviceName, kEfs2TextSize);
    LogLine(m_frame, LOG_RET,
            "QLIB_EFS2_DIAG_DEV_INFO( \t\t\tiErrorNo = 0x%X, iTotalNumOfBlocks = 0x%X, "
            "iNumPagesPerBlock = 0x%X, \t\t\tiPageSize = 0x%X, iTotalPageSize = 0x%X, "
            "iMakerId = 0x%X, iDeviceId = 0x%X, \t\t\tiDeviceType = 0x%X, psDeviceName  = %s)",
            iErrorNo, iTotalNumOfBlocks, iNumPagesPerBlock, iPageSize, iTotalPageSize, iMakerId, iDeviceId,
            iDeviceType, psDeviceName);
    return true;
}

bool Efs2Metadata::EFS2_DIAG_EXTENDED_INFO(EFS2_EXT_QueryType_Enum iQueryType,
                                           EFS2_EXT_Kind_Enum& eReturnKind, DWORD& iReturnInt,
                                           char* const sReturnString) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_EXTENDED_INFO( iQueryType = %d )", static_cast<int>(iQueryType));
    BeginEfs2Request(m_frame, EFS2_CMD_EXTENDED_INFO).U32(static_cast<DWORD>(iQueryType)).U32(0).U8(0);
    if (!AskWholeRequest(m_frame))
        return false;
    const ResponseReader response = m_frame.Response();
    DWORD iKind = 0;
    const bool bHasKind = response.U32At(4, iKind);
    if (bHasKind && iKind == EFS2_EXT_KIND_INT && response.U32At(8, iReturnInt)) {
        eReturnKind = EFS2_EXT_KIND_INT;
        LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_EXTENDED_INFO( iReturnInt = %d )", iReturnInt);
        return true;
    }
    if (bHasKind && iKind == EFS2_EXT_KIND_STRING) {
        eReturnKind = EFS2_EXT_KIND_STRING;
        response.TextAt(12, sReturnString, kEfs2TextSize);
        LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_EXTENDED_INFO( sReturnString = %s )", sReturnString);
        return true;
    }
    LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_EXTENDED_INFO( ) -- Error: invalid data return type");
    return false;
}
