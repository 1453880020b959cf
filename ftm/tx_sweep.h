// The transmitter's calibration sweep and its power detector (HDET).
#pragma once

#include "platform/export.h"

class CommandFrame;

/// TxSweep steps the transmitter through its power range and reads the detector at each step. Every command
/// is one request and its response, within QMSL_TimeOut_SyncRequest. True means that the phone answered in
/// the current command type and system mode. Caller's thread. The frame must outlive it.
class QUILLET_API TxSweep {
public:
    /// Detector readings of one sweep, in bytes.
    static constexpr size_t kAllHdetSize = 32;

    explicit TxSweep(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_CONFIGURE_TX_SWEEP_CAL: time per step (in the phone's unit), detector readings per step.
    bool FTM_CONFIGURE_TX_SWEEP_CAL(unsigned short iTimeInterval, unsigned short iNumofHDETReadingsPerStep);
    /// FTM_TX_SWEEP_CAL starts (1) or ends (0) the sweep.
    bool FTM_TX_SWEEP_CAL(unsigned char bOnOff);
    /// FTM_GET_HDET_FROM_TX_SWEEP_CAL reads one detector reading of the sweep.
    bool FTM_GET_HDET_FROM_TX_SWEEP_CAL(unsigned short iIndex, unsigned short& iHDETvalue);
    /// FTM_GET_ALL_HDET_FROM_TX_SWEEP_CAL fills piHDETvalues (kAllHdetSize bytes, whose content is sent as
    /// well). False, with the table unchanged, also when the response is too short for all of it.
    bool FTM_GET_ALL_HDET_FROM_TX_SWEEP_CAL(unsigned char* piHDETvalues);
    /// FTM_SET_HDET_TRACKING makes the transmitter's power follow a detector value, or ends that.
    bool FTM_SET_HDET_TRACKING(unsigned short iOnOff, unsigned short iHDETvalue);

private:
    CommandFrame& m_frame;
};
