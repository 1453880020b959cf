#include "ftm/broadcast_rf.h"

bool BroadcastRf::FTM_MF_TUNE_PLL(unsigned short iChannel) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_TUNE_PLL( iChannel = %d )", iChannel);
    BeginFtm(m_frame, 413).U16(iChannel);
    return m_frame.SendFtmCmd();
}

bool BroadcastRf::FTM_MF_SYNTH_LOCK(unsigned char& bLockState) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_SYNTH_LOCK( )");
    BeginFtm(m_frame, 408).U8(0);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, bLockState);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_MF_SYNTH_LOCK( bLockState = %d )", bLockState);
    return bTaken;
}

bool BroadcastRf::FTM_MF_LNA_SELECT(unsigned short iWhichLna) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_LNA_SELECT( iWhichLna = %d )", iWhichLna);
    BeginFtm(m_frame, 406).U16(iWhichLna);
    return m_frame.SendFtmCmd();
}

bool BroadcastRf::FTM_MF_RF_SWITCH_CONFIG(unsigned short iState) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_RF_SWITCH_CONFIG( iState = %d )", iState);
    BeginFtm(m_frame, 407).U16(iState);
    return m_frame.SendFtmCmd();
}

bool BroadcastRf::FTM_MF_SET_GAIN_STATE(unsigned short iGainState) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_SET_GAIN_STATE( iGainState = %d )", iGainState);
    BeginFtm(m_frame, 411).U16(iGainState);
    return m_frame.SendFtmCmd();
}

bool BroadcastRf::FTM_MF_GET_AGC_STATE(unsigned short& iGainState, unsigned short& iDvga) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_GET_AGC_STATE( )");
    BeginFtm(m_frame, 402).U16(0).U16(0);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iDvga, iGainState);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_MF_GET_AGC_STATE( iGainState = %d, iDvga = %d )", iGainState,
                             iDvga);
    return bTaken;
}

bool BroadcastRf::FTM_MF_GET_RX_RSSI(unsigned short& iRssiValue) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_GET_RX_RSSI( )");
    BeginFtm(m_frame, 401).U16(0);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iRssiValue);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_MF_GET_RX_RSSI( iRssiValue = %d )", iRssiValue);
    return bTaken;
}

bool BroadcastRf::FTM_MF_GET_RSSI_CAL_POINT(unsigned short iGainState, unsigned short iInputPower,
                                            unsigned short& iCalPoint) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_GET_RSSI_CAL_POINT( iGainState = %d, iInputPower = %d )",
                             iGainState, iInputPower);
    BeginFtm(m_frame, 400).U16(iGainState).U16(iInputPower);
    if (!m_frame.SendFtmCmd())
        return false;
    unsigned short iDiscarded = 0;
    const bool bTaken = TakeValues(m_frame, iCalPoint, iDiscarded);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_MF_GET_RSSI_CAL_POINT( iCalPoint = %d )", iCalPoint);
    return bTaken;
}

bool BroadcastRf::FTM_MF_GET_IM2(unsigned short& iSuppression, unsigned char& iIValue, unsigned char& iQValue,
                                 unsigned char& iTransconductance) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_GET_IM2( )");
    BeginFtm(m_frame, 415).U16(iSuppression).U8(iIValue).U8(iQValue).U8(iTransconductance);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iTransconductance, iQValue, iIValue, iSuppression);
    m_frame.Log().LogMessage(
        LOG_RET,
        "QLIB_FTM_MF_GET_IM2( iSuppression = %d, iIValue = %d, iQValue = %d, iTransconductance = %d )",
        iSuppression, iIValue, iQValue, iTransconductance);
    return bTaken;
}

bool BroadcastRf::FTM_MF_WRITE_CAL_DATA(unsigned short iBand) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_MF_WRITE_CAL_DATA( iBand = %d )", iBand);
    BeginFtm(m_frame, 403).U16(iBand);
    if (!m_frame.SendFtmCmd())
        return false;
    unsigned char iWriteStatus = 0;
    const bool bTaken = TakeValues(m_frame, iWriteStatus);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_MF_WRITE_CAL_DATA( iBand = %d ) _iWriteStatus = %d", iBand,
                             iWriteStatus);
    return bTaken;
}
