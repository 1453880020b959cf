#include "ftm/wcdma_test_requests.h"

bool WcdmaTestRequests::FTM_WCDMA_START_MODE_REQ(unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_WCDMA_START_MODE_REQ()");
    Begin(0);
    return Exchange(iStatus);
}

bool WcdmaTestRequests::FTM_WCDMA_STOP_MODE_REQ(unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_WCDMA_STOP_MODE_REQ()");
    Begin(1);
    return Exchange(iStatus);
}

bool WcdmaTestRequests::FTM_WCDMA_START_IDLE_MODE_REQ(unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_WCDMA_START_IDLE_MODE_REQ()");
    Begin(2);
    return Exchange(iStatus);
}

bool WcdmaTestRequests::FTM_WCDMA_ACQUIRE_REQ(unsigned char iA, unsigned char iB, unsigned short iC,
                                              unsigned short iD, DWORD iE, unsigned char& iStatus) {
    m_frame.Log().LogMessage(LOG_FN, "QLIB_FTM_WCDMA_ACQUIRE_REQ( %d, %d, %d, %d, %d )", iA, iB, iC, iD,
                             AsInt(iE));
    Begin(3).U8(iA).U8(iB).U16(iC).U16(iD).U32(iE);
    return Exchange(iStatus);
}

RequestBuilder& WcdmaTestRequests::BeginSetup(const char* sName, unsigned short iId, const Rmc& rmc) {
    m_frame.Log().LogMessage(
        LOG_FN,
        "QLIB_%s( iRMC_Type = %d, iUL_MaxTxPwr = %d, iUL_DPCH_ScrCode = %d, iUL_PCA = %d, "
        "iUL_TPC_StepSize = %d, iDL_PriCPICH_Scr_Code = %d, iDL_ChanCode = %d )",
        sName, rmc.iType, rmc.iMaxTxPwr, AsInt(rmc.iDpchScrCode), rmc.iPca, rmc.iTpcStepSize,
        rmc.iPriCpichScrCode, rmc.iChanCode);
    return Begin(iId)
        .U8(rmc.iType)
        .U8(rmc.iMaxTxPwr)
        .U32(rmc.iDpchScrCode)
        .U8(rmc.iPca)
        .U8(rmc.iTpcStepSize)
        .U16(rmc.iPriCpichScrCode)
        .U16(rmc.iChanCode);
}

bool WcdmaTestRequests::FTM_WCDMA_RMC_DCH_SETUP_REQ(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr,
                                                    DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
                                                    unsigned char iUL_TPC_StepSize,
                                                    unsigned short iDL_PriCPICH_Scr_Code,
                                                    unsigned short iDL_ChanCode, unsigned char& iStatus) {
    BeginSetup("FTM_WCDMA_RMC_DCH_SETUP_REQ", 4,
               {iRMC_Type, iUL_MaxTxPwr, iUL_DPCH_ScrCode, iUL_PCA, iUL_TPC_StepSize, iDL_PriCPICH_Scr_Code,
                iDL_ChanCode});
    return Exchange(iStatus);
}

bool WcdmaTestRequests::FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B(
    unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr, DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
    unsigned char iUL_TPC_StepSize, unsigned short iDL_PriCPICH_Scr_Code, unsigned short iDL_ChanCode,
    unsigned char iF, unsigned char iG, unsigned short iH, unsigned char iI, unsigned char iJ,
    unsigned char iK, unsigned char iL, unsigned char iM, unsigned short iN, unsigned char& iStatus) {
    BeginSetup("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B", 5,
               {iRMC_Type, iUL_MaxTxPwr, iUL_DPCH_ScrCode, iUL_PCA, iUL_TPC_StepSize, iDL_PriCPICH_Scr_Code,
                iDL_ChanCode})
        .U8(iF)
        .U8(iG)
        .U16(iH)
        .U8(iI)
        .U8(iJ)
        .U8(iK)
        .U8(iL)
        .U8(iM)
        .U16(iN);
    return Exchange(iStatus);
}

bool WcdmaTestRequests::FTM_WCDMA_RMC_DCH_SETUP_REQ_V2(
    unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr, DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
    unsigned char iUL_TPC_StepSize, unsigned short iDL_PriCPICH_Scr_Code, unsigned short iDL_ChanCode,
    unsigned char iF, unsigned char iG, unsigned short iN, unsigned char& iStatus) {
    BeginSetup("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2", 5,
               {iRMC_Type, iUL_MaxTxPwr, iUL_DPCH_ScrCode, iUL_PCA, iUL_TPC_StepSize, iDL_PriCPICH_Scr_Code,
                iDL_ChanCode})
        .U8(iF)
        .U8(iG)
        .U16(0xFFC4)
        .U8(0)
        .U8(4)
        .U8(0)
        .U8(1)
        .U8(3)
        .U16(iN);
    return Exchange(iStatus);
}
