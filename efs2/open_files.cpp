#include "efs2/open_files.h"

#include <algorithm>

#include "diag/command.h"
#include "efs2/block_exchanges.h"
#include "efs2/commands.h"
#include "efs2/exchange.h"

static_assert(Efs2OpenFiles::kEfs2MostRead == kEfs2ReadBlock);
static_assert(Efs2OpenFiles::kEfs2MostWritten == kEfs2WriteBlock);

bool Efs2OpenFiles::EFS2_DIAG_OPEN(const char* sFilePath, DWORD iFlags, DWORD iMode, LONG& iDescriptor,
                                   DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_OPEN( sFilePath = %s, iFlags = 0x%X, iMode = 0x%X )", sFilePath,
            iFlags, iMode);
    m_frame.ForgetFailure();
    Efs2Frame<12> frame(m_frame, EFS2_CMD_OPEN);
    frame.Request().U32(iFlags).U32(iMode).Text(sFilePath);
    if (!frame.ExchangeForVerdict(kEfs2Attempts, 8, iErrorNo))
        return false;
    DWORD iGranted = 0;
    if (iErrorNo == 0 && frame.Response().U32At(4, iGranted))
        iDescriptor = static_cast<LONG>(iGranted);
    LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_OPEN( iDescriptor = %d, iErrorNo = %d )", iGranted, iErrorNo);
    return true;
}

bool Efs2OpenFiles::EFS2_DIAG_READ(LONG iDescriptor, DWORD iOffset, unsigned char* pData, DWORD iSize,
                                   DWORD& iBytesRead, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_READ( iDescriptor = %d, iOffset = %u, iSize = %u )", iDescriptor,
            iOffset, iSize);
    const std::span<unsigned char> area(pData, std::min(iSize, kEfs2MostRead));
    m_frame.ForgetFailure();
    if (!ReadOneBlock(m_frame, iDescriptor, iOffset, area, iBytesRead, iErrorNo)) {
        m_frame.NoteFailure({OperationFailure::Kind::UnusableResponse}); // if nothing else went wrong
        return false;
    }
    LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_READ( iBytesRead = %u, iErrorNo = %d )", iBytesRead, iErrorNo);
    return true;
}

bool Efs2OpenFiles::EFS2_DIAG_WRITE(LONG iDescriptor, DWORD iOffset, const unsigned char* pData, DWORD iSize,
                                    DWORD& iBytesWritten, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_WRITE( iDescriptor = %d, iOffset = %u, iSize = %u )",
            iDescriptor, iOffset, iSize);
    const std::span<const unsigned char> block(pData, std::min(iSize, kEfs2MostWritten));
    m_frame.ForgetFailure();
    if (block.empty() || !WriteOneBlock(m_frame, iDescriptor, iOffset, block, iBytesWritten, iErrorNo))
        return false;
    LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_WRITE( iBytesWritten = %u, iErrorNo = %d )", iBytesWritten,
            iErrorNo);
    return true;
}

bool Efs2OpenFiles::EFS2_DIAG_CLOSE(LONG iDescriptor, DWORD& iErrorNo) {
    LogLine(m_frame, LOG_FN, "QLIB_EFS2_DIAG_CLOSE( iDescriptor = %d )", iDescriptor);
    m_frame.ForgetFailure();
    Efs2Frame<8> frame(m_frame, EFS2_CMD_CLOSE);
    frame.Request().S32(iDescriptor);
    if (!frame.ExchangeForVerdict(kEfs2Attempts, 4, iErrorNo))
        return false;
    LogLine(m_frame, LOG_RET, "QLIB_EFS2_DIAG_CLOSE( iErrorNo = %d )", iErrorNo);
    return true;
}
