#include "ftm/broadcast_receiver.h"

#include <array>

#include "ftm/broadcast_command.h"
#include "ftm/ftm_command.h"

bool BroadcastReceiver::MFLO_START_FLO() {
    return SendBroadcast(m_frame, 2, "QLIB_MFLO_START_FLO( )");
}

bool BroadcastReceiver::MFLO_GET_FLO_STATE(unsigned char eSystem, unsigned char& eSystemState) {
    return SendBroadcast(m_frame, 1, "QLIB_MFLO_GET_FLO_STATE( eSystem = %d )", eSystem) &&
           TakeBroadcast(m_frame, "QLIB_MFLO_GET_FLO_STATE( peSystemState = %d )", eSystemState);
}

bool BroadcastReceiver::MFLO_GET_FLO_SUBSTATE(unsigned char eSystem, unsigned char& eSubstate) {
    return SendBroadcast(m_frame, 39, "QLIB_MFLO_GET_FLO_SUBSTATE( eSystem = %d )", eSystem) &&
           TakeBroadcast(m_frame, "QLIB_MFLO_GET_FLO_SUBSTATE(eSubstate = %d)", eSubstate);
}

bool BroadcastReceiver::MFLO_GET_FLO_VERSION_INFO(unsigned char& pHWmajor, unsigned char& pHWminor,
                                                  unsigned char& pHWpatch, unsigned char& pSWmajor,
                                                  unsigned char& pSWminor, unsigned char& pSWpatch,
                                                  unsigned char& pSWbuild) {
    return SendBroadcast(m_frame, 6, "QLIB_MFLO_GET_FLO_VERSION_INFO( )") &&
           TakeBroadcast(m_frame,
                         "QLIB_MFLO_GET_FLO_VERSION_INFO( pHWmajor = %d, pHWminor = %d, pHWpatch = %d, "
                         "pSWmajor = %d, pSWminor = %d, pSWpatch = %d, pSWbuild = %d )",
                         pHWmajor, pHWminor, pHWpatch, pSWmajor, pSWminor, pSWpatch, pSWbuild);
}

bool BroadcastReceiver::MFLO_SET_RF_CHNL(unsigned char iChannel) {
    return SendBroadcast(m_frame, 15, "QLIB_MFLO_SET_RF_CHNL( iChannel = %d )", iChannel);
}

bool BroadcastReceiver::MFLO_GET_RF_CHNL(unsigned char& piChannel) {
    return SendBroadcast(m_frame, 16, "QLIB_MFLO_GET_RF_CHNL( )") &&
           TakeBroadcast(m_frame, "MFLO_GET_RF_CHNL( piChannel = %d )", piChannel);
}

bool BroadcastReceiver::MFLO_GET_RSSI_VALUE(double& pdRSSI) {
    std::array<unsigned char, 4> aParts{};
    if (!SendBroadcast(m_frame, 13, "QLIB_MFLO_GET_RSSI_VALUE( )") ||
        m_frame.Response().Size() < kBroadcastHeader + aParts.size() || !m_frame.Response().Take(aParts))
        return false;
    const auto [iPositive, iFirst, iSecond, iHundredths] = aParts;
    const double dSize = (iFirst + iSecond) + iHundredths * 0.01;
    pdRSSI = iPositive == 0 ? -dSize : dSize;
    LogLine(m_frame, LOG_RET, "QLIB_MFLO_GET_RSSI_VALUE( pdRSSI = %.2f )", pdRSSI);
    return true;
}

bool BroadcastReceiver::MFLO_ENABLE_FTAP_PLP_DATA(unsigned char bEnable) {
    return SendBroadcast(m_frame, 44, "QLIB_MFLO_ENABLE_FTAP_PLP_DATA( bEnable = %d )", bEnable);
}

bool BroadcastReceiver::MFLO_ENABLE_FTAP_OIS(unsigned char eOIS_ReceptionMode) {
    return SendBroadcast(m_frame, 45, "QLIB_MFLO_ENABLE_FTAP_OIS( eOIS_ReceptionMode = %d )",
                         eOIS_ReceptionMode);
}

bool BroadcastReceiver::MFLO_ENABLE_WIC_LIC(unsigned char bEnable) {
    return SendBroadcast(m_frame, 46, "QLIB_MFLO_ENABLE_WIC_LIC( bEnable = %d )", bEnable);
}
