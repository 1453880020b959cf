#include "ftm/hsdpa_test_session.h"

#include "ftm/test_steps.h"
#include "link/radio_test_status.h"

namespace {

constexpr int kStartAttempts = 2;
constexpr const char* kWaitForStop = "WaitForHSDPA_BER_Update( LOG_FTM2_HSDPA_STOP_MODE_CNF )";

/// The names that the waits log. The records' own names begin with FTM_LOG.
constexpr const char* kIndicationNames[] = {"LOG_FTM2_HSDPA_HS_CHANNEL_START_IND",
                                            "LOG_FTM2_HSDPA_HS_CHANNEL_STOP_IND",
                                            "LOG_FTM2_HSDPA_HS_CHANNEL_RECFG_IND"};

/// The HARQ processes of a reference set. Each has a memory partition of the same size.
struct HSet {
    unsigned char iNumber;
    unsigned char iProcesses;
    unsigned char iPartition;
};

constexpr HSet kHSets[] = {{1, 2, 11}, {2, 2, 11}, {3, 3, 11}, {4, 3, 11},  {5, 6, 11},
                           {6, 6, 11}, {7, 2, 8},  {8, 3, 11}, {255, 6, 21}};

} // namespace

HsdpaTestSession::HsdpaTestSession(CommandFrame& frame, LogMasks& masks, HsdpaTestRequests& requests,
                                   RadioSessions& sessions)
    : m_pSteps(std::make_unique<TestSteps>(frame, masks)), m_requests(requests), m_sessions(sessions) {}

HsdpaTestSession::~HsdpaTestSession() = default;

bool HsdpaTestSession::IsHsdpaConfirmed(const char* sWait, log_FTM2_HSDPA_BER_log_id_enum eId) {
    return m_pSteps->Report(sWait, WaitForHSDPA_BER_Update(eId));
}

// --- Session ----------------------------------------------------------------------------------------

bool HsdpaTestSession::FTM_HSDPA_BER_StartSession() {
    m_pSteps->Enter("    QLIB_FTM_HSDPA_BER_StartSession");
    ClearHsdpaStatus();
    if (!m_sessions.IsRadioSessionActive(RadioSession::Wcdma))
        return m_pSteps->Fail(
            "    QLIB_FTM_HSDPA_BER_StartSession -- Error, WCDMA BER session is not active");
    HsdpaStart eStart = HsdpaStart::Again;
    if (m_sessions.IsRadioSessionActive(RadioSession::Hsdpa) && !StopChannels().bExchanged)
        eStart = HsdpaStart::Failed;
    for (int i = 0; i < kStartAttempts && eStart == HsdpaStart::Again; ++i) {
        // A late confirmation of the previous attempt must not confirm this one.
        if (i > 0)
            FTM_HSDPA_BER_ClearStatus();
        eStart = TryHsdpaStart();
    }
    m_sessions.SetRadioSession(RadioSession::Hsdpa, eStart == HsdpaStart::Done);
    return eStart == HsdpaStart::Done;
}

HsdpaTestSession::HsdpaStart HsdpaTestSession::TryHsdpaStart() {
    if (!m_pSteps->Accepted("FTM_HSDPA_BLER_CMD_START_HS", m_requests,
                            &HsdpaTestRequests::FTM_HSDPA_BLER_CMD_START_HS))
        return HsdpaStart::Failed;
    if (IsHsdpaConfirmed("WaitForHSDPA_BER_Update( LOG_FTM2_HSDPA_START_MODE_CNF)",
                         LOG_FTM2_HSDPA_HS_CHANNEL_START_IND))
        return HsdpaStart::Done;
    return StopChannels().Accepted() && IsHsdpaConfirmed(kWaitForStop, LOG_FTM2_HSDPA_HS_CHANNEL_STOP_IND)
               ? HsdpaStart::Again
               : HsdpaStart::Failed;
}

