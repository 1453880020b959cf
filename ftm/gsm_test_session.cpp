#include "ftm/gsm_test_session.h"

#include "ftm/test_steps.h"
#include "link/log_codes.h"
#include "link/radio_test_records.h"
#include "link/radio_test_status.h"

namespace {

constexpr unsigned char kLogEquipment = 1;
constexpr unsigned short kLogItems = 744;
constexpr size_t kSlowAssociatedChannel = 4;
constexpr FTM_GSM_BER_LoopbackType_Enum kNoLoopback{0};

/// True when the block has the record and the record reports success.
bool IsConfirmed(const GSM_BER_State& state, log_FTM2_GSM_BER_log_id_enum eId) {
    if (TestRecordName(eId) == nullptr || state.aReceived[eId] == 0)
        return false;
    switch (eId) {
        case LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF:
            return state.iSchFound == 1;
        case LOG_FTM2_CHANNEL_ASSIGN_CNF:
            return state.bChannelAssigned == 1;
        case LOG_FTM2_PH_DATA_IND:
            return state.iCrcPass == 1;
        default:
            return true;
    }
}

} // namespace

// --- Session ----------------------------------------------------------------------------------------

GsmTestSession::GsmTestSession(CommandFrame& frame, LogMasks& masks, FtmLog& ftmLog,
                               GsmTestRequests& requests, EgprsTestRequests& egprsRequests,
                               WcdmaTestRequests& wcdmaRequests, RadioSessions& sessions)
    : m_pSteps(std::make_unique<TestSteps>(frame, masks)),
      m_masks(masks),
      m_ftmLog(ftmLog),
      m_requests(requests),
      m_egprsRequests(egprsRequests),
      m_wcdmaRequests(wcdmaRequests),
      m_sessions(sessions) {}

GsmTestSession::~GsmTestSession() = default;

bool GsmTestSession::FTM_GSM_BER_StartSession(DWORD iWaitTime_ms) {
    m_pSteps->Enter("    QLIB_FTM_GSM_BER_StartSession");
    ClearGsmStatus();
    m_pSteps->SetWaitTime(iWaitTime_ms);
    m_ftmLog.FTM_LOG_StartFTM_Log(kGsmLogType);
    bool bOutcome = m_pSteps->Report("  DIAG_SetExtendedLogCode",
                                     m_masks.DIAG_SetExtendedLogCode(kLogEquipment, kFtmLogCode, kLogItems));
    bOutcome = StopRunningTests(bOutcome);
    if (bOutcome) {
        bOutcome = m_pSteps->Accepted("FTM_GSM_START_MODE_REQ", m_requests,
                                      &GsmTestRequests::FTM_GSM_START_MODE_REQ) &&
                   m_pSteps->Report("WaitForGSM_BER_Update( LOG_FTM2_START_GSM_MODE_CNF)",
                                    WaitForGSM_BER_Update(LOG_FTM2_START_GSM_MODE_CNF));
    }
    m_sessions.SetRadioSession(RadioSession::Gsm, true);
    return bOutcome;
}

bool GsmTestSession::StopRunningTests(bool bOutcome) {
    if (m_sessions.IsRadioSessionActive(RadioSession::Wcdma))
        bOutcome = m_pSteps
                       ->Request("FTM_WCDMA_STOP_MODE_REQ", m_wcdmaRequests,
                                 &WcdmaTestRequests::FTM_WCDMA_STOP_MODE_REQ)
                       .bExchanged;
    ReleaseRunningFlows();
    if (m_sessions.IsRadioSessionActive(RadioSession::Gsm))
        bOutcome = m_pSteps->Accepted("FTM_GSM_STOP_MODE_REQ", m_requests,
                                      &GsmTestRequests::FTM_GSM_STOP_GSM_MODE_REQ);
    return bOutcome;
}

void GsmTestSession::ReleaseRunningFlows() {
    unsigned char iStatus = 0;
    if (m_sessions.IsRadioSessionActive(RadioSession::Egprs))
        LogLine(m_pSteps->Log(), LOG_RET, "    FTM_EGPRS_BER_Release_UL_TBF = %s ",
                m_egprsRequests.FTM_EGPRS_BER_RELEASE_ALL_TBF(iStatus) ? "PASS" : "FAIL");
}

