// The broadcast receiver: its state and settings.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// BroadcastReceiver: every command is one request and its response, within QMSL_TimeOut_SyncRequest. True
/// means that the phone answered with all values. Out-values are taken from the response's end; when it is
/// too short they all stay unchanged. Values are phone-specific. Caller's thread. The frame must outlive it.
class QUILLET_API BroadcastReceiver {
public:
    explicit BroadcastReceiver(CommandFrame& frame) : m_frame(frame) {}

    /// MFLO_START_FLO starts the receiver.
    bool MFLO_START_FLO();
    /// MFLO_GET_FLO_STATE, MFLO_GET_FLO_SUBSTATE read the state of one of the systems that are received.
    bool MFLO_GET_FLO_STATE(unsigned char eSystem, unsigned char& eSystemState);
    bool MFLO_GET_FLO_SUBSTATE(unsigned char eSystem, unsigned char& eSubstate);
    /// MFLO_GET_FLO_VERSION_INFO reads the versions of the receiver's hardware and software.
    bool MFLO_GET_FLO_VERSION_INFO(unsigned char& pHWmajor, unsigned char& pHWminor, unsigned char& pHWpatch,
                                   unsigned char& pSWmajor, unsigned char& pSWminor, unsigned char& pSWpatch,
                                   unsigned char& pSWbuild);

    /// MFLO_SET_RF_CHNL tunes the receiver to a channel, MFLO_GET_RF_CHNL reads the present one.
    bool MFLO_SET_RF_CHNL(unsigned char iChannel);
    bool MFLO_GET_RF_CHNL(unsigned char& piChannel);
    /// MFLO_GET_RSSI_VALUE: the signal strength with two decimals. It stays unchanged when the response is
    /// too short.
    bool MFLO_GET_RSSI_VALUE(double& pdRSSI);

    /// MFLO_ENABLE_FTAP_PLP_DATA, MFLO_ENABLE_FTAP_OIS, MFLO_ENABLE_WIC_LIC switch on (1) or off (0) what
    /// test stations need: physical-layer packets, overhead information (the argument is its reception mode),
    /// and the identification channels of wide and local area.
    bool MFLO_ENABLE_FTAP_PLP_DATA(unsigned char bEnable);
    bool MFLO_ENABLE_FTAP_OIS(unsigned char eOIS_ReceptionMode);
    bool MFLO_ENABLE_WIC_LIC(unsigned char bEnable);

private:
    CommandFrame& m_frame;
};