TestResponse HsdpaTestSession::StopChannels() {
    return m_pSteps->Request("FTM_HSDPA_BLER_CMD_STOP_HS", m_requests,
                             &HsdpaTestRequests::FTM_HSDPA_BLER_CMD_STOP_HS);
}

bool HsdpaTestSession::FTM_HSDPA_BER_StopSession() {
    const bool bStopped = m_pSteps
                              ->RequestLoggedAs(LOG_FN, "FTM_HSDPA_STOP_MODE_REQ", m_requests,
                                                &HsdpaTestRequests::FTM_HSDPA_BLER_CMD_STOP_HS)
                              .Accepted() &&
                          IsHsdpaConfirmed(kWaitForStop, LOG_FTM2_HSDPA_HS_CHANNEL_STOP_IND);
    m_sessions.SetRadioSession(RadioSession::Hsdpa, false);
    return bStopped;
}

bool HsdpaTestSession::FTM_HSDPA_BLER_Reconfigure_HS(unsigned char iReconfigBitmask) {
    LogLine(m_pSteps->Log(), LOG_FN, "    QLIB_FTM_HSDPA_BLER_Reconfigure_HS( iReconfigBitmask = %d )",
            iReconfigBitmask);
    ClearHsdpaStatus();
    if (!m_sessions.IsRadioSessionActive(RadioSession::Hsdpa))
        return m_pSteps->Fail("    QLIB_FTM_HSDPA_BLER_Reconfigure_HS -- Error, session is not started");
    FTM_HSDPA_BER_ClearStatus();
    return m_pSteps->Accepted("FTM_HSDPA_BLER_CMD_RECONFIG_HS", m_requests,
                              &HsdpaTestRequests::FTM_HSDPA_BLER_CMD_RECONFIG_HS, iReconfigBitmask) &&
           IsHsdpaConfirmed("WaitForHSDPA_BER_Update( LOG_FTM2_HSDPA_FTM_CMD_RECONFIG_HS )",
                            LOG_FTM2_HSDPA_HS_CHANNEL_RECFG_IND);
}

// --- Configuration ----------------------------------------------------------------------------------

bool HsdpaTestSession::FTM_HSDPA_BLER_Configure_PDSCH(unsigned short iValue) {
    m_pSteps->Enter("    QLIB_FTM_HSDPA_BLER_Configure_PDSCH");
    return m_pSteps->Accepted("FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH", m_requests,
                              &HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH, iValue);
}

bool HsdpaTestSession::FTM_HSDPA_BLER_Configure_HS_SCCH(unsigned char iNumCodes,
                                                        const unsigned char* aiCodes) {
    LogLine(m_pSteps->Log(), LOG_FN,
            "    QLIB_FTM_HSDPA_BLER_Configure_HS_SCCH( iNumCodes = %d, aiCodes[4] = {%d, %d, %d, %d })",
            iNumCodes, aiCodes[0], aiCodes[1], aiCodes[2], aiCodes[3]);
    return m_pSteps->Accepted("FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH", m_requests,
                              &HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH, iNumCodes, aiCodes);
}

bool HsdpaTestSession::FTM_HSDPA_BLER_Configure_HS_DSCH(unsigned short iH_RNTI,
                                                        unsigned char iNum_HARQ_Processes,
                                                        unsigned char bMemPartitionValid,
                                                        const unsigned char* aiMemPartitionInfo) {
    const unsigned char* const ai = aiMemPartitionInfo;
    LogLine(
        m_pSteps->Log(), LOG_FN,
        "    QLIB_FTM_HSDPA_BLER_Configure_DSCH( iH_RNTI = %d, iNum_HARQ_Processes = %d, bMemPartitionValid "
        "= %d,  aiMemPartitionInfo[8] = {%d, %d, %d, %d, %d, %d, %d, %d })",
        iH_RNTI, iNum_HARQ_Processes, bMemPartitionValid, ai[0], ai[1], ai[2], ai[3], ai[4], ai[5], ai[6],
        ai[7]);
    return m_pSteps->Accepted("FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH", m_requests,
                              &HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH, iH_RNTI,
                              iNum_HARQ_Processes, bMemPartitionValid, aiMemPartitionInfo);
}