bool GsmTestSession::FTM_GSM_BER_StopSession() {
    m_pSteps->Enter("    FTM_GSM_BER_StopSession");
    const bool bStopped = m_pSteps->Accepted("FTM_GSM_STOP_MODE_REQ", m_requests,
                                             &GsmTestRequests::FTM_GSM_STOP_GSM_MODE_REQ) &&
                          WaitForGSM_BER_Update(LOG_FTM2_STOP_GSM_MODE_CNF);
    m_sessions.SetRadioSession(RadioSession::Gsm, false);
    m_sessions.SetRadioSession(RadioSession::Egprs, false);
    return m_pSteps->EndSession("    DIAG_SetPhoneLoggingState", bStopped);
}

// --- Channels ---------------------------------------------------------------------------------------

bool GsmTestSession::FTM_GSM_BER_AssignBCCH(unsigned short iChannel, unsigned char iBand) {
    m_pSteps->Enter("    QLIB_FTM_GSM_BER_AssignBCCH");
    ClearGsmStatus();
    m_sessions.SetRadioSession(RadioSession::Egprs, false);
    if (!m_sessions.IsRadioSessionActive(RadioSession::Gsm))
        return m_pSteps->Fail("    QLIB_FTM_GSM_BER_AssignBCCH -- Error, session is not started");
    if (!SelectBcch(iChannel, iBand))
        return false;
    if (!m_pSteps->Accepted("FTM_GSM_START_IDLE_MODE_REQ", m_requests,
                            &GsmTestRequests::FTM_GSM_START_IDLE_MODE_REQ))
        return m_pSteps->Fail(
            "    FTM_GSM_START_IDLE_MODE_REQ failed recive acquire BCCH message from mobile");
    return WaitForIdleMode();
}

bool GsmTestSession::SelectBcch(unsigned short iChannel, unsigned char iBand) {
    if (!m_pSteps->Accepted("FTM_GSM_SELECT_SPECIFIC_BCCH_REQ", m_requests,
                            &GsmTestRequests::FTM_GSM_SELECT_SPECIFIC_BCCH_REQ, iChannel, iBand))
        return m_pSteps->Fail("    FTM_GSM_SELECT_SPECIFIC_BCCH_REQ failed to acquire BCCH");
    return m_pSteps->Report("WaitForGSM_BER_Update( LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF )",
                            WaitForGSM_BER_Update(LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF));
}

bool GsmTestSession::FTM_GSM_BER_AssignTraffic(FTM_GSM_BER_LoopbackType_Enum eLoopback, unsigned char iSlot,
                                               FTM_GSM_BER_Channel_Modes_Enum eMode) {
    m_pSteps->Enter("    QLIB_FTM_GSM_BER_AssignTraffic");
    if (!m_sessions.IsRadioSessionActive(RadioSession::Gsm))
        return m_pSteps->Fail("    QLIB_FTM_GSM_BER_AssignTraffic -- Error, session is not started");
    return m_pSteps->Accepted("FTM_GSM_CHANNEL_ASSIGN_REQ", m_requests,
                              &GsmTestRequests::FTM_GSM_CHANNEL_ASSIGN_REQ, iSlot, eMode) &&
           WaitForAssignment() && FTM_GSM_ConfigLoopbackType(eLoopback);
}

bool GsmTestSession::FTM_GSM_BER_Handover(unsigned short iChannel, unsigned char iBand, unsigned char iTSC,
                                          unsigned char iSlot, FTM_GSM_BER_Channel_Modes_Enum eMode,
                                          unsigned char iPowerLevel,
                                          FTM_GSM_BER_LoopbackType_Enum eLoopback) {
    m_pSteps->Enter("    QLIB_FTM_GSM_BER_Handover");
    m_pSteps->Listener().FTM_GSM_BER_ClearStatus();
    if (!m_sessions.IsRadioSessionActive(RadioSession::Gsm))
        return m_pSteps->Fail("    QLIB_FTM_GSM_BER_AssignTraffic -- Error, session is not started");
    const bool bAssigned = m_pSteps->Accepted("FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ", m_requests,
                                              &GsmTestRequests::FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ, iChannel,
                                              iBand, iTSC, iSlot, eMode, iPowerLevel) &&
                           WaitForAssignment();
    const bool bOpened = FTM_GSM_ConfigLoopbackType(kNoLoopback);
    const bool bLooped = FTM_GSM_ConfigLoopbackType(eLoopback);
    return bAssigned && bOpened && bLooped;
}

