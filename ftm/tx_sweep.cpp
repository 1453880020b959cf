#include "ftm/tx_sweep.h"

#include "ftm/ftm_command.h"

bool TxSweep::FTM_CONFIGURE_TX_SWEEP_CAL(unsigned short iTimeInterval,
                                         unsigned short iNumofHDETReadingsPerStep) {
    return SendFtm(m_frame, 125,
                   "QLIB_FTM_CONFIGURE_TX_SWEEP_CAL(iTimeInterval=%d, iNumofHDETReadingsPerStep=%d)",
                   iTimeInterval, iNumofHDETReadingsPerStep);
}

bool TxSweep::FTM_TX_SWEEP_CAL(unsigned char bOnOff) {
    return SendFtm(m_frame, 116, "QLIB_FTM_TX_SWEEP_CAL(bOnOff=%d)", bOnOff);
}

bool TxSweep::FTM_GET_HDET_FROM_TX_SWEEP_CAL(unsigned short iIndex, unsigned short& iHDETvalue) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GET_HDET_FROM_TX_SWEEP_CAL( iIndex = %d)", iIndex);
    BeginFtm(m_frame, 119).U16(iIndex).U16(iHDETvalue);
    return m_frame.SendFtmCmd() &&
           TakeLogged(m_frame, "QLIB_FTM_GET_HDET_FROM_TX_SWEEP_CAL( iIndex = %d, iHDETvalue = %d)",
                      std::tuple(iIndex), iHDETvalue);
}

bool TxSweep::FTM_GET_ALL_HDET_FROM_TX_SWEEP_CAL(unsigned char* piHDETvalues) {
    constexpr size_t kWholeResponse = 6 + kAllHdetSize;
    LogLine(m_frame, LOG_FN, "QLIB_FTM_GET_ALL_HDET_FROM_TX_SWEEP_CAL( )");
    const std::span<unsigned char> table(piHDETvalues, kAllHdetSize);
    BeginFtm(m_frame, 127).Bytes(table);
    if (!m_frame.SendFtmCmd() || m_frame.Response().Size() < kWholeResponse || !TakeValues(m_frame, table))
        return false;
    m_frame.Log().LogHex(LOG_RET, piHDETvalues, kAllHdetSize, "QLIB_FTM_GET_ALL_HDET_FROM_TX_SWEEP_CAL( ");
    return true;
}

bool TxSweep::FTM_SET_HDET_TRACKING(unsigned short iOnOff, unsigned short iHDETvalue) {
    return SendFtm(m_frame, 124, "QLIB_FTM_SET_HDET_TRACKING(iOnOff=%d, iHDETvalue=%d)", iOnOff, iHDETvalue);
}
