// Bursts, slots and power: settings that the handset confirms with any answer.
#include "ftm/gsm_rf.h"

bool GsmRf::FTM_SET_PA_PROFILE(const unsigned short* piRampTable, const unsigned short* piPaLookupTable,
                               unsigned char iRampSize, unsigned char iPaLookupTableSize) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_PA_PROFILE(iRampSize=%d, iPaLookupTableSize=%d)",
                             iRampSize, iPaLookupTableSize);
    RequestBuilder& request = Begin(212);
    for (const unsigned short* piTable : {piRampTable, piPaLookupTable})
        for (const unsigned short iValue : std::span(piTable, kPaProfileSize))
            request.U16(iValue);
    request.U8(iRampSize).U8(iPaLookupTableSize);
    return m_frame.Send(0);
}

bool GsmRf::SetTransmit(unsigned short iCommandId, unsigned char iSlotNum, short iDataSource,
                        unsigned char iTSCindex, DWORD iNumBursts, bool bIsInfiniteDuration) {
    Begin(iCommandId).U8(iSlotNum).S16(iDataSource).U8(iTSCindex).U32(iNumBursts).U8(bIsInfiniteDuration);
    return m_frame.Send(0);
}

bool GsmRf::FTM_SET_TRANSMIT_CONT(unsigned char iSlotNum, short iDataSource, unsigned char iTSCindex,
                                  DWORD iNumBursts, bool bIsInfiniteDuration) {
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_SET_TRANSMIT_CONT(iSlotNum=%d, iDataSource=%d, iTSCindex=%d, "
                             "iNumBursts=%d, bIsInfiniteDuration=%d)",
                             iSlotNum, iDataSource, iTSCindex, AsInt(iNumBursts), bIsInfiniteDuration);
    return SetTransmit(216, iSlotNum, iDataSource, iTSCindex, iNumBursts, bIsInfiniteDuration);
}

bool GsmRf::FTM_SET_TRANSMIT_BURST(unsigned char iSlotNum, short iDataSource, unsigned char iTSCindex,
                                   DWORD iNumBursts, bool bIsInfiniteDuration) {
    m_frame.Log().LogMessage(LOG_FN,
                             "QLIB_FTM_SET_TRANSMIT_BURST(iSlotNum=%d, iDataSource=%d, iTSCindex=%d, "
                             "iNumBursts=%d, bIsInfiniteDuration=%d)",
                             iSlotNum, iDataSource, iTSCindex, AsInt(iNumBursts), bIsInfiniteDuration);
    return SetTransmit(217, iSlotNum, iDataSource, iTSCindex, iNumBursts, bIsInfiniteDuration);
}

bool GsmRf::SetReceive(unsigned short iCommandId, unsigned char iSlotNum, short iRxFunction) {
    Begin(iCommandId).U8(iSlotNum).S16(iRxFunction);
    return m_frame.Send(0);
}

bool GsmRf::FTM_SET_RX_BURST(unsigned char iSlotNum, short iRxFunction) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_RX_BURST(iSlotNum=%d, iRxFunction=%d)", iSlotNum,
                             iRxFunction);
    return SetReceive(225, iSlotNum, iRxFunction);
}

bool GsmRf::FTM_SET_RX_CONTINUOUS(unsigned char iSlotNum, short iRxFunction) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_RX_CONTINUOUS(iSlotNum=%d, iRxFunction=%d)", iSlotNum,
                             iRxFunction);
    return SetReceive(234, iSlotNum, iRxFunction);
}

bool GsmRf::FTM_SET_TX_POWER_LEVEL(unsigned char iPowerLevelID) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_TX_POWER_LEVEL(iPowerLevelID=%d)", iPowerLevelID);
    Begin(227).U16(iPowerLevelID);
    return m_frame.Send(0);
}

bool GsmRf::FTM_SET_PA_DAC_INPUT(unsigned short iDACinput) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_PA_DAC_INPUT(iDACinput=%d)", iDACinput);
    Begin(233).U16(iDACinput);
    return m_frame.Send(0);
}

bool GsmRf::FTM_SET_TX_CAL_SWEEP(unsigned short iDAC_Start, unsigned short iDAC_Stop,
                                 unsigned short iDAC_Step) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_SET_TX_CAL_SWEEP(iDAC_Start=%d, iDAC_Stop=%d, iDAC_Step=%d)",
                             iDAC_Start, iDAC_Stop, iDAC_Step);
    Begin(235).U16(iDAC_Start).U16(iDAC_Stop).U16(iDAC_Step);
    return m_frame.Send(0);
}

bool GsmRf::FTM_SET_TX_FRAME_MATRIX(unsigned char iSlotNum, unsigned char iTurnSlotOn,
                                    unsigned short iPwrLevel, unsigned char iModScheme) {
    m_frame.Log().LogMessage(
        LOG_FN, "QLIB_FTM_SET_TX_FRAME_MATRIX(iSlotNum=%d, iTurnSlotOn=%d, iPwrLevel=%d, iModScheme=%d)",
        iSlotNum, iTurnSlotOn, iPwrLevel, iModScheme);
    Begin(240).U8(iSlotNum).U8(iTurnSlotOn).U16(iPwrLevel).U8(iModScheme);
    return m_frame.Send(0);
}

bool GsmRf::FTM_GET_RSSI(DWORD& iRssiValue) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_GET_RSSI( )");
    Begin(230).U32(0);
    if (!m_frame.Send(0))
        return false;
    const bool bTaken = TakeValues(m_frame, iRssiValue);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_FTM_GET_RSSI( iRssiValue = %d)", AsInt(iRssiValue));
    return bTaken;
}
