#include "ftm/wcdma_test_session.h"

#include "ftm/test_steps.h"
#include "link/log_codes.h"
#include "link/radio_test_records.h"
#include "link/radio_test_status.h"

namespace {

constexpr int kStartAttempts = 2;

/// True when the block has the record and the record reports success.
bool IsConfirmed(const WCDMA_BER_State& state, log_FTM2_WCDMA_BER_log_id_enum eId) {
    if (TestRecordName(eId) == nullptr || state.aReceived[eId] == 0)
        return false;
    switch (eId) {
        case LOG_FTM2_WCDMA_ACQUIRE_CNF:
            return state.iAcquireStatus == 1;
        case LOG_FTM2_WCDMA_CPHY_SETUP_CNF:
            return state.iSetupStatus == 1;
        case LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND:
            return state.iEstablishedStatus == 1;
        default:
            return true;
    }
}

} // namespace

WcdmaTestSession::WcdmaTestSession(CommandFrame& frame, LogMasks& masks, FtmLog& ftmLog,
                                   WcdmaTestRequests& requests, GsmTestRequests& gsmRequests,
                                   RadioSessions& sessions)
    : m_pSteps(std::make_unique<TestSteps>(frame, masks)),
      m_ftmLog(ftmLog),
      m_requests(requests),
      m_gsmRequests(gsmRequests),
      m_sessions(sessions) {}

WcdmaTestSession::~WcdmaTestSession() = default;

bool WcdmaTestSession::IsWcdmaConfirmed(const char* sWait, log_FTM2_WCDMA_BER_log_id_enum eId) {
    return m_pSteps->Report(sWait, WaitForWCDMA_BER_Update(eId));
}

// --- Session ----------------------------------------------------------------------------------------

bool WcdmaTestSession::FTM_WCDMA_BER_StartSession(DWORD iWaitTime_ms) {
    m_pSteps->Enter("    QLIB_FTM_WCDMA_BER_StartSession");
    m_pSteps->Enter("QLIB_FTM_WCDMA_AGC_Stop_Log()");
    const bool bAgcStopped = m_ftmLog.FTM_LOG_StopFTM_Log(kAgcLogType);
    LogLine(m_pSteps->Log(), LOG_RET, "QLIB_FTM_LOG_StopFTM_Log() - FTM_LOG_DISABLE() = %d",
            bAgcStopped ? 1 : 0);
    ClearWcdmaStatus();
    m_pSteps->SetWaitTime(iWaitTime_ms);
    m_ftmLog.FTM_LOG_StartFTM_Log(kWcdmaLogType);
    WcdmaStart eStart = StopOtherTests() ? WcdmaStart::Again : WcdmaStart::Failed;
    for (int i = 0; i < kStartAttempts && eStart == WcdmaStart::Again; ++i)
        eStart = TryWcdmaStart();
    const bool bActive = eStart == WcdmaStart::Done && StartIdleMode();
    m_sessions.SetRadioSession(RadioSession::Wcdma, bActive);
    return bActive;
}

bool WcdmaTestSession::StopOtherTests() {
    bool bOutcome = true;
    if (m_sessions.IsRadioSessionActive(RadioSession::Gsm))
        bOutcome =
            m_pSteps
                ->Request("FTM_GSM_STOP_MODE_REQ", m_gsmRequests, &GsmTestRequests::FTM_GSM_STOP_GSM_MODE_REQ)
                .bExchanged;
    if (IsWcdmaActive())
        bOutcome =
            m_pSteps
                ->Request("FTM_WCDMA_STOP_MODE_REQ", m_requests, &WcdmaTestRequests::FTM_WCDMA_STOP_MODE_REQ)
                .bExchanged;
    return bOutcome;
}

