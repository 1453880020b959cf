// What the radio receives: gain control, carrier-to-noise, I/Q and intermodulation.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// RfReceiver measures and calibrates the receive path. Every command is one request and its answer, within
/// QMSL_TimeOut_SyncRequest; true means that the handset answered it in the current command type and system
/// mode, with all values. Units are the handset's. Caller's thread. The frame must outlive it.
class QUILLET_API RfReceiver {
public:
    explicit RfReceiver(CommandFrame& frame) : m_frame(frame) {}

    bool FTM_GET_RX_AGC(unsigned short& iRX_AGC);
    /// FTM_GET_CTON: carrier-to-noise ratio.
    bool FTM_GET_CTON(DWORD& iCtoN);
    bool FTM_GET_FM_IQ(DWORD& iFmIQValue);

    bool FTM_SET_LNA_OFFSET(unsigned short iLNAindex, unsigned short iLNAoffset);
    bool FTM_SET_DVGA_OFFSET(unsigned char iDVGAoffset);
    /// FTM_GET_DVGA_OFFSET, FTM_GET_LNA_OFFSET measure the offset at which the AGC reads as expected.
    bool FTM_GET_DVGA_OFFSET(short iExpectedRX_AGC, short& iDVGAoffsetValue);
    bool FTM_GET_LNA_OFFSET(unsigned short iLNAindex, short iExpectedRX_AGC, short& iLNAoffsetValue);
    bool FTM_SET_FREQ_SENSE_GAIN(unsigned char iModulationIndex);

    /// FTM_GET_CDMA_IM2 finds the mixer settings with the least second-order intermodulation; the other form
    /// tells how far it was suppressed, too.
    bool FTM_GET_CDMA_IM2(unsigned char& iIValue, unsigned char& iQValue, unsigned char& iTransconductance);
    bool FTM_GET_CDMA_IM2_WITH_SUPPRESSSION(unsigned char& iIValue, unsigned char& iQValue,
                                            unsigned char& iTransconductance, unsigned short& iSuppression);

    /// FTM_TEST_GET_DVGA_LNA asks for all offsets at once: of the DVGA (when bGetDVGA) and of the LNAs in the
    /// mask. Its request carries no command id. True when an answer came, whatever its header; values that it
    /// does not hold stay as they were.
    bool FTM_TEST_GET_DVGA_LNA(bool bGetDVGA, unsigned short iLNAMask, unsigned short iRxAGC,
                               unsigned short& iDVGAoffset, unsigned short& iLNA0offset,
                               unsigned short& iLNA1offset, unsigned short& iLNA2offset,
                               unsigned short& iLNA3offset);

private:
    CommandFrame& m_frame;
};
