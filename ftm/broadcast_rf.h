// The radio of the broadcast receiver, and its calibration data.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// BroadcastRf calibrates the broadcast receiver's radio. Every command is one request and its response,
/// within QMSL_TimeOut_SyncRequest. True means that the phone answered in the current command type and system
/// mode, with all values. Units are phone-specific. Caller's thread. The frame must outlive it.
class QUILLET_API BroadcastRf {
public:
    explicit BroadcastRf(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_MF_TUNE_PLL tunes the synthesizer to a channel.
    bool FTM_MF_TUNE_PLL(unsigned short iChannel);
    /// FTM_MF_SYNTH_LOCK: bLockState is not 0 when the synthesizer is locked.
    bool FTM_MF_SYNTH_LOCK(unsigned char& bLockState);
    /// FTM_MF_LNA_SELECT selects a low-noise amplifier.
    bool FTM_MF_LNA_SELECT(unsigned short iWhichLna);
    /// FTM_MF_RF_SWITCH_CONFIG sets the antenna switch.
    bool FTM_MF_RF_SWITCH_CONFIG(unsigned short iState);
    /// FTM_MF_SET_GAIN_STATE fixes the gain state.
    bool FTM_MF_SET_GAIN_STATE(unsigned short iGainState);
    /// FTM_MF_GET_AGC_STATE reads the gain state and the gain of the digital amplifier.
    bool FTM_MF_GET_AGC_STATE(unsigned short& iGainState, unsigned short& iDvga);
    /// FTM_MF_GET_RX_RSSI reads the signal strength.
    bool FTM_MF_GET_RX_RSSI(unsigned short& iRssiValue);
    /// FTM_MF_GET_RSSI_CAL_POINT measures the calibration point of a gain state at a known input power. The
    /// response must have the point and one further value, which is ignored.
    bool FTM_MF_GET_RSSI_CAL_POINT(unsigned short iGainState, unsigned short iInputPower,
                                   unsigned short& iCalPoint);
    /// FTM_MF_GET_IM2 is FTM_GET_CDMA_IM2_WITH_SUPPRESSSION for this receiver.
    bool FTM_MF_GET_IM2(unsigned short& iSuppression, unsigned char& iIValue, unsigned char& iQValue,
                        unsigned char& iTransconductance);
    /// FTM_MF_WRITE_CAL_DATA makes the phone store a band's calibration. True when it answered. Whether it
    /// stored them is only in the log (_iWriteStatus).
    bool FTM_MF_WRITE_CAL_DATA(unsigned short iBand);

private:
    CommandFrame& m_frame;
};
