#include "ftm/ftm_log.h"

#include <cstring>

#include "diag/log_masks.h"
#include "diag/received_packet.h"
#include "ftm/ftm_command.h"
#include "link/log_codes.h"
#include "link/packet_codes.h"
#include "link/packet_view.h"

namespace {

constexpr unsigned char kEquipmentId = kFtmLogCode >> 12;

bool IsFtmRecord(const QueueItem& item, unsigned short iLogCode) {
    const PacketView record(WithoutFcs(item));
    return record.Has(kFtmLogTypeOffset, sizeof iLogCode) && record.U8(0) == kLogRecord &&
           record.U16(kRecordLogCodeOffset) == kFtmLogCode && record.U16(kFtmLogTypeOffset) == iLogCode;
}

} // namespace

bool FtmLog::FTM_LOG_ENABLE(unsigned short iLogCode, DWORD iInterval, DWORD iNumBuffers) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_LOG_ENABLE( iLogCode = %d, iInterval = %d, iNumBuffers = %d )",
            iLogCode, iInterval, iNumBuffers);
    m_frame.FormatExtendedFTMHeader(FTM_MODE_ID_LOG, 0, 0, 0).U16(iLogCode).U32(iInterval).U32(iNumBuffers);
    return m_frame.Send(0);
}

bool FtmLog::FTM_LOG_DISABLE(unsigned short iLogCode) {
    m_frame.FormatExtendedFTMHeader(FTM_MODE_ID_LOG, 1, 0, 0).U16(iLogCode);
    return m_frame.Send(0);
}

bool FtmLog::FTM_LOG_StartFTM_Log(unsigned short iLogCode) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_LOG_StartFTM_Log( iLogCode = %d )", iLogCode);
    if (!FTM_LOG_ENABLE(iLogCode, 20, 1) || !m_masks.DIAG_AddExtendedLogCodes(kEquipmentId, &kFtmLogCode, 1))
        return false;
    m_masks.DIAG_SetPhoneLoggingState(true);
    return m_frame.Access().PhoneLogQueue().Clear();
}

bool FtmLog::FTM_LOG_StopFTM_Log(unsigned short iLogCode) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_LOG_StopFTM_Log( iLogCode = %d )", iLogCode);
    if (!FTM_LOG_DISABLE(iLogCode))
        return false;
    m_masks.DIAG_SetPhoneLoggingState(true);
    return m_frame.Access().PhoneLogQueue().Clear();
}

bool FtmLog::TakeWaiting(unsigned short iLogCode, FTM2LogMessage* pMessage, unsigned short& iSize,
                         DWORD iLimit_ms) {
    CQLibMessageQueue& queue = m_frame.Access().PhoneLogQueue();
    QueueItem item;
    DWORD iWaiting = 0;
    bool bFound = false;
    bool bTaken = queue.WaitPop(&item, iLimit_ms);
    for (queue.GetCount(iWaiting); bTaken; bTaken = iWaiting > 0 && iWaiting-- > 0 && queue.Pop(&item)) {
        if (!IsFtmRecord(item, iLogCode))
            continue;
        const size_t iBytes = item.length - kFtmLogTypeOffset;
        std::memset(pMessage, 0, iBytes + 2);
        std::memcpy(pMessage, item.data + kFtmLogTypeOffset, iBytes);
        iSize = static_cast<unsigned short>(iBytes + 2);
        bFound = true;
    }
    return bFound;
}

bool FtmLog::FTM_LOG_WaitForNextLog(unsigned short iLogCode, FTM2LogMessage* pMessage, unsigned short& iSize,
                                    DWORD iTimeOut_ms) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_LOG_WaitForNextLog( iLogCode = %d, iTimeOut_ms = %d)", iLogCode,
            iTimeOut_ms);
    DiagConnection& connection = m_frame.Connection();
    const DWORD iTimer = connection.StartTimer();
    iSize = 0;
    bool bFound = false;
    DWORD iElapsed_ms = 0;
    do {
        bFound = TakeWaiting(iLogCode, pMessage, iSize, iTimeOut_ms - iElapsed_ms);
        iElapsed_ms = connection.GetTimerElapsed(iTimer);
    } while (!bFound && iElapsed_ms < iTimeOut_ms);
    connection.PrintTimer(iTimer, "Total time waiting for log: ");
    connection.StopTimer(iTimer);
    LogLine(m_frame, LOG_RET, "QLIB_FTM_LOG_WaitForNextLog( ) -- Log code found: %s", bFound ? "YES" : "NO");
    return bFound;
}
