#include "ftm/rf_receiver.h"

#include "ftm/ftm_command.h"

bool RfReceiver::FTM_GET_RX_AGC(unsigned short& iRX_AGC) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GET_RX_AGC( )");
    BeginFtm(m_frame, 53).U16(0);
    return m_frame.SendFtmCmd() && TakeLogged(m_frame, "QLIB_FTM_GET_RX_AGC( iRX_AGC = %d)", iRX_AGC);
}

bool RfReceiver::FTM_GET_CTON(DWORD& iCtoN) {
    static constexpr char sLine[] = "QLIB_FTM_GET_CTON(iCtoN=%d)";
    return SendFtm(m_frame, 122, sLine, iCtoN) && TakeLogged(m_frame, sLine, iCtoN);
}

bool RfReceiver::FTM_GET_FM_IQ(DWORD& iFmIQValue) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GET_FM_IQ( )");
    BeginFtm(m_frame, 120).U32(iFmIQValue);
    return m_frame.SendFtmCmd() && TakeLogged(m_frame, "QLIB_FTM_GET_FM_IQ( iFmIQValue = %d)", iFmIQValue);
}

bool RfReceiver::FTM_SET_LNA_OFFSET(unsigned short iLNAindex, unsigned short iLNAoffset) {
    return SendFtm(m_frame, 81, "QLIB_FTM_SET_LNA_OFFSET(iLNAindex=%d, iLNAoffset=%d)", iLNAindex,
                   iLNAoffset);
}

bool RfReceiver::FTM_SET_DVGA_OFFSET(unsigned char iDVGAoffset) {
    const unsigned short iOffset = iDVGAoffset;
    return SendFtm(m_frame, 111, "QLIB_FTM_SET_DVGA_OFFSET(iDVGAoffset=%d)", iOffset);
}

bool RfReceiver::FTM_GET_DVGA_OFFSET(short iExpectedRX_AGC, short& iDVGAoffsetValue) {
    return SendFtm(m_frame, 117, "QLIB_FTM_GET_DVGA_OFFSET( iExpectedRX_AGC = %d)", iExpectedRX_AGC) &&
           TakeLogged(m_frame, "QLIB_FTM_GET_DVGA_OFFSET( iExpectedRX_AGC = %d, iDVGAoffsetValue = %d)",
                      std::tuple(iExpectedRX_AGC), iDVGAoffsetValue);
}

bool RfReceiver::FTM_GET_LNA_OFFSET(unsigned short iLNAindex, short iExpectedRX_AGC, short& iLNAoffsetValue) {
    return SendFtm(m_frame, 118, "QLIB_FTM_GET_LNA_OFFSET( iLNAindex = %d, iExpectedRX_AGC = %d)", iLNAindex,
                   iExpectedRX_AGC) &&
           TakeLogged(m_frame,
                      "QLIB_FTM_GET_LNA_OFFSET( iLNAindex = %d, iExpectedRX_AGC = %d, iLNAoffsetValue = %d)",
                      std::tuple(iLNAindex, iExpectedRX_AGC), iLNAoffsetValue);
}

bool RfReceiver::FTM_SET_FREQ_SENSE_GAIN(unsigned char iModulationIndex) {
    return SendFtm(m_frame, 115, "QLIB_FTM_SET_FREQ_SENSE_GAIN(iModulationIndex=%d)", iModulationIndex);
}

bool RfReceiver::FTM_GET_CDMA_IM2(unsigned char& iIValue, unsigned char& iQValue,
                                  unsigned char& iTransconductance) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GET_CDMA_IM2( )");
    BeginFtm(m_frame, 114).U8(iIValue).U8(iQValue).U8(iTransconductance);
    return m_frame.SendFtmCmd() &&
           TakeLogged(m_frame, "QLIB_FTM_GET_CDMA_IM2( iIValue = %d, iQValue = %d, iTransconductance = %d)",
                      iIValue, iQValue, iTransconductance);
}

bool RfReceiver::FTM_GET_CDMA_IM2_WITH_SUPPRESSSION(unsigned char& iIValue, unsigned char& iQValue,
                                                    unsigned char& iTransconductance,
                                                    unsigned short& iSuppression) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GET_CDMA_IM2_WITH_SUPPRESSSION( )");
    BeginFtm(m_frame, 126).U8(iIValue).U8(iQValue).U8(iTransconductance).U16(iSuppression);
    return m_frame.SendFtmCmd() &&
           TakeLogged(m_frame,
                      "QLIB_FTM_GET_CDMA_IM2_WITH_SUPPRESSSION( iIValue = %d, iQValue = %d, "
                      "iTransconductance = %d, iSuppression = %d)",
                      iIValue, iQValue, iTransconductance, iSuppression);
}

bool RfReceiver::FTM_TEST_GET_DVGA_LNA(bool bGetDVGA, unsigned short iLNAMask, unsigned short iRxAGC,
                                       unsigned short& iDVGAoffset, unsigned short& iLNA0offset,
                                       unsigned short& iLNA1offset, unsigned short& iLNA2offset,
                                       unsigned short& iLNA3offset) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_TEST_GET_DVGA_LNA( bGetDVGA = %d, iLNAMask = %d", bGetDVGA, iLNAMask);
    AppendFields(m_frame.FormatFTMHeader(), bGetDVGA, iLNAMask, iRxAGC, iDVGAoffset, iLNA0offset, iLNA1offset,
                 iLNA2offset, iLNA3offset);
    if (!m_frame.SendForValues())
        return false;
    TakeLogged(m_frame,
               "QLIB_FTM_TEST_GET_DVGA_LNA( bGetDVGA = %d, iLNAMask = %d, iRxAGC = %d, "
               "iDVGAoffset = %d, iLNA0offset = %d, iLNA1offset = %d, iLNA2offset = %d, "
               "iLNA3offset = %d)",
               std::tuple(bGetDVGA, iLNAMask, iRxAGC), iDVGAoffset, iLNA0offset, iLNA1offset, iLNA2offset,
               iLNA3offset);
    return true;
}
