// The requests of the WCDMA bit-error-rate test.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class RequestBuilder;

/// WcdmaTestRequests: one request each, with results as in GsmTestRequests. Values with single-letter names
/// are passed on unchanged. Caller's thread. The frame must outlive it.
class QUILLET_API WcdmaTestRequests {
public:
    explicit WcdmaTestRequests(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_WCDMA_START_MODE_REQ, FTM_WCDMA_STOP_MODE_REQ start and end the WCDMA test mode.
    bool FTM_WCDMA_START_MODE_REQ(unsigned char& iStatus);
    bool FTM_WCDMA_STOP_MODE_REQ(unsigned char& iStatus);
    /// FTM_WCDMA_START_IDLE_MODE_REQ starts idle mode.
    bool FTM_WCDMA_START_IDLE_MODE_REQ(unsigned char& iStatus);
    /// FTM_WCDMA_ACQUIRE_REQ makes the phone search for a pilot.
    bool FTM_WCDMA_ACQUIRE_REQ(unsigned char iA, unsigned char iB, unsigned short iC, unsigned short iD,
                               DWORD iE, unsigned char& iStatus);
    /// FTM_WCDMA_RMC_DCH_SETUP_REQ sets up the reference channel.
    bool FTM_WCDMA_RMC_DCH_SETUP_REQ(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr,
                                     DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
                                     unsigned char iUL_TPC_StepSize, unsigned short iDL_PriCPICH_Scr_Code,
                                     unsigned short iDL_ChanCode, unsigned char& iStatus);
    /// FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B sends nine more values. FTM_WCDMA_RMC_DCH_SETUP_REQ_V2 is the same
    /// request with iH to iM fixed.
    bool FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr,
                                         DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
                                         unsigned char iUL_TPC_StepSize, unsigned short iDL_PriCPICH_Scr_Code,
                                         unsigned short iDL_ChanCode, unsigned char iF, unsigned char iG,
                                         unsigned short iH, unsigned char iI, unsigned char iJ,
                                         unsigned char iK, unsigned char iL, unsigned char iM,
                                         unsigned short iN, unsigned char& iStatus);
    bool FTM_WCDMA_RMC_DCH_SETUP_REQ_V2(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr,
                                        DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
                                        unsigned char iUL_TPC_StepSize, unsigned short iDL_PriCPICH_Scr_Code,
                                        unsigned short iDL_ChanCode, unsigned char iF, unsigned char iG,
                                        unsigned short iN, unsigned char& iStatus);

private:
    struct Rmc {
        unsigned char iType;
        unsigned char iMaxTxPwr;
        DWORD iDpchScrCode;
        unsigned char iPca;
        unsigned char iTpcStepSize;
        unsigned short iPriCpichScrCode;
        unsigned short iChanCode;
    };

    /// BeginSetup logs the entry line of a set-up request and appends the fields that all of them begin with.
    RequestBuilder& BeginSetup(const char* sName, unsigned short iId, const Rmc& rmc);

    CommandFrame& m_frame;
};
