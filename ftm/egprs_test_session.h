// The EGPRS bit-error-rate test: packet data on top of the GSM test.
#pragma once

#include <memory>

#include "ftm/gsm_test_session.h"
#include "platform/export.h"

/// EgprsTestSession: within a GSM session, a test calls AssignBCCH (which also starts GPRS idle mode),
/// Configure_DL_TBF, Configure_UL_TBF, Establish_SRB_LOOPBACK, GetRxMetrics for each measurement,
/// Release_All_TBF. Steps and results work as in GsmTestSession. Configuring, loopback and release need an
/// active EGPRS session.
///
/// Blocks the caller's thread while it waits. Frame, families and session record must outlive it.
class QUILLET_API EgprsTestSession {
public:
    EgprsTestSession(CommandFrame& frame, LogMasks& masks, EgprsTestRequests& requests, GsmTestSession& gsm,
                     RadioSessions& sessions);
    ~EgprsTestSession();

    /// FTM_EGPRS_BER_AssignBCCH searches for the broadcast channel, then starts GPRS idle mode whether or not
    /// it was found. The result is that of idle mode alone.
    bool FTM_EGPRS_BER_AssignBCCH(unsigned short iChannel, unsigned char iBand);
    /// FTM_EGPRS_BER_StartIdleMode needs a GSM session. The EGPRS session counts as active afterwards even
    /// when this fails.
    bool FTM_EGPRS_BER_StartIdleMode();
    /// FTM_EGPRS_BER_Configure_... set up a block flow, and do not wait for a confirmation. iThird is passed
    /// on.
    bool FTM_EGPRS_BER_Configure_DL_TBF(unsigned char iDL_TSC, unsigned char iDL_TFI, unsigned short iChannel,
                                        unsigned char iBand, unsigned char bFirstSlotActive,
                                        unsigned char iFirstSlotNum, unsigned char bSecondSlotActive,
                                        unsigned char iSecondSlotNum);
    bool FTM_EGPRS_BER_Configure_UL_TBF(unsigned char iUL_TSC, unsigned char iUSF, unsigned char iThird,
                                        unsigned char bFirstSlotActive, unsigned char iFirstSlotNum,
                                        unsigned char bSecondSlotActive, unsigned char iSecondSlotNum);
    /// FTM_EGPRS_BER_Establish_SRB_LOOPBACK waits until the downlink flow is established. The same indication
    /// counts for the uplink flow.
    bool FTM_EGPRS_BER_Establish_SRB_LOOPBACK();
    /// FTM_EGPRS_BER_Release_... wait for any indication of a block flow. The session stays active.
    bool FTM_EGPRS_BER_Release_All_TBF();
    bool FTM_EGPRS_BER_Release_UL_TBF();

    /// FTM_EGPRS_BER_GetRxMetrics waits for the next measurement, with or without a session. On false the
    /// value is unchanged.
    bool FTM_EGPRS_BER_GetRxMetrics(unsigned char& iRxLevAverage);
    /// FTM_EGPRS_BER_ClearStatus, FTM_EGPRS_BER_GetStatus: as for GSM, with the EGPRS block. Always true.
    bool FTM_EGPRS_BER_ClearStatus();
    bool FTM_EGPRS_BER_GetStatus(EGPRS_BER_State* pState);

private:
    /// WaitForEGPRS_BER_Update waits for a record since the last clear. For a block-flow record with eFlow
    /// downlink it waits until the downlink flow's last event is eEvent; for the uplink any block-flow record
    /// is enough. False at once for other ids, and with a QMSL_TimeOut_StatisticsWait of 0.
    bool WaitForEGPRS_BER_Update(log_FTM2_EGPRS_BER_log_id_enum eId, ftm_log_egprs_tbf_enum eFlow,
                                 ftm_log_egprs_tbf_event_type eEvent);

    struct ReleaseTexts {
        const char* sEntry;
        const char* sNotStarted;
        const char* sRequest;
    };

    bool ClearEgprsStatus();
    /// BeginEgprs logs the entry line and clears the status. False, after logging sNotStarted, without a
    /// session.
    bool BeginEgprs(const char* sEntry, const char* sNotStarted);
    bool IsEgprsActive() const { return m_sessions.IsRadioSessionActive(RadioSession::Egprs); }
    bool WaitForFlow(ftm_log_egprs_tbf_enum eFlow, ftm_log_egprs_tbf_event_type eEvent, const char* sEvent);
    bool Release(const ReleaseTexts& texts, bool (EgprsTestRequests::*pMethod)(unsigned char&));

    const std::unique_ptr<TestSteps> m_pSteps;
    EgprsTestRequests& m_requests;
    GsmTestSession& m_gsm;
    RadioSessions& m_sessions;
};