bool HsdpaTestSession::FTM_HSDPA_BLER_Configure_HS_DSCH_HSET(unsigned short iH_RNTI, unsigned char iHSet) {
    unsigned char iProcesses = iHSet;
    unsigned char aPartitions[HsdpaTestRequests::kMemPartitions] = {};
    for (const HSet& set : kHSets)
        if (set.iNumber == iHSet) {
            iProcesses = set.iProcesses;
            for (unsigned char i = 0; i < set.iProcesses; ++i)
                aPartitions[i] = set.iPartition;
        }
    return FTM_HSDPA_BLER_Configure_HS_DSCH(iH_RNTI, iProcesses, 1, aPartitions);
}

bool HsdpaTestSession::FTM_HSDPA_BLER_Configure_HS_DPCCH(unsigned char iCPICH_PowerOffset,
                                                         unsigned char iCQI_FeedbackCycle,
                                                         unsigned char iCQI_RepetitionFactor,
                                                         unsigned char iDeltaCQI, unsigned char iDeltaACK,
                                                         unsigned char iDeltaNACK,
                                                         unsigned char iACK_NACK_RepetitionFactor) {
    LogLine(m_pSteps->Log(), LOG_FN,
            "    QLIB_FTM_HSDPA_BLER_Configure_HS_DPCCH( iCPICH_PowerOffset = %d, iCQI_FeedbackCycle = %d, "
            "iCQI_RepetitionFactor = %d, iDeltaCQI = %d, iDeltaACK = %d, iDeltaNACK = %d, "
            "iACK_NACK_RepetitionFactor = %d)",
            iCPICH_PowerOffset, iCQI_FeedbackCycle, iCQI_RepetitionFactor, iDeltaCQI, iDeltaACK, iDeltaNACK,
            iACK_NACK_RepetitionFactor);
    return m_pSteps->Accepted("FTM_HSDPA_BLER_CMD_CONFIG_HS_DPSCH", m_requests,
                              &HsdpaTestRequests::FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH, iCPICH_PowerOffset,
                              iCQI_FeedbackCycle, iCQI_RepetitionFactor, iDeltaCQI, iDeltaACK, iDeltaNACK,
                              iACK_NACK_RepetitionFactor);
}

// --- Status -----------------------------------------------------------------------------------------

bool HsdpaTestSession::ClearHsdpaStatus() {
    return m_pSteps->Report("FTM_HSDPA_BER_ClearStatus", FTM_HSDPA_BER_ClearStatus());
}

bool HsdpaTestSession::FTM_HSDPA_BER_ClearStatus() {
    return m_pSteps->Listener().FTM_HSDPA_BER_ClearStatus();
}

bool HsdpaTestSession::FTM_HSDPA_BER_GetStatus(HSDPA_BER_State* pState) {
    return m_pSteps->Listener().FTM_HSDPA_BER_GetStatus(pState);
}

bool HsdpaTestSession::WaitForHSDPA_BER_Update(log_FTM2_HSDPA_BER_log_id_enum eId) {
    const int iFlag = eId - LOG_FTM2_HSDPA_HS_CHANNEL_START_IND;
    if (iFlag < 0 || iFlag >= static_cast<int>(std::size(kIndicationNames))) {
        m_pSteps->Connection().StartTimer();
        return false;
    }
    return m_pSteps->Wait(
        "HSDPA", kIndicationNames[iFlag], WaitClock::Timer,
        [iFlag](const RadioTestBlocks& blocks) { return blocks.hsdpa.aReceived[iFlag] != 0; });
}