WcdmaTestSession::WcdmaStart WcdmaTestSession::TryWcdmaStart() {
    if (!m_pSteps->Accepted("FTM_WCDMA_START_MODE_REQ", m_requests,
                            &WcdmaTestRequests::FTM_WCDMA_START_MODE_REQ))
        return WcdmaStart::Failed;
    if (IsWcdmaConfirmed("WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_START_MODE_CNF)",
                         LOG_FTM2_WCDMA_START_MODE_CNF))
        return WcdmaStart::Done;
    if (!m_pSteps->Accepted("FTM_WCDMA_STOP_MODE_REQ", m_requests,
                            &WcdmaTestRequests::FTM_WCDMA_STOP_MODE_REQ))
        return WcdmaStart::Failed;
    return IsWcdmaConfirmed("WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_STOP_MODE_CNF )",
                            LOG_FTM2_WCDMA_STOP_MODE_CNF)
               ? WcdmaStart::Done
               : WcdmaStart::Again;
}

bool WcdmaTestSession::StartIdleMode() {
    return m_pSteps->Accepted("FTM_WCDMA_START_IDLE_MODE_REQ", m_requests,
                              &WcdmaTestRequests::FTM_WCDMA_START_IDLE_MODE_REQ) &&
           IsWcdmaConfirmed("WaitForWCDMA_BER_Update( LOG_FTM2_START_IDLE_MODE_CNF )",
                            LOG_FTM2_WCDMA_START_IDLE_MODE_REQ);
}

bool WcdmaTestSession::FTM_WCDMA_BER_StopSession() {
    const bool bStopped = m_pSteps
                              ->RequestLoggedAs(LOG_FN, "FTM_WCDMA_STOP_MODE_REQ", m_requests,
                                                &WcdmaTestRequests::FTM_WCDMA_STOP_MODE_REQ)
                              .Accepted() &&
                          IsWcdmaConfirmed("WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_STOP_MODE_CNF )",
                                           LOG_FTM2_WCDMA_STOP_MODE_CNF);
    m_sessions.SetRadioSession(RadioSession::Wcdma, false);
    return m_pSteps->EndSession("DIAG_SetPhoneLoggingState", bStopped);
}

// --- Channels ---------------------------------------------------------------------------------------

bool WcdmaTestSession::FTM_WCDMA_BER_AcquirePilot(unsigned short iChannel) {
    m_pSteps->Enter("    QLIB_FTM_WCDMA_BER_AcquirePilot");
    ClearWcdmaStatus();
    if (!IsWcdmaActive())
        return m_pSteps->Fail("    QLIB_FTM_WCDMA_BER_AcquirePilot -- Error, session is not started");
    return StartIdleMode() &&
           m_pSteps->Accepted("FTM_WCDMA_ACQUIRE_REQ", m_requests, &WcdmaTestRequests::FTM_WCDMA_ACQUIRE_REQ,
                              0, 1, iChannel, 0, 0) &&
           IsWcdmaConfirmed("WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_ACQUIRE_CNF )",
                            LOG_FTM2_WCDMA_ACQUIRE_CNF);
}

bool WcdmaTestSession::WaitForChannel() {
    return IsWcdmaConfirmed("WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_CPHY_SETUP_CNF )",
                            LOG_FTM2_WCDMA_CPHY_SETUP_CNF) &&
           IsWcdmaConfirmed("WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND )",
                            LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND);
}

bool WcdmaTestSession::FTM_WCDMA_BER_SetupRMC_DCH(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr,
                                                  DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
                                                  unsigned char iUL_TPC_StepSize,
                                                  unsigned short iDL_PriCPICH_Scr_Code,
                                                  unsigned short iDL_ChanCode) {
    if (!IsWcdmaActive())
        return m_pSteps->Fail("    QLIB_FTM_WCDMA_BER_SetupRMC_DCH -- Error, session is not started");
    return m_pSteps->Accepted("FTM_WCDMA_RMC_DCH_SETUP_REQ", m_requests,
                              &WcdmaTestRequests::FTM_WCDMA_RMC_DCH_SETUP_REQ, iRMC_Type, iUL_MaxTxPwr,
                              iUL_DPCH_ScrCode, iUL_PCA, iUL_TPC_StepSize, iDL_PriCPICH_Scr_Code,
                              iDL_ChanCode) &&
           WaitForChannel();
}

