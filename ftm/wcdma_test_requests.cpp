#include "ftm/wcdma_test_requests.h"

#include "ftm/test_request.h"

bool WcdmaTestRequests::FTM_WCDMA_START_MODE_REQ(unsigned char& iStatus) {
    return SendTest(m_frame, kWcdmaTest, 0, iStatus, "QLIB_FTM_WCDMA_START_MODE_REQ()");
}

bool WcdmaTestRequests::FTM_WCDMA_STOP_MODE_REQ(unsigned char& iStatus) {
    return SendTest(m_frame, kWcdmaTest, 1, iStatus, "QLIB_FTM_WCDMA_STOP_MODE_REQ()");
}

bool WcdmaTestRequests::FTM_WCDMA_START_IDLE_MODE_REQ(unsigned char& iStatus) {
    return SendTest(m_frame, kWcdmaTest, 2, iStatus, "QLIB_FTM_WCDMA_START_IDLE_MODE_REQ()");
}

bool WcdmaTestRequests::FTM_WCDMA_ACQUIRE_REQ(unsigned char iA, unsigned char iB, unsigned short iC,
                                              unsigned short iD, DWORD iE, unsigned char& iStatus) {
    return SendTest(m_frame, kWcdmaTest, 3, iStatus, "QLIB_FTM_WCDMA_ACQUIRE_REQ( %d, %d, %d, %d, %d )", iA,
                    iB, iC, iD, iE);
}

RequestBuilder& WcdmaTestRequests::BeginSetup(const char* sName, unsigned short iId, const Rmc& rmc) {
    LogLine(m_frame, LOG_FN,
            "QLIB_%s( iRMC_Type = %d, iUL_MaxTxPwr = %d, iUL_DPCH_ScrCode = %d, iUL_PCA = %d, "
            "iUL_TPC_StepSize = %d, iDL_PriCPICH_Scr_Code = %d, iDL_ChanCode = %d )",
            sName, rmc.iType, rmc.iMaxTxPwr, rmc.iDpchScrCode, rmc.iPca, rmc.iTpcStepSize,
            rmc.iPriCpichScrCode, rmc.iChanCode);
    return AppendFields(BeginTest(m_frame, kWcdmaTest, iId), rmc.iType, rmc.iMaxTxPwr, rmc.iDpchScrCode,
                        rmc.iPca, rmc.iTpcStepSize, rmc.iPriCpichScrCode, rmc.iChanCode);
}

bool WcdmaTestRequests::FTM_WCDMA_RMC_DCH_SETUP_REQ(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr,
                                                    DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
                                                    unsigned char iUL_TPC_StepSize,
                                                    unsigned short iDL_PriCPICH_Scr_Code,
                                                    unsigned short iDL_ChanCode, unsigned char& iStatus) {
    BeginSetup("FTM_WCDMA_RMC_DCH_SETUP_REQ", 4,
               {iRMC_Type, iUL_MaxTxPwr, iUL_DPCH_ScrCode, iUL_PCA, iUL_TPC_StepSize, iDL_PriCPICH_Scr_Code,
                iDL_ChanCode});
    return ExchangeTest(m_frame, kWcdmaTest, iStatus);
}

bool WcdmaTestRequests::FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B(
    unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr, DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
    unsigned char iUL_TPC_StepSize, unsigned short iDL_PriCPICH_Scr_Code, unsigned short iDL_ChanCode,
    unsigned char iF, unsigned char iG, unsigned short iH, unsigned char iI, unsigned char iJ,
    unsigned char iK, unsigned char iL, unsigned char iM, unsigned short iN, unsigned char& iStatus) {
    AppendFields(BeginSetup("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B", 5,
                            {iRMC_Type, iUL_MaxTxPwr, iUL_DPCH_ScrCode, iUL_PCA, iUL_TPC_StepSize,
                             iDL_PriCPICH_Scr_Code, iDL_ChanCode}),
                 iF, iG, iH, iI, iJ, iK, iL, iM, iN);
    return ExchangeTest(m_frame, kWcdmaTest, iStatus);
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
    return ExchangeTest(m_frame, kWcdmaTest, iStatus);
}
