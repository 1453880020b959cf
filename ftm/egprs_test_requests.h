// The requests of the EGPRS bit-error-rate test.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// EgprsTestRequests: further requests of the GSM test, with results as in GsmTestRequests. TSC, TFI, USF,
/// band and slot values are phone-specific. Caller's thread. The frame must outlive it.
class QUILLET_API EgprsTestRequests {
public:
    explicit EgprsTestRequests(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ starts GPRS idle mode.
    bool FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ(unsigned char& iStatus);
    /// FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK makes the phone loop the data of its block flows back.
    bool FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK(unsigned char& iStatus);
    /// FTM_EGPRS_BER_CONFIGURE_DL_TBF sets up the downlink block flow in one or two slots.
    bool FTM_EGPRS_BER_CONFIGURE_DL_TBF(unsigned char iDL_TSC, unsigned char iDL_TFI, unsigned short iChannel,
                                        unsigned char iBand, unsigned char bFirstSlotActive,
                                        unsigned char iFirstSlotNum, unsigned char bSecondSlotActive,
                                        unsigned char iSecondSlotNum, unsigned char& iStatus);
    /// FTM_EGPRS_BER_CONFIGURE_UL_TBF sets up the uplink block flow in one or two slots. iThird is sent
    /// between USF and slots.
    bool FTM_EGPRS_BER_CONFIGURE_UL_TBF(unsigned char iUL_TSC, unsigned char iUSF, unsigned char iThird,
                                        unsigned char bFirstSlotActive, unsigned char iFirstSlotNum,
                                        unsigned char bSecondSlotActive, unsigned char iSecondSlotNum,
                                        unsigned char& iStatus);
    /// FTM_EGPRS_BER_RELEASE_ALL_TBF, FTM_EGPRS_BER_RELEASE_UL_TBF release both block flows or the uplink
    /// one.
    bool FTM_EGPRS_BER_RELEASE_ALL_TBF(unsigned char& iStatus);
    bool FTM_EGPRS_BER_RELEASE_UL_TBF(unsigned char& iStatus);

private:
    CommandFrame& m_frame;
};
