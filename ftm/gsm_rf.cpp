// Bursts, slots and power. Any response to a setting confirms it.
#include "ftm/gsm_rf.h"

#include "ftm/gsm_rf_command.h"

bool GsmRf::FTM_SET_PA_PROFILE(const unsigned short* piRampTable, const unsigned short* piPaLookupTable,
                               unsigned char iRampSize, unsigned char iPaLookupTableSize) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_SET_PA_PROFILE(iRampSize=%d, iPaLookupTableSize=%d)", iRampSize,
            iPaLookupTableSize);
    RequestBuilder& request = BeginGsmRf(m_frame, 212);
    for (const unsigned short* piTable : {piRampTable, piPaLookupTable})
        for (const unsigned short iValue : std::span(piTable, kPaProfileSize))
            request.U16(iValue);
    request.U8(iRampSize).U8(iPaLookupTableSize);
    return m_frame.Send(0);
}

bool GsmRf::FTM_SET_TRANSMIT_CONT(unsigned char iSlotNum, short iDataSource, unsigned char iTSCindex,
                                  DWORD iNumBursts, bool bIsInfiniteDuration) {
    return SendGsmRf(m_frame, 216,
                     "QLIB_FTM_SET_TRANSMIT_CONT(iSlotNum=%d, iDataSource=%d, iTSCindex=%d, iNumBursts=%d, "
                     "bIsInfiniteDuration=%d)",
                     iSlotNum, iDataSource, iTSCindex, iNumBursts, bIsInfiniteDuration);
}

bool GsmRf::FTM_SET_TRANSMIT_BURST(unsigned char iSlotNum, short iDataSource, unsigned char iTSCindex,
                                   DWORD iNumBursts, bool bIsInfiniteDuration) {
    return SendGsmRf(m_frame, 217,
                     "QLIB_FTM_SET_TRANSMIT_BURST(iSlotNum=%d, iDataSource=%d, iTSCindex=%d, iNumBursts=%d, "
                     "bIsInfiniteDuration=%d)",
                     iSlotNum, iDataSource, iTSCindex, iNumBursts, bIsInfiniteDuration);
}

bool GsmRf::FTM_SET_RX_BURST(unsigned char iSlotNum, short iRxFunction) {
    return SendGsmRf(m_frame, 225, "QLIB_FTM_SET_RX_BURST(iSlotNum=%d, iRxFunction=%d)", iSlotNum,
                     iRxFunction);
}

bool GsmRf::FTM_SET_RX_CONTINUOUS(unsigned char iSlotNum, short iRxFunction) {
    return SendGsmRf(m_frame, 234, "QLIB_FTM_SET_RX_CONTINUOUS(iSlotNum=%d, iRxFunction=%d)", iSlotNum,
                     iRxFunction);
}

bool GsmRf::FTM_SET_TX_POWER_LEVEL(unsigned char iPowerLevelID) {
    const unsigned short iLevel = iPowerLevelID;
    return SendGsmRf(m_frame, 227, "QLIB_FTM_SET_TX_POWER_LEVEL(iPowerLevelID=%d)", iLevel);
}

bool GsmRf::FTM_SET_PA_DAC_INPUT(unsigned short iDACinput) {
    return SendGsmRf(m_frame, 233, "QLIB_FTM_SET_PA_DAC_INPUT(iDACinput=%d)", iDACinput);
}

bool GsmRf::FTM_SET_TX_CAL_SWEEP(unsigned short iDAC_Start, unsigned short iDAC_Stop,
                                 unsigned short iDAC_Step) {
    return SendGsmRf(m_frame, 235, "QLIB_FTM_SET_TX_CAL_SWEEP(iDAC_Start=%d, iDAC_Stop=%d, iDAC_Step=%d)",
                     iDAC_Start, iDAC_Stop, iDAC_Step);
}

bool GsmRf::FTM_SET_TX_FRAME_MATRIX(unsigned char iSlotNum, unsigned char iTurnSlotOn,
                                    unsigned short iPwrLevel, unsigned char iModScheme) {
    return SendGsmRf(m_frame, 240,
                     "QLIB_FTM_SET_TX_FRAME_MATRIX(iSlotNum=%d, iTurnSlotOn=%d, iPwrLevel=%d, iModScheme=%d)",
                     iSlotNum, iTurnSlotOn, iPwrLevel, iModScheme);
}

bool GsmRf::FTM_GET_RSSI(DWORD& iRssiValue) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GET_RSSI( )");
    BeginGsmRf(m_frame, 230).U32(0);
    return m_frame.Send(0) && TakeLogged(m_frame, "QLIB_FTM_GET_RSSI( iRssiValue = %d)", iRssiValue);
}
