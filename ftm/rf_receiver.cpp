#include "ftm/rf_receiver.h"

bool RfReceiver::FTM_GET_RX_AGC(unsigned short& iRX_AGC) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GET_RX_AGC( )");
    BeginFtm(m_frame, 53).U16(0);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iRX_AGC);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_GET_RX_AGC( iRX_AGC = %d)", iRX_AGC);
    return bTaken;
}

bool RfReceiver::FTM_GET_CTON(DWORD& iCtoN) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GET_CTON(iCtoN=%d)", AsInt(iCtoN));
    BeginFtm(m_frame, 122).U32(iCtoN);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iCtoN);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_GET_CTON(iCtoN=%d)", AsInt(iCtoN));
    return bTaken;
}

bool RfReceiver::FTM_GET_FM_IQ(DWORD& iFmIQValue) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GET_FM_IQ( )");
    BeginFtm(m_frame, 120).U32(iFmIQValue);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iFmIQValue);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_GET_FM_IQ( iFmIQValue = %d)", AsInt(iFmIQValue));
    return bTaken;
}

bool RfReceiver::FTM_SET_LNA_OFFSET(unsigned short iLNAindex, unsigned short iLNAoffset) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_LNA_OFFSET(iLNAindex=%d, iLNAoffset=%d)", iLNAindex,
                             iLNAoffset);
    BeginFtm(m_frame, 81).U16(iLNAindex).U16(iLNAoffset);
    return m_frame.SendFtmCmd();
}

bool RfReceiver::FTM_SET_DVGA_OFFSET(unsigned char iDVGAoffset) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_DVGA_OFFSET(iDVGAoffset=%d)", iDVGAoffset);
    BeginFtm(m_frame, 111).U16(iDVGAoffset);
    return m_frame.SendFtmCmd();
}

bool RfReceiver::FTM_GET_DVGA_OFFSET(short iExpectedRX_AGC, short& iDVGAoffsetValue) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GET_DVGA_OFFSET( iExpectedRX_AGC = %d)", iExpectedRX_AGC);
    BeginFtm(m_frame, 117).S16(iExpectedRX_AGC);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iDVGAoffsetValue);
    m_frame.Log().LogMessage(LOG_RET,
                             "QLIB_FTM_GET_DVGA_OFFSET( iExpectedRX_AGC = %d, iDVGAoffsetValue = %d)",
                             iExpectedRX_AGC, iDVGAoffsetValue);
    return bTaken;
}

bool RfReceiver::FTM_GET_LNA_OFFSET(unsigned short iLNAindex, short iExpectedRX_AGC, short& iLNAoffsetValue) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GET_LNA_OFFSET( iLNAindex = %d, iExpectedRX_AGC = %d)",
                             iLNAindex, iExpectedRX_AGC);
    BeginFtm(m_frame, 118).U16(iLNAindex).S16(iExpectedRX_AGC);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iLNAoffsetValue);
    m_frame.Log().LogMessage(
        LOG_RET, "QLIB_FTM_GET_LNA_OFFSET( iLNAindex = %d, iExpectedRX_AGC = %d, iLNAoffsetValue = %d)",
        iLNAindex, iExpectedRX_AGC, iLNAoffsetValue);
    return bTaken;
}

bool RfReceiver::FTM_SET_FREQ_SENSE_GAIN(unsigned char iModulationIndex) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_FREQ_SENSE_GAIN(iModulationIndex=%d)", iModulationIndex);
    BeginFtm(m_frame, 115).U8(iModulationIndex);
    return m_frame.SendFtmCmd();
}

bool RfReceiver::FTM_GET_CDMA_IM2(unsigned char& iIValue, unsigned char& iQValue,
                                  unsigned char& iTransconductance) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GET_CDMA_IM2( )");
    BeginFtm(m_frame, 114).U8(iIValue).U8(iQValue).U8(iTransconductance);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iTransconductance, iQValue, iIValue);
    m_frame.Log().LogMessage(LOG_RET,
                             "QLIB_FTM_GET_CDMA_IM2( iIValue = %d, iQValue = %d, iTransconductance = %d)",
                             iIValue, iQValue, iTransconductance);
    return bTaken;
}

bool RfReceiver::FTM_GET_CDMA_IM2_WITH_SUPPRESSSION(unsigned char& iIValue, unsigned char& iQValue,
                                                    unsigned char& iTransconductance,
                                                    unsigned short& iSuppression) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GET_CDMA_IM2_WITH_SUPPRESSSION( )");
    BeginFtm(m_frame, 126).U8(iIValue).U8(iQValue).U8(iTransconductance).U16(iSuppression);
    if (!m_frame.SendFtmCmd())
        return false;
    const bool bTaken = TakeValues(m_frame, iSuppression, iTransconductance, iQValue, iIValue);
    m_frame.Log().LogMessage(LOG_RET,
                             "QLIB_FTM_GET_CDMA_IM2_WITH_SUPPRESSSION( iIValue = %d, iQValue = %d, "
                             "iTransconductance = %d, iSuppression = %d)",
                             iIValue, iQValue, iTransconductance, iSuppression);
    return bTaken;
}

bool RfReceiver::FTM_TEST_GET_DVGA_LNA(bool bGetDVGA, unsigned short iLNAMask, unsigned short iRxAGC,
                                       unsigned short& iDVGAoffset, unsigned short& iLNA0offset,
                                       unsigned short& iLNA1offset, unsigned short& iLNA2offset,
                                       unsigned short& iLNA3offset) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_TEST_GET_DVGA_LNA( bGetDVGA = %d, iLNAMask = %d", bGetDVGA,
                             iLNAMask);
    RequestBuilder& request = m_frame.FormatFTMHeader().U8(bGetDVGA).U16(iLNAMask).U16(iRxAGC);
    request.U16(iDVGAoffset).U16(iLNA0offset).U16(iLNA1offset).U16(iLNA2offset).U16(iLNA3offset);
    if (!m_frame.Send(0))
        return false;
    TakeValues(m_frame, iLNA3offset, iLNA2offset, iLNA1offset, iLNA0offset, iDVGAoffset);
    m_frame.Log().LogMessage(LOG_RET,
                             "QLIB_FTM_TEST_GET_DVGA_LNA( bGetDVGA = %d, iLNAMask = %d, iRxAGC = %d, "
                             "iDVGAoffset = %d, iLNA0offset = %d, iLNA1offset = %d, iLNA2offset = %d, "
                             "iLNA3offset = %d)",
                             bGetDVGA, iLNAMask, iRxAGC, iDVGAoffset, iLNA0offset, iLNA1offset, iLNA2offset,
                             iLNA3offset);
    return true;
}
