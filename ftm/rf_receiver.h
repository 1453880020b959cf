// Measurement and calibration of the radio's receive path.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// RfReceiver: every command is one request and its response, within QMSL_TimeOut_SyncRequest. True means
/// that the phone answered in the current command type and system mode, with all values. Units are
/// phone-specific. Caller's thread. The frame must outlive it.
class QUILLET_API RfReceiver {
public:
    explicit RfReceiver(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_GET_RX_AGC reads the level that the receiver measures.
    bool FTM_GET_RX_AGC(unsigned short& iRX_AGC);
    /// FTM_GET_CTON: carrier-to-noise ratio.
    bool FTM_GET_CTON(DWORD& iCtoN);
    /// FTM_GET_FM_IQ reads the I and Q values of the FM receiver.
    bool FTM_GET_FM_IQ(DWORD& iFmIQValue);

    /// FTM_SET_LNA_OFFSET, FTM_SET_DVGA_OFFSET correct the gain of a low-noise amplifier or of the digital
    /// amplifier.
    bool FTM_SET_LNA_OFFSET(unsigned short iLNAindex, unsigned short iLNAoffset);
    bool FTM_SET_DVGA_OFFSET(unsigned char iDVGAoffset);
    /// FTM_GET_DVGA_OFFSET, FTM_GET_LNA_OFFSET measure the offset at which the AGC reads as expected.
    bool FTM_GET_DVGA_OFFSET(short iExpectedRX_AGC, short& iDVGAoffsetValue);
    bool FTM_GET_LNA_OFFSET(unsigned short iLNAindex, short iExpectedRX_AGC, short& iLNAoffsetValue);
    /// FTM_SET_FREQ_SENSE_GAIN sets the frequency-sense gain of a modulation index.
    bool FTM_SET_FREQ_SENSE_GAIN(unsigned char iModulationIndex);

    /// FTM_GET_CDMA_IM2 finds the mixer settings with the least second-order intermodulation.
    /// FTM_GET_CDMA_IM2_WITH_SUPPRESSSION also reads how far it was suppressed.
    bool FTM_GET_CDMA_IM2(unsigned char& iIValue, unsigned char& iQValue, unsigned char& iTransconductance);
    bool FTM_GET_CDMA_IM2_WITH_SUPPRESSSION(unsigned char& iIValue, unsigned char& iQValue,
                                            unsigned char& iTransconductance, unsigned short& iSuppression);

    /// FTM_TEST_GET_DVGA_LNA reads all offsets at once: of the DVGA (when bGetDVGA) and of the LNAs in the
    /// mask. Its request has no command id. True when a response arrived that has more than its header; only
    /// its first byte is checked. Values that it lacks stay unchanged.
    bool FTM_TEST_GET_DVGA_LNA(bool bGetDVGA, unsigned short iLNAMask, unsigned short iRxAGC,
                               unsigned short& iDVGAoffset, unsigned short& iLNA0offset,
                               unsigned short& iLNA1offset, unsigned short& iLNA2offset,
                               unsigned short& iLNA3offset);

private:
    CommandFrame& m_frame;
};
