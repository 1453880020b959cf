#include "ftm/ftm_log.h"

bool FtmLog::FTM_LOG_ENABLE(unsigned short iLogCode, DWORD iInterval, DWORD iNumBuffers) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_LOG_ENABLE( iLogCode = %d, iInterval = %d, iNumBuffers = %d )",
                             iLogCode, AsInt(iInterval), AsInt(iNumBuffers));
    m_frame.FormatExtendedFTMHeader(FTM_MODE_ID_LOG, 0, 0, 0).U16(iLogCode).U32(iInterval).U32(iNumBuffers);
    return m_frame.Send(0);
}

bool FtmLog::FTM_LOG_StartFTM_Log(unsigned short iLogCode) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_LOG_StartFTM_Log( iLogCode = %d )", iLogCode);
    return FTM_LOG_ENABLE(iLogCode, 20, 1);
}
