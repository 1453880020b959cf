// The EGPRS bit-error-rate test: packet data on top of the GSM test.
#pragma once

#include <memory>

#include "ftm/gsm_test_session.h"
#include "platform/export.h"

/// EgprsTestSession: within a GSM session, AssignBCCH (which also starts GPRS idle mode), Configure_DL_TBF,
/// Configure_UL_TBF, Establish_SRB_LOOPBACK, GetRxMetrics as often as it is measured, Release_All_TBF. What
/// operations and their results mean is as in GsmTestSession; configuring, loopback and release need an
/// active EGPRS session.
///
/// Blocks the caller's thread while it waits. Frame, families and session record must outlive it.
class QUILLET_API EgprsTestSession {
public:
    EgprsTestSession(CommandFrame& frame, LogMasks& masks, EgprsTestRequests& requests, GsmTestSession& gsm,
                     RadioSessions& sessions);
    ~EgprsTestSession();

    /// FTM_EGPRS_BER_AssignBCCH looks for the broadcast channel, then starts GPRS idle mode whether or not it
    /// was found; the result is that of idle mode alone.
    bool FTM_EGPRS_BER_AssignBCCH(unsigned short iChannel, unsigned char iBand);
    /// FTM_EGPRS_BER_StartIdleMode needs a GSM session. The EGPRS session counts as active afterwards even
    /// when this fails.
    bool FTM_EGPRS_BER_StartIdleMode();
    /// FTM_EGPRS_BER_Configure_... set up a block flow; no confirmation is waited for. iThird is passed on.
    bool FTM_EGPRS_BER_Configure_DL_TBF(unsigned char iDL_TSC, unsigned char iDL_TFI, unsigned short iChannel,
                                        unsigned char iBand, unsigned char bFirstSlotActive,
                                        unsigned char iFirstSlotNum, unsigned char bSecondSlotActive,
                                        unsigned char iSecondSlotNum);
    bool FTM_EGPRS_BER_Configure_UL_TBF(unsigned char iUL_TSC, unsigned char iUSF, unsigned char iThird,
                                        unsigned char bFirstSlotActive, unsigned char iFirstSlotNum,
                                        unsigned char bSecondSlotActive, unsigned char iSecondSlotNum);
    /// FTM_EGPRS_BER_Establish_SRB_LOOPBACK waits for the downlink flow to be established; the indication of
    /// that is taken for the uplink flow too.
    bool FTM_EGPRS_BER_Establish_SRB_LOOPBACK();
    /// FTM_EGPRS_BER_Release_... wait for any indication of a block flow. The session stays active.
    bool FTM_EGPRS_BER_Release_All_TBF();
    bool FTM_EGPRS_BER_Release_UL_TBF();

    /// FTM_EGPRS_BER_GetRxMetrics waits for the next measurement, session or not. On false the value stays as
    /// it was.
    bool FTM_EGPRS_BER_GetRxMetrics(unsigned char& iRxLevAverage);
    /// FTM_EGPRS_BER_ClearStatus, FTM_EGPRS_BER_GetStatus: as those of GSM, for the EGPRS block. Always true.
    bool FTM_EGPRS_BER_ClearStatus();
    bool FTM_EGPRS_BER_GetStatus(EGPRS_BER_State* pState);

private:
    /// WaitForEGPRS_BER_Update waits for a record since the last clear; for a block-flow record with eFlow
    /// downlink, until the downlink flow's last event is eEvent (for the uplink any such record will do).
    /// False at once for other ids, and with a QMSL_TimeOut_StatisticsWait of 0.
    bool WaitForEGPRS_BER_Update(log_FTM2_EGPRS_BER_log_id_enum eId, ftm_log_egprs_tbf_enum eFlow,
                                 ftm_log_egprs_tbf_event_type eEvent);

    struct ReleaseTexts {
        const char* sEntry;
        const char* sNotStarted;
        const char* sRequest;
    };

    bool ClearEgprsStatus();
    /// BeginEgprs logs the entry line, clears the status, and is false, with its line, without a session.
    bool BeginEgprs(const char* sEntry, const char* sNotStarted);
    bool IsEgprsActive() const { return m_sessions.IsRadioSessionActive(RadioSession::Egprs); }
    bool WaitForFlow(ftm_log_egprs_tbf_enum eFlow, ftm_log_egprs_tbf_event_type eEvent, const char* sEvent);
    bool Release(const ReleaseTexts& texts, bool (EgprsTestRequests::*pMethod)(unsigned char&));

    const std::unique_ptr<TestSteps> m_pSteps;
    EgprsTestRequests& m_requests;
    GsmTestSession& m_gsm;
    RadioSessions& m_sessions;
};
