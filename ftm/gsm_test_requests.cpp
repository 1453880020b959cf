#include "ftm/gsm_test_requests.h"

#include "ftm/test_request.h"

bool GsmTestRequests::FTM_GSM_START_MODE_REQ(unsigned char& iStatus) {
    return SendTest(m_frame, kGsmTest, 0, iStatus, "QLIB_FTM_GSM_START_MODE_REQ()");
}

bool GsmTestRequests::FTM_GSM_SELECT_SPECIFIC_BCCH_REQ(unsigned short iChannel, unsigned char iBand,
                                                       unsigned char& iStatus) {
    return SendTest(m_frame, kGsmTest, 1, iStatus,
                    "QLIB_FTM_GSM_SELECT_SPECIFIC_BCCH_REQ( iChannel = %d, iBand = %d)", iChannel, iBand);
}

bool GsmTestRequests::FTM_GSM_START_IDLE_MODE_REQ(unsigned char& iStatus) {
    return SendTest(m_frame, kGsmTest, 2, iStatus, "QLIB_FTM_GSM_START_IDLE_MODE_REQ()");
}

bool GsmTestRequests::FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ(FTM_GSM_BER_LoopbackType_Enum iLoopbackType,
                                                       unsigned char& iStatus) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ( iLoopbackType = %d)", iLoopbackType);
    BeginTest(m_frame, kGsmTest, 3).U8(static_cast<unsigned>(iLoopbackType));
    return ExchangeTest(m_frame, kGsmTest, iStatus);
}

bool GsmTestRequests::FTM_GSM_CHANNEL_ASSIGN_REQ(unsigned char iSlot, FTM_GSM_BER_Channel_Modes_Enum eMode,
                                                 unsigned char& iStatus) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GSM_CHANNEL_ASSIGN_REQ( iSlot = %d, eMode = %d)", iSlot, eMode);
    BeginTest(m_frame, kGsmTest, 4).U8(iSlot).U8(static_cast<unsigned>(eMode));
    return ExchangeTest(m_frame, kGsmTest, iStatus);
}

bool GsmTestRequests::FTM_GSM_CHANNEL_RELEASE_REQ(unsigned char& iStatus) {
    return SendTest(m_frame, kGsmTest, 5, iStatus, "QLIB_FTM_GSM_CHANNEL_RELEASE_REQ()");
}

bool GsmTestRequests::FTM_GSM_STOP_GSM_MODE_REQ(unsigned char& iStatus) {
    return SendTest(m_frame, kGsmTest, 6, iStatus, "QLIB_FTM_GSM_STOP_GSM_MODE_REQ()");
}

bool GsmTestRequests::FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ(unsigned short iChannel, unsigned char iBand,
                                                        unsigned char iTSC, unsigned char iSlot,
                                                        FTM_GSM_BER_Channel_Modes_Enum eMode,
                                                        unsigned char iPowerLevel, unsigned char& iStatus) {
    LogLine(m_frame, LOG_FN,
            "QLIB_FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ( iChannel = %d, iBand = %d, iTSC = %d, "
            "iSlot = %d, eMode = %d, iPowerLevel = %d )",
            iChannel, iBand, iTSC, iSlot, eMode, iPowerLevel);
    AppendFields(BeginTest(m_frame, kGsmTest, 7), iChannel, iBand, iTSC, iSlot,
                 static_cast<unsigned char>(eMode), iPowerLevel);
    return ExchangeTest(m_frame, kGsmTest, iStatus);
}
