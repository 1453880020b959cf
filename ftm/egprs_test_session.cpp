#include "ftm/egprs_test_session.h"

#include "ftm/test_steps.h"
#include "link/radio_test_records.h"
#include "link/radio_test_status.h"

EgprsTestSession::EgprsTestSession(CommandFrame& frame, LogMasks& masks, EgprsTestRequests& requests,
                                   GsmTestSession& gsm, RadioSessions& sessions)
    : m_pSteps(std::make_unique<TestSteps>(frame, masks)),
      m_requests(requests),
      m_gsm(gsm),
      m_sessions(sessions) {}

EgprsTestSession::~EgprsTestSession() = default;

bool EgprsTestSession::ClearEgprsStatus() {
    return m_pSteps->Report("FTM_EGPRS_BER_ClearStatus", FTM_EGPRS_BER_ClearStatus());
}

bool EgprsTestSession::BeginEgprs(const char* sEntry, const char* sNotStarted) {
    m_pSteps->Enter(sEntry);
    ClearEgprsStatus();
    return IsEgprsActive() || m_pSteps->Fail(sNotStarted);
}

// --- Idle mode --------------------------------------------------------------------------------------

bool EgprsTestSession::FTM_EGPRS_BER_StartIdleMode() {
    m_pSteps->Enter("    QLIB_FTM_EGPRS_BER_StartIdleMode");
    bool bOutcome = ClearEgprsStatus();
    if (!m_sessions.IsRadioSessionActive(RadioSession::Gsm))
        bOutcome = m_pSteps->Fail(
            "    QLIB_FTM_EGPRS_BER_StartIdleMode -- Error, a GSM BER session must be started first");
    m_gsm.ReleaseRunningFlows();
    if (bOutcome)
        bOutcome = m_pSteps->Accepted("FTM_EGPRS_START_MODE_REQ", m_requests,
                                      &EgprsTestRequests::FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ) &&
                   m_gsm.WaitForIdleMode();
    m_sessions.SetRadioSession(RadioSession::Egprs, true);
    return bOutcome;
}

bool EgprsTestSession::FTM_EGPRS_BER_AssignBCCH(unsigned short iChannel, unsigned char iBand) {
    m_pSteps->Enter("    QLIB_FTM_EGPRS_BER_AssignBCCH");
    m_pSteps->Enter("    QLIB_FTM_GSM_BER_ClearStatus");
    m_gsm.ClearGsmStatus();
    if (!m_sessions.IsRadioSessionActive(RadioSession::Gsm))
        return m_pSteps->Fail("    QLIB_FTM_EGPRS_BER_AssignBCCH -- Error, session is not started");
    m_gsm.SelectBcch(iChannel, iBand);
    return FTM_EGPRS_BER_StartIdleMode();
}

// --- Block flows ------------------------------------------------------------------------------------

bool EgprsTestSession::FTM_EGPRS_BER_Configure_DL_TBF(unsigned char iDL_TSC, unsigned char iDL_TFI,
                                                      unsigned short iChannel, unsigned char iBand,
                                                      unsigned char bFirstSlotActive,
                                                      unsigned char iFirstSlotNum,
                                                      unsigned char bSecondSlotActive,
                                                      unsigned char iSecondSlotNum) {
    LogLine(m_pSteps->Log(), LOG_FN,
            "    QLIB_FTM_EGPRS_BER_Configure_DL_TBF(iDL_TSC = %d, iDL_TFI = %d, iChannel = "
            "%d, iBand = %d, bFirstSlotActive = %d, iFirstSlotNum = %d, bSecondSlotActive = "
            "%d, iSecondSlotNum = %d)",
            iDL_TSC, iDL_TFI, iChannel, iBand, bFirstSlotActive, iFirstSlotNum, bSecondSlotActive,
            iSecondSlotNum);
    ClearEgprsStatus();
    if (!IsEgprsActive())
        return m_pSteps->Fail("    QLIB_FTM_EGPRS_BER_Configure_DL_TBF -- Error, session is not started");
    return m_pSteps->Accepted("FTM_EGPRS_BER_CONFIGURE_DL_TBF", m_requests,
                              &EgprsTestRequests::FTM_EGPRS_BER_CONFIGURE_DL_TBF, iDL_TSC, iDL_TFI, iChannel,
                              iBand, bFirstSlotActive, iFirstSlotNum, bSecondSlotActive, iSecondSlotNum);
}

bool EgprsTestSession::FTM_EGPRS_BER_Configure_UL_TBF(unsigned char iUL_TSC, unsigned char iUSF,
                                                      unsigned char iThird, unsigned char bFirstSlotActive,
                                                      unsigned char iFirstSlotNum,
                                                      unsigned char bSecondSlotActive,
                                                      unsigned char iSecondSlotNum) {
    LogLine(m_pSteps->Log(), LOG_FN,
            "    QLIB_FTM_EGPRS_BER_Configure_UL_TBF( iUL_TSC = %d, iUSF = %d, "
            "bFirstSlotActive = %d, iFirstSlotNum = %d, bSecondSlotActive = %d, "
            "iSecondSlotNum  = %d)",
            iUL_TSC, iUSF, bFirstSlotActive, iFirstSlotNum, bSecondSlotActive, iSecondSlotNum);
    ClearEgprsStatus();
    if (!IsEgprsActive())
        return m_pSteps->Fail("    QLIB_FTM_EGPRS_BER_Configure_UL_TBF -- Error, session is not started");
    return m_pSteps->Accepted("FTM_EGPRS_BER_CONFIGURE_UL_TBF", m_requests,
                              &EgprsTestRequests::FTM_EGPRS_BER_CONFIGURE_UL_TBF, iUL_TSC, iUSF, iThird,
                              bFirstSlotActive, iFirstSlotNum, bSecondSlotActive, iSecondSlotNum);
}