bool WcdmaTestSession::FTM_WCDMA_BER_SetupDefaultRMC_DCH() {
    return FTM_WCDMA_BER_SetupRMC_DCH(0, 24, 0, 0, 0, 0, 3);
}

bool WcdmaTestSession::FTM_WCDMA_BER_Handover(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr,
                                              DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
                                              unsigned char iUL_TPC_StepSize,
                                              unsigned short iDL_PriCPICH_Scr_Code,
                                              unsigned short iDL_ChanCode, unsigned char iF, unsigned char iG,
                                              unsigned short iN) {
    m_pSteps->Enter("    QLIB_FTM_WCDMA_BER_Handover");
    if (!IsWcdmaActive())
        return m_pSteps->Fail("    QLIB_FTM_WCDMA_BER_Handover -- Error, session is not started");
    return FTM_WCDMA_BER_ClearStatus() &&
           m_pSteps->Accepted("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2", m_requests,
                              &WcdmaTestRequests::FTM_WCDMA_RMC_DCH_SETUP_REQ_V2, iRMC_Type, iUL_MaxTxPwr,
                              iUL_DPCH_ScrCode, iUL_PCA, iUL_TPC_StepSize, iDL_PriCPICH_Scr_Code,
                              iDL_ChanCode, iF, iG, iN) &&
           WaitForChannel();
}

bool WcdmaTestSession::FTM_WCDMA_BER_Handover_V2B(
    unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr, DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
    unsigned char iUL_TPC_StepSize, unsigned short iDL_PriCPICH_Scr_Code, unsigned short iDL_ChanCode,
    unsigned char iF, unsigned char iG, unsigned short iH, unsigned char iI, unsigned char iJ,
    unsigned char iK, unsigned char iL, unsigned char iM, unsigned short iN) {
    m_pSteps->Enter("    QLIB_FTM_WCDMA_BER_Handover_V2B");
    ClearWcdmaStatus();
    if (!IsWcdmaActive())
        return m_pSteps->Fail("    QLIB_FTM_WCDMA_BER_Handover_V2B -- Error, session is not started");
    return FTM_WCDMA_BER_ClearStatus() &&
           m_pSteps->Accepted("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B", m_requests,
                              &WcdmaTestRequests::FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B, iRMC_Type, iUL_MaxTxPwr,
                              iUL_DPCH_ScrCode, iUL_PCA, iUL_TPC_StepSize, iDL_PriCPICH_Scr_Code,
                              iDL_ChanCode, iF, iG, iH, iI, iJ, iK, iL, iM, iN) &&
           WaitForChannel();
}

// --- Status -----------------------------------------------------------------------------------------

bool WcdmaTestSession::ClearWcdmaStatus() {
    return m_pSteps->Report("FTM_WCDMA_BER_ClearStatus", FTM_WCDMA_BER_ClearStatus());
}

bool WcdmaTestSession::FTM_WCDMA_BER_ClearStatus() {
    return m_pSteps->Listener().FTM_WCDMA_BER_ClearStatus();
}

bool WcdmaTestSession::FTM_WCDMA_BER_GetStatus(WCDMA_BER_State* pState) {
    return m_pSteps->Listener().FTM_WCDMA_BER_GetStatus(pState);
}

bool WcdmaTestSession::FTM_WCDMA_BER_GetEventStatus(log_FTM2_WCDMA_BER_log_id_enum eId) {
    WCDMA_BER_State state;
    FTM_WCDMA_BER_GetStatus(&state);
    return TestRecordName(eId) != nullptr && state.aReceived[eId] != 0;
}

bool WcdmaTestSession::WaitForWCDMA_BER_Update(log_FTM2_WCDMA_BER_log_id_enum eId) {
    const char* sName = TestRecordName(eId);
    return m_pSteps->Wait("WCDMA", sName != nullptr ? sName : "INVALID WCDMA FTM2 Message", WaitClock::Timer,
                          [eId](const RadioTestBlocks& blocks) { return IsConfirmed(blocks.wcdma, eId); });
}
