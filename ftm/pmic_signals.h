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

    /// FTM_PMIC_AMUX_CONFIG selects and scales the input of the analogue multiplexer.
    bool FTM_PMIC_AMUX_CONFIG(unsigned char iMuxSelect, unsigned char iMuxScale);
    /// FTM_PMIC_INT_GET_RT_STATUS reads an interrupt's present status. iInterruptStatusId is not changed.
    bool FTM_PMIC_INT_GET_RT_STATUS(unsigned char& iInterruptStatusId, unsigned char& iInterruptStatus);
    /// FTM_PMIC_INT_IRQ_CLR clears an interrupt.
    bool FTM_PMIC_INT_IRQ_CLR(unsigned char iInterruptHandler);
    /// FTM_SET_PMIC_DRIVE_LEVEL sets the level of a high-current output.
    bool FTM_SET_PMIC_DRIVE_LEVEL(unsigned char iHighDrivePinID, unsigned char iDriveLevel);
    /// FTM_PMIC_SPKR_CONFIG sets the speaker driver.
    bool FTM_PMIC_SPKR_CONFIG(unsigned char iSpeakerCMD, unsigned char iSpeakerGain,
                              unsigned char iSpeakerDelay);

private:
    CommandFrame& m_frame;
};
