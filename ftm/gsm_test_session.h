// The GSM bit-error-rate test: the phone camps on a test instrument's channel and loops its data back.
#pragma once

#include <memory>

#include "ftm/egprs_test_requests.h"
#include "ftm/ftm_log.h"
#include "ftm/gsm_test_requests.h"
#include "ftm/radio_sessions.h"
#include "ftm/wcdma_test_requests.h"
#include "link/radio_test_blocks.h"
#include "platform/export.h"

class CommandFrame;
class TestSteps;
class LogMasks;
class FtmLog;

/// GsmTestSession: a test station calls FTM_SET_MODE, StartSession, AssignBCCH and AssignTraffic, then
/// GetRxMetrics and IsTrafficValid for each measurement (Handover to change the channel), then ReleaseTCH and
/// StopSession.
///
/// Each step is a request, which the phone accepts or refuses at once, and a confirmation, which it sends
/// later as a log record. An operation is true when all its requests were accepted and all its confirmations
/// arrived, each within QMSL_TimeOut_StatisticsWait. It ends at the first that fails, unless noted otherwise.
/// Without a session all steps but start, release and stop fail before anything is sent.
///
/// Blocks the caller's thread while it waits. Frame, families and session record must outlive it.
class QUILLET_API GsmTestSession {
public:
    GsmTestSession(CommandFrame& frame, LogMasks& masks, FtmLog& ftmLog, GsmTestRequests& requests,
                   EgprsTestRequests& egprsRequests, WcdmaTestRequests& wcdmaRequests,
                   RadioSessions& sessions);
    ~GsmTestSession();

    /// FTM_GSM_BER_StartSession makes the phone send its test records, stops running WCDMA, EGPRS and GSM
    /// tests, and starts the GSM test mode. iWaitTime_ms becomes QMSL_TimeOut_StatisticsWait, unless it is 0.
    ///
    /// The session counts as active afterwards even when this fails, because the phone may have started and
    /// only its confirmation may be lost. Later steps are then sent, and a phone that did not start refuses
    /// them. After a failed start call FTM_GSM_BER_StopSession, which ends the session in any case, or start
    /// again. The second start stops the GSM test mode first, and fails when the phone refuses that.
    bool FTM_GSM_BER_StartSession(DWORD iWaitTime_ms);
    /// FTM_GSM_BER_AssignBCCH searches for the broadcast channel and enters idle mode. It ends an EGPRS
    /// session in any case.
    bool FTM_GSM_BER_AssignBCCH(unsigned short iChannel, unsigned char iBand);
    /// FTM_GSM_BER_AssignTraffic requests a traffic channel and sets up its loopback.
    bool FTM_GSM_BER_AssignTraffic(FTM_GSM_BER_LoopbackType_Enum eLoopback, unsigned char iSlot,
                                   FTM_GSM_BER_Channel_Modes_Enum eMode);
    /// FTM_GSM_BER_Handover moves to another traffic channel. Even if that fails, it sets loopback 0, then
    /// eLoopback.
    bool FTM_GSM_BER_Handover(unsigned short iChannel, unsigned char iBand, unsigned char iTSC,
                              unsigned char iSlot, FTM_GSM_BER_Channel_Modes_Enum eMode,
                              unsigned char iPowerLevel, FTM_GSM_BER_LoopbackType_Enum eLoopback);
    /// FTM_GSM_ConfigLoopbackType is true whenever the phone answered, because phones apply it and report a
    /// refusal.
    bool FTM_GSM_ConfigLoopbackType(FTM_GSM_BER_LoopbackType_Enum eLoopback);
    /// FTM_GSM_BER_ReleaseTCH does not wait for a confirmation.
    bool FTM_GSM_BER_ReleaseTCH();
    /// FTM_GSM_BER_StopSession ends the GSM and the EGPRS session in any case. Phone logging is on
    /// afterwards.
    bool FTM_GSM_BER_StopSession();

    /// FTM_GSM_BER_ClearStatus forgets which records have arrived. Always true.
    bool FTM_GSM_BER_ClearStatus();
    /// FTM_GSM_BER_GetStatus copies the contents of the records. Always true.
    bool FTM_GSM_BER_GetStatus(GSM_BER_State* pState);
    /// FTM_GSM_BER_GetEventStatus: true when a record of that id has arrived; false for other ids.
    bool FTM_GSM_BER_GetEventStatus(log_FTM2_GSM_BER_log_id_enum eId);
    /// FTM_GSM_BER_IsTrafficValid: the last data of the slow associated channel (type 4) passed its CRC.
    bool FTM_GSM_BER_IsTrafficValid();
    /// FTM_GSM_BER_GetRxMetrics waits for the next measurement. On false both values are unchanged.
    bool FTM_GSM_BER_GetRxMetrics(unsigned char& iRxLev, unsigned char& iRxQual);

private:
    friend class EgprsTestSession;

    /// WaitForGSM_BER_Update waits for a record since the last clear. Some records must also report success:
    /// channel found (id 1), assignment succeeded (3), CRC passed (6). It fails with a
    /// QMSL_TimeOut_StatisticsWait of 0.
    bool WaitForGSM_BER_Update(log_FTM2_GSM_BER_log_id_enum eId);
    /// WaitForIdleMode waits for the confirmation of idle mode, GPRS or not, and logs the outcome.
    bool WaitForIdleMode();
    /// ClearGsmStatus clears the status and logs the outcome.
    bool ClearGsmStatus();
    /// SelectBcch requests a broadcast channel and waits until it is found.
    bool SelectBcch(unsigned short iChannel, unsigned char iBand);
    /// ReleaseRunningFlows releases all block flows when an EGPRS session is active. The result is only
    /// logged.
    void ReleaseRunningFlows();

    bool StopRunningTests(bool bOutcome);
    bool WaitForAssignment();

    const std::unique_ptr<TestSteps> m_pSteps;
    LogMasks& m_masks;
    FtmLog& m_ftmLog;
    GsmTestRequests& m_requests;
    EgprsTestRequests& m_egprsRequests;
    WcdmaTestRequests& m_wcdmaRequests;
    RadioSessions& m_sessions;
};