bool GsmTestSession::WaitForAssignment() {
    return m_pSteps->Report("WaitForGSM_BER_Update( LOG_FTM2_CHANNEL_ASSIGN_CNF )",
                            WaitForGSM_BER_Update(LOG_FTM2_CHANNEL_ASSIGN_CNF));
}

bool GsmTestSession::WaitForIdleMode() {
    return m_pSteps->Report("WaitForGSM_BER_Update( LOG_FTM2_START_IDLE_MODE_CNF )",
                            WaitForGSM_BER_Update(LOG_FTM2_START_IDLE_MODE_CNF));
}

bool GsmTestSession::FTM_GSM_ConfigLoopbackType(FTM_GSM_BER_LoopbackType_Enum eLoopback) {
    m_pSteps->Enter("    QLIB_FTM_GSM_ConfigLoopbackType");
    if (!m_sessions.IsRadioSessionActive(RadioSession::Gsm))
        return m_pSteps->Fail("    FTM_GSM_ConfigLoopbackType() -- Error, session is not started");
    const TestResponse response =
        m_pSteps->Request("FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ", m_requests,
                          &GsmTestRequests::FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ, eLoopback);
    LogLine(m_pSteps->Log(), LOG_RET, "    FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ status check is disabled");
    return response.bExchanged;
}

bool GsmTestSession::FTM_GSM_BER_ReleaseTCH() {
    m_pSteps->Enter("    QLIB_FTM_GSM_BER_ReleaseTCH");
    return m_pSteps->Accepted("FTM_GSM_CHANNEL_RELEASE_REQ", m_requests,
                              &GsmTestRequests::FTM_GSM_CHANNEL_RELEASE_REQ);
}

// --- Status -----------------------------------------------------------------------------------------

bool GsmTestSession::ClearGsmStatus() {
    return m_pSteps->Report("FTM_GSM_BER_ClearStatus", m_pSteps->Listener().FTM_GSM_BER_ClearStatus());
}

bool GsmTestSession::FTM_GSM_BER_ClearStatus() {
    m_pSteps->Enter("    QLIB_FTM_GSM_BER_ClearStatus");
    return m_pSteps->Listener().FTM_GSM_BER_ClearStatus();
}

bool GsmTestSession::FTM_GSM_BER_GetStatus(GSM_BER_State* pState) {
    return m_pSteps->Listener().FTM_GSM_BER_GetStatus(pState);
}

bool GsmTestSession::FTM_GSM_BER_GetEventStatus(log_FTM2_GSM_BER_log_id_enum eId) {
    m_pSteps->Enter("    QLIB_FTM_GSM_BER_GetEventStatus");
    GSM_BER_State state;
    FTM_GSM_BER_GetStatus(&state);
    return TestRecordName(eId) != nullptr && state.aReceived[eId] != 0;
}

bool GsmTestSession::FTM_GSM_BER_IsTrafficValid() {
    m_pSteps->Enter("    FTM_GSM_BER_IsTrafficValid");
    GSM_BER_State state;
    FTM_GSM_BER_GetStatus(&state);
    if (state.aTypeReceived[kSlowAssociatedChannel] != 0 && state.aTypeCrcPass[kSlowAssociatedChannel] != 0)
        return true;
    return m_pSteps->Fail("    FTM_GSM_BER_IsTrafficValid() found SACCH status to be invalid");
}

bool GsmTestSession::FTM_GSM_BER_GetRxMetrics(unsigned char& iRxLev, unsigned char& iRxQual) {
    m_pSteps->Enter("    QLIB_FTM_GSM_BER_GetRxMetrics");
    m_pSteps->Listener().FTM_GSM_BER_ClearStatus();
    if (!m_pSteps->Report("WaitForGSM_BER_Update( LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT)",
                          WaitForGSM_BER_Update(LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT)))
        return false;
    GSM_BER_State state;
    FTM_GSM_BER_GetStatus(&state);
    iRxLev = state.iRxLevFull;
    iRxQual = state.iRxQualFull;
    return true;
}

bool GsmTestSession::WaitForGSM_BER_Update(log_FTM2_GSM_BER_log_id_enum eId) {
    const char* sName = TestRecordName(eId);
    return m_pSteps->Wait("GSM", sName != nullptr ? sName : "INVALID GSM FTM2 Message", WaitClock::Ticks,
                          [eId](const RadioTestBlocks& blocks) { return IsConfirmed(blocks.gsm, eId); });
}
