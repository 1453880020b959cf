// The HSDPA block-error-rate test: high-speed downlink channels on top of the WCDMA test.
#pragma once

#include <memory>

#include "ftm/hsdpa_test_requests.h"
#include "ftm/radio_sessions.h"
#include "link/radio_test_blocks.h"
#include "platform/export.h"

class CommandFrame;
class TestSteps;
struct TestResponse;
class LogMasks;

/// HsdpaTestSession: within a WCDMA session with its channel set up, a test calls the Configure operations,
/// StartSession, Reconfigure_HS as often as needed, StopSession. Requests, confirmations and results work as
/// in GsmTestSession. A confirmation counts whatever its status, which GetStatus reports. Each wait adds a
/// timer to the connection's list.
///
/// Blocks the caller's thread while it waits. Frame, families and session record must outlive it.
class QUILLET_API HsdpaTestSession {
public:
    HsdpaTestSession(CommandFrame& frame, LogMasks& masks, HsdpaTestRequests& requests,
                     RadioSessions& sessions);
    ~HsdpaTestSession();

    /// FTM_HSDPA_BER_StartSession needs a WCDMA session. It stops running channels, then starts them. A start
    /// that the phone accepts but does not confirm is stopped; when the phone confirms the stop, the start is
    /// tried a second time. The session is active only when a start was confirmed.
    bool FTM_HSDPA_BER_StartSession();
    /// FTM_HSDPA_BER_StopSession ends the session in any case. It needs none.
    bool FTM_HSDPA_BER_StopSession();
    /// FTM_HSDPA_BLER_Reconfigure_HS needs an HSDPA session.
    bool FTM_HSDPA_BLER_Reconfigure_HS(unsigned char iReconfigBitmask);

    /// FTM_HSDPA_BLER_Configure_... need no session and do not wait for a confirmation. Arrays are as in
    /// HsdpaTestRequests.
    bool FTM_HSDPA_BLER_Configure_PDSCH(unsigned short iValue);
    bool FTM_HSDPA_BLER_Configure_HS_SCCH(unsigned char iNumCodes, const unsigned char* aiCodes);
    bool FTM_HSDPA_BLER_Configure_HS_DSCH(unsigned short iH_RNTI, unsigned char iNum_HARQ_Processes,
                                          unsigned char bMemPartitionValid,
                                          const unsigned char* aiMemPartitionInfo);
    /// FTM_HSDPA_BLER_Configure_HS_DSCH_HSET takes processes and partitions from a reference set: 1 to 8, or
    /// 255. Any other number is used as the number of processes, with all partitions 0.
    bool FTM_HSDPA_BLER_Configure_HS_DSCH_HSET(unsigned short iH_RNTI, unsigned char iHSet);
    /// FTM_HSDPA_BLER_Configure_HS_DPCCH configures the uplink control channel.
    bool FTM_HSDPA_BLER_Configure_HS_DPCCH(unsigned char iCPICH_PowerOffset, unsigned char iCQI_FeedbackCycle,
                                           unsigned char iCQI_RepetitionFactor, unsigned char iDeltaCQI,
                                           unsigned char iDeltaACK, unsigned char iDeltaNACK,
                                           unsigned char iACK_NACK_RepetitionFactor);

    /// FTM_HSDPA_BER_ClearStatus, FTM_HSDPA_BER_GetStatus: as for WCDMA, with the HSDPA block. Always true.
    bool FTM_HSDPA_BER_ClearStatus();
    bool FTM_HSDPA_BER_GetStatus(HSDPA_BER_State* pState);

protected:
    /// WaitForHSDPA_BER_Update waits for an indication since the last clear. False at once for other ids.
    bool WaitForHSDPA_BER_Update(log_FTM2_HSDPA_BER_log_id_enum eId);

private:
    enum class HsdpaStart { Done, Again, Failed };

    HsdpaStart TryHsdpaStart();
    TestResponse StopChannels();
    bool IsHsdpaConfirmed(const char* sWait, log_FTM2_HSDPA_BER_log_id_enum eId);
    bool ClearHsdpaStatus();

    const std::unique_ptr<TestSteps> m_pSteps;
    HsdpaTestRequests& m_requests;
    RadioSessions& m_sessions;
};
