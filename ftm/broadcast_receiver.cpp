#include "ftm/broadcast_receiver.h"

#include <array>

#include "ftm/broadcast_command.h"

bool BroadcastReceiver::MFLO_START_FLO() {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_START_FLO( )");
    BeginBroadcast(m_frame, 2);
    return m_frame.Send(0);
}

bool BroadcastReceiver::MFLO_GET_FLO_STATE(unsigned char eSystem, unsigned char& eSystemState) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_GET_FLO_STATE( eSystem = %d )", eSystem);
    BeginBroadcast(m_frame, 1).U8(eSystem);
    if (!m_frame.Send(0))
        return false;
    const bool bTaken = TakeValues(m_frame, eSystemState);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_MFLO_GET_FLO_STATE( peSystemState = %d )", eSystemState);
    return bTaken;
}

bool BroadcastReceiver::MFLO_GET_FLO_SUBSTATE(unsigned char eSystem, unsigned char& eSubstate) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_GET_FLO_SUBSTATE( eSystem = %d )", eSystem);
    BeginBroadcast(m_frame, 39).U8(eSystem);
    if (!m_frame.Send(0))
        return false;
    const bool bTaken = TakeValues(m_frame, eSubstate);
    m_frame.Log().LogMessage(LOG_RET, "QLIB_MFLO_GET_FLO_SUBSTATE(eSubstate = %d)", eSubstate);
    return bTaken;
}

bool BroadcastReceiver::MFLO_GET_FLO_VERSION_INFO(unsigned char& pHWmajor, unsigned char& pHWminor,
                                                  unsigned char& pHWpatch, unsigned char& pSWmajor,
                                                  unsigned char& pSWminor, unsigned char& pSWpatch,
                                                  unsigned char& pSWbuild) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_GET_FLO_VERSION_INFO( )");
    BeginBroadcast(m_frame, 6);
    if (!m_frame.Send(0))
        return false;
    const bool bTaken =
        TakeValues(m_frame, pSWbuild, pSWpatch, pSWminor, pSWmajor, pHWpatch, pHWminor, pHWmajor);
    m_frame.Log().LogMessage(LOG_RET,
                             "QLIB_MFLO_GET_FLO_VERSION_INFO( pHWmajor = %d, pHWminor = %d, pHWpatch = %d, "
                             "pSWmajor = %d, pSWminor = %d, pSWpatch = %d, pSWbuild = %d )",
                             pHWmajor, pHWminor, pHWpatch, pSWmajor, pSWminor, pSWpatch, pSWbuild);
    return bTaken;
}

bool BroadcastReceiver::MFLO_SET_RF_CHNL(unsigned char iChannel) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_SET_RF_CHNL( iChannel = %d )", iChannel);
    BeginBroadcast(m_frame, 15).U8(iChannel);
    return m_frame.Send(0);
}

bool BroadcastReceiver::MFLO_GET_RF_CHNL(unsigned char& piChannel) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_GET_RF_CHNL( )");
    BeginBroadcast(m_frame, 16);
    if (!m_frame.Send(0))
        return false;
    const bool bTaken = TakeValues(m_frame, piChannel);
    m_frame.Log().LogMessage(LOG_RET, "MFLO_GET_RF_CHNL( piChannel = %d )", piChannel);
    return bTaken;
}

bool BroadcastReceiver::MFLO_GET_RSSI_VALUE(double& pdRSSI) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_GET_RSSI_VALUE( )");
    BeginBroadcast(m_frame, 13);
    std::array<unsigned char, 4> aParts{};
    if (!m_frame.Send(0) || !m_frame.Response().Take(aParts))
        return false;
    const auto [iPositive, iFirst, iSecond, iHundredths] = aParts;
    const double dSize = (iFirst + iSecond) + iHundredths * 0.01;
    pdRSSI = iPositive == 0 ? -dSize : dSize;
    m_frame.Log().LogMessage(LOG_RET, "QLIB_MFLO_GET_RSSI_VALUE( pdRSSI = %.2f )", pdRSSI);
    return true;
}

bool BroadcastReceiver::MFLO_ENABLE_FTAP_PLP_DATA(unsigned char bEnable) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_ENABLE_FTAP_PLP_DATA( bEnable = %d )", bEnable);
    BeginBroadcast(m_frame, 44).U8(bEnable);
    return m_frame.Send(0);
}

bool BroadcastReceiver::MFLO_ENABLE_FTAP_OIS(unsigned char eOIS_ReceptionMode) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_ENABLE_FTAP_OIS( eOIS_ReceptionMode = %d )",
                             eOIS_ReceptionMode);
    BeginBroadcast(m_frame, 45).U8(eOIS_ReceptionMode);
    return m_frame.Send(0);
}

bool BroadcastReceiver::MFLO_ENABLE_WIC_LIC(unsigned char bEnable) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_MFLO_ENABLE_WIC_LIC( bEnable = %d )", bEnable);
    BeginBroadcast(m_frame, 46).U8(bEnable);
    return m_frame.Send(0);
}
