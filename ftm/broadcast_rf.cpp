#include "ftm/broadcast_rf.h"

#include "ftm/ftm_command.h"

bool BroadcastRf::FTM_MF_TUNE_PLL(unsigned short iChannel) {
    return SendFtm(m_frame, 413, "QLIB_FTM_MF_TUNE_PLL( iChannel = %d )", iChannel);
}

bool BroadcastRf::FTM_MF_SYNTH_LOCK(unsigned char& bLockState) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_MF_SYNTH_LOCK( )");
    BeginFtm(m_frame, 408).U8(0);
    return m_frame.SendFtmCmd() &&
           TakeLogged(m_frame, "QLIB_FTM_MF_SYNTH_LOCK( bLockState = %d )", bLockState);
}

bool BroadcastRf::FTM_MF_LNA_SELECT(unsigned short iWhichLna) {
    return SendFtm(m_frame, 406, "QLIB_FTM_MF_LNA_SELECT( iWhichLna = %d )", iWhichLna);
}

bool BroadcastRf::FTM_MF_RF_SWITCH_CONFIG(unsigned short iState) {
    return SendFtm(m_frame, 407, "QLIB_FTM_MF_RF_SWITCH_CONFIG( iState = %d )", iState);
}

bool BroadcastRf::FTM_MF_SET_GAIN_STATE(unsigned short iGainState) {
    return SendFtm(m_frame, 411, "QLIB_FTM_MF_SET_GAIN_STATE( iGainState = %d )", iGainState);
}

bool BroadcastRf::FTM_MF_GET_AGC_STATE(unsigned short& iGainState, unsigned short& iDvga) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_MF_GET_AGC_STATE( )");
    BeginFtm(m_frame, 402).U16(0).U16(0);
    return m_frame.SendFtmCmd() &&
           TakeLogged(m_frame, "QLIB_FTM_MF_GET_AGC_STATE( iGainState = %d, iDvga = %d )", iGainState, iDvga);
}

bool BroadcastRf::FTM_MF_GET_RX_RSSI(unsigned short& iRssiValue) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_MF_GET_RX_RSSI( )");
    BeginFtm(m_frame, 401).U16(0);
    return m_frame.SendFtmCmd() &&
           TakeLogged(m_frame, "QLIB_FTM_MF_GET_RX_RSSI( iRssiValue = %d )", iRssiValue);
}

bool BroadcastRf::FTM_MF_GET_RSSI_CAL_POINT(unsigned short iGainState, unsigned short iInputPower,
                                            unsigned short& iCalPoint) {
    unsigned short iDiscarded = 0;
    return SendFtm(m_frame, 400, "QLIB_FTM_MF_GET_RSSI_CAL_POINT( iGainState = %d, iInputPower = %d )",
                   iGainState, iInputPower) &&
           TakeLogged(m_frame, "QLIB_FTM_MF_GET_RSSI_CAL_POINT( iCalPoint = %d )", iCalPoint) &&
           TakeValues(m_frame, iDiscarded);
}

bool BroadcastRf::FTM_MF_GET_IM2(unsigned short& iSuppression, unsigned char& iIValue, unsigned char& iQValue,
                                 unsigned char& iTransconductance) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_MF_GET_IM2( )");
    BeginFtm(m_frame, 415).U16(iSuppression).U8(iIValue).U8(iQValue).U8(iTransconductance);
    return m_frame.SendFtmCmd() &&
           TakeLogged(
               m_frame,
               "QLIB_FTM_MF_GET_IM2( iSuppression = %d, iIValue = %d, iQValue = %d, iTransconductance = %d )",
               iSuppression, iIValue, iQValue, iTransconductance);
}

bool BroadcastRf::FTM_MF_WRITE_CAL_DATA(unsigned short iBand) {
    unsigned char iWriteStatus = 0;
    return SendFtm(m_frame, 403, "QLIB_FTM_MF_WRITE_CAL_DATA( iBand = %d )", iBand) &&
           TakeLogged(m_frame, "QLIB_FTM_MF_WRITE_CAL_DATA( iBand = %d ) _iWriteStatus = %d",
                      std::tuple(iBand), iWriteStatus);
}
