// The power-management chip's signals: analogue multiplexer, interrupts, output drivers.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// PmicSignals: every command is one request and its response, within QMSL_TimeOut_SyncRequest. True means
/// that the phone answered, in any system mode. Values are chip-specific and passed on unchanged. Caller's
/// thread. The frame must outlive it.
class QUILLET_API PmicSignals {
public:
    explicit PmicSignals(CommandFrame& frame) : m_frame(frame) {}

    bool FTM_PMIC_AMUX_CONFIG(unsigned char iMuxSelect, unsigned char iMuxScale);
    /// FTM_PMIC_INT_GET_RT_STATUS reads an interrupt's present status. iInterruptStatusId is not changed.
    bool FTM_PMIC_INT_GET_RT_STATUS(unsigned char& iInterruptStatusId, unsigned char& iInterruptStatus);
    bool FTM_PMIC_INT_IRQ_CLR(unsigned char iInterruptHandler);
    bool FTM_SET_PMIC_DRIVE_LEVEL(unsigned char iHighDrivePinID, unsigned char iDriveLevel);
    bool FTM_PMIC_SPKR_CONFIG(unsigned char iSpeakerCMD, unsigned char iSpeakerGain,
                              unsigned char iSpeakerDelay);

private:
    CommandFrame& m_frame;
};