bool EgprsTestSession::FTM_EGPRS_BER_Establish_SRB_LOOPBACK() {
    return BeginEgprs("    QLIB_FTM_EGPRS_BER_Establish_SRB_LOOPBACK",
                      "    QLIB_FTM_EGPRS_BER_Establish_SRB_LOOPBACK -- Error, session is not started") &&
           m_pSteps->Accepted("FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK", m_requests,
                              &EgprsTestRequests::FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK) &&
           WaitForFlow(FTM_LOG_EGPRS_BER_TBF_DL, FTM_LOG_EGPRS_TBF_EVENT_ESTABLISHED, "ESTABLISHED") &&
           WaitForFlow(FTM_LOG_EGPRS_BER_TBF_UL, FTM_LOG_EGPRS_TBF_EVENT_ESTABLISHED, "ESTABLISHED");
}

bool EgprsTestSession::FTM_EGPRS_BER_Release_All_TBF() {
    return Release({"    QLIB_FTM_EGPRS_BER_Release_All_TBF",
                    "    QLIB_FTM_EGPRS_BER_Release_ALL_TBF -- Error, session is not started",
                    "FTM_EGPRS_BER_RELEASE_ALL_TBF"},
                   &EgprsTestRequests::FTM_EGPRS_BER_RELEASE_ALL_TBF);
}

bool EgprsTestSession::FTM_EGPRS_BER_Release_UL_TBF() {
    return Release({"    QLIB_FTM_EGPRS_BER_Release_UL_TBF",
                    "    QLIB_FTM_EGPRS_BER_Release_UL_TBF -- Error, session is not started",
                    "FTM_EGPRS_BER_RELEASE_UL_TBF"},
                   &EgprsTestRequests::FTM_EGPRS_BER_RELEASE_UL_TBF);
}

bool EgprsTestSession::Release(const ReleaseTexts& texts,
                               bool (EgprsTestRequests::*pMethod)(unsigned char&)) {
    return BeginEgprs(texts.sEntry, texts.sNotStarted) &&
           m_pSteps->Accepted(texts.sRequest, m_requests, pMethod) &&
           WaitForFlow(FTM_LOG_EGPRS_BER_TBF_UL, FTM_LOG_EGPRS_TBF_EVENT_RELEASED, "RELEASED");
}

bool EgprsTestSession::WaitForFlow(ftm_log_egprs_tbf_enum eFlow, ftm_log_egprs_tbf_event_type eEvent,
                                   const char* sEvent) {
    const bool bCame = WaitForEGPRS_BER_Update(FTM_LOG_EGPRS_BER_TBF_IND, eFlow, eEvent);
    LogLine(m_pSteps->Log(), LOG_RET,
            "    WaitForEGPRS_BER_Update( FTM_LOG_EGPRS_TBF_EVENT_ESTABLISHED, FTM_LOG_EGPRS_BER_TBF_DL, "
            "FTM_LOG_EGPRS_TBF_EVENT_%s ) = %s",
            sEvent, bCame ? "PASS" : "FAIL");
    return bCame;
}

// --- Status -----------------------------------------------------------------------------------------

bool EgprsTestSession::FTM_EGPRS_BER_GetRxMetrics(unsigned char& iRxLevAverage) {
    FTM_EGPRS_BER_ClearStatus();
    if (!m_pSteps->Report(
            "WaitForGSM_BER_Update( FTM_LOG_EGPRS_BER_SERVING_MEAS_IND )",
            WaitForEGPRS_BER_Update(FTM_LOG_EGPRS_BER_SERVING_MEAS_IND, FTM_LOG_EGPRS_BER_TBF_UL,
                                    FTM_LOG_EGPRS_TBF_EVENT_ESTABLISHED),
            LOG_FN))
        return false;
    EGPRS_BER_State state;
    FTM_EGPRS_BER_GetStatus(&state);
    iRxLevAverage = state.iRxLevAverage;
    return true;
}

bool EgprsTestSession::FTM_EGPRS_BER_ClearStatus() {
    return m_pSteps->Listener().FTM_EGPRS_BER_ClearStatus();
}

bool EgprsTestSession::FTM_EGPRS_BER_GetStatus(EGPRS_BER_State* pState) {
    return m_pSteps->Listener().FTM_EGPRS_BER_GetStatus(pState);
}

bool EgprsTestSession::WaitForEGPRS_BER_Update(log_FTM2_EGPRS_BER_log_id_enum eId,
                                               ftm_log_egprs_tbf_enum eFlow,
                                               ftm_log_egprs_tbf_event_type eEvent) {
    const char* sName = TestRecordName(eId);
    if (sName == nullptr) {
        LogLine(m_pSteps->Log(), LOG_RET, " Starting wait for EGPRS BER message Invalid EGPRS BER Log...");
        return false;
    }
    const bool bNeedsEvent = eId == FTM_LOG_EGPRS_BER_TBF_IND && eFlow == FTM_LOG_EGPRS_BER_TBF_DL;
    return m_pSteps->Wait("EGPRS", sName, WaitClock::Ticks, [=](const RadioTestBlocks& blocks) {
        return blocks.egprs.aReceived[eId - FTM_LOG_EGPRS_BER_TBF_IND] != 0 &&
               (!bNeedsEvent || blocks.egprs.iDownlinkEvent == eEvent);
    });
}
