#include "ftm/ftm_log.h"

namespace {

constexpr unsigned short kEnable = 0;
constexpr unsigned short kDisable = 1;

constexpr unsigned char kRecordEquipment = 1;
constexpr unsigned short kRecordLogCode = 0x117C;

} // namespace

bool FtmLog::FTM_LOG_ENABLE(unsigned short iLogCode, DWORD iInterval, DWORD iNumBuffers) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_LOG_ENABLE( iLogCode = %d, iInterval = %d, iNumBuffers = %d )",
                             iLogCode, AsInt(iInterval), AsInt(iNumBuffers));
    m_frame.FormatExtendedFTMHeader(FTM_MODE_ID_LOG, kEnable, 0, 0)
        .U16(iLogCode)
        .U32(iInterval)
        .U32(iNumBuffers);
    return m_frame.Send(0);
}

bool FtmLog::FTM_LOG_DISABLE(unsigned short iLogCode) {
    m_frame.FormatExtendedFTMHeader(FTM_MODE_ID_LOG, kDisable, 0, 0).U16(iLogCode);
    return m_frame.Send(0);
}

bool FtmLog::FTM_LOG_StartFTM_Log(unsigned short iLogCode) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_LOG_StartFTM_Log( iLogCode = %d )", iLogCode);
    return FTM_LOG_ENABLE(iLogCode, 20, 1) &&
           m_masks.DIAG_AddExtendedLogCodes(kRecordEquipment, &kRecordLogCode, 1) && BeginWithEmptyQueue();
}

bool FtmLog::FTM_LOG_StopFTM_Log(unsigned short iLogCode) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_LOG_StopFTM_Log( iLogCode = %d )", iLogCode);
    return FTM_LOG_DISABLE(iLogCode) && BeginWithEmptyQueue();
}

bool FtmLog::BeginWithEmptyQueue() {
    m_masks.DIAG_SetPhoneLoggingState(true);
    m_frame.Connection().PhoneLogQueue().Clear();
    return true;
}
