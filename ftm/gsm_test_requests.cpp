#include "ftm/gsm_test_requests.h"

bool GsmTestRequests::FTM_GSM_START_MODE_REQ(unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GSM_START_MODE_REQ()");
    Begin(0);
    return Exchange(iStatus);
}

bool GsmTestRequests::FTM_GSM_SELECT_SPECIFIC_BCCH_REQ(unsigned short iChannel, unsigned char iBand,
                                                       unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GSM_SELECT_SPECIFIC_BCCH_REQ( iChannel = %d, iBand = %d)",
                             iChannel, iBand);
    Begin(1).U16(iChannel).U8(iBand);
    return Exchange(iStatus);
}

bool GsmTestRequests::FTM_GSM_START_IDLE_MODE_REQ(unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GSM_START_IDLE_MODE_REQ()");
    Begin(2);
    return Exchange(iStatus);
}

bool GsmTestRequests::FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ(FTM_GSM_BER_LoopbackType_Enum iLoopbackType,
                                                       unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ( iLoopbackType = %d)",
                             iLoopbackType);
    Begin(3).U8(static_cast<unsigned>(iLoopbackType));
    return Exchange(iStatus);
}

bool GsmTestRequests::FTM_GSM_CHANNEL_ASSIGN_REQ(unsigned char iSlot, FTM_GSM_BER_Channel_Modes_Enum eMode,
                                                 unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GSM_CHANNEL_ASSIGN_REQ( iSlot = %d, eMode = %d)", iSlot,
                             eMode);
    Begin(4).U8(iSlot).U8(static_cast<unsigned>(eMode));
    return Exchange(iStatus);
}

bool GsmTestRequests::FTM_GSM_CHANNEL_RELEASE_REQ(unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GSM_CHANNEL_RELEASE_REQ()");
    Begin(5);
    return Exchange(iStatus);
}

bool GsmTestRequests::FTM_GSM_STOP_GSM_MODE_REQ(unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GSM_STOP_GSM_MODE_REQ()");
    Begin(6);
    return Exchange(iStatus);
}

bool GsmTestRequests::FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ(unsigned short iChannel, unsigned char iBand,
                                                        unsigned char iTSC, unsigned char iSlot,
                                                        FTM_GSM_BER_Channel_Modes_Enum eMode,
                                                        unsigned char iPowerLevel, unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ( iChannel = %d, iBand = %d, iTSC = %d, "
                             "iSlot = %d, eMode = %d, iPowerLevel = %d )",
                             iChannel, iBand, iTSC, iSlot, eMode, iPowerLevel);
    Begin(7).U16(iChannel).U8(iBand).U8(iTSC).U8(iSlot).U8(static_cast<unsigned>(eMode)).U8(iPowerLevel);
    return Exchange(iStatus);
}
