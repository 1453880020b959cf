// The WCDMA bit-error-rate test: the phone acquires a test instrument's pilot and sets up a reference
// channel.
#pragma once

#include <memory>

#include "ftm/ftm_log.h"
#include "ftm/gsm_test_requests.h"
#include "ftm/radio_sessions.h"
#include "ftm/wcdma_test_requests.h"
#include "link/radio_test_blocks.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class TestSteps;
class LogMasks;
class FtmLog;

/// WcdmaTestSession: a test calls StartSession, AcquirePilot, SetupRMC_DCH or SetupDefaultRMC_DCH, Handover
/// to change the channel, StopSession. Requests, confirmations and results work as in GsmTestSession. Each
/// wait adds a timer to the connection's list. Values with single-letter names are passed on unchanged.
///
/// Blocks the caller's thread while it waits. Frame, families and session record must outlive it.
class QUILLET_API WcdmaTestSession {
public:
    WcdmaTestSession(CommandFrame& frame, LogMasks& masks, FtmLog& ftmLog, WcdmaTestRequests& requests,
                     GsmTestRequests& gsmRequests, RadioSessions& sessions);
    ~WcdmaTestSession();

    /// FTM_WCDMA_BER_StartSession makes the phone send its test records, stops running GSM and WCDMA tests,
    /// and starts the WCDMA test mode and its idle mode. iWaitTime_ms becomes QMSL_TimeOut_StatisticsWait,
    /// unless it is 0. A start that is not confirmed is stopped. When the phone confirms the stop, it is
    /// present and idle mode follows; otherwise the start is tried a second time. The session is active only
    /// when all of this succeeded.
    bool FTM_WCDMA_BER_StartSession(DWORD iWaitTime_ms);
    /// FTM_WCDMA_BER_AcquirePilot enters idle mode and searches for the channel's pilot.
    bool FTM_WCDMA_BER_AcquirePilot(unsigned short iChannel);
    /// FTM_WCDMA_BER_SetupRMC_DCH sets up the channel, and waits until the physical channel is established.
    bool FTM_WCDMA_BER_SetupRMC_DCH(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr,
                                    DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
                                    unsigned char iUL_TPC_StepSize, unsigned short iDL_PriCPICH_Scr_Code,
                                    unsigned short iDL_ChanCode);
    /// FTM_WCDMA_BER_SetupDefaultRMC_DCH: type 0, 24 dBm, codes 0, channel code 3.
    bool FTM_WCDMA_BER_SetupDefaultRMC_DCH();
    /// FTM_WCDMA_BER_Handover, FTM_WCDMA_BER_Handover_V2B set up another channel with the V2 or V2B request.
    bool FTM_WCDMA_BER_Handover(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr, DWORD iUL_DPCH_ScrCode,
                                unsigned char iUL_PCA, unsigned char iUL_TPC_StepSize,
                                unsigned short iDL_PriCPICH_Scr_Code, unsigned short iDL_ChanCode,
                                unsigned char iF, unsigned char iG, unsigned short iN);
    bool FTM_WCDMA_BER_Handover_V2B(unsigned char iRMC_Type, unsigned char iUL_MaxTxPwr,
                                    DWORD iUL_DPCH_ScrCode, unsigned char iUL_PCA,
                                    unsigned char iUL_TPC_StepSize, unsigned short iDL_PriCPICH_Scr_Code,
                                    unsigned short iDL_ChanCode, unsigned char iF, unsigned char iG,
                                    unsigned short iH, unsigned char iI, unsigned char iJ, unsigned char iK,
                                    unsigned char iL, unsigned char iM, unsigned short iN);
    /// FTM_WCDMA_BER_StopSession ends the session in any case. Phone logging is on afterwards.
    bool FTM_WCDMA_BER_StopSession();

    /// FTM_WCDMA_BER_ClearStatus forgets which records have arrived. Always true.
    bool FTM_WCDMA_BER_ClearStatus();
    /// FTM_WCDMA_BER_GetStatus copies the contents of the records. Always true.
    bool FTM_WCDMA_BER_GetStatus(WCDMA_BER_State* pState);
    /// FTM_WCDMA_BER_GetEventStatus: true when a record of that id has arrived; false for other ids.
    bool FTM_WCDMA_BER_GetEventStatus(log_FTM2_WCDMA_BER_log_id_enum eId);

private:
    /// WaitForWCDMA_BER_Update waits for a record since the last clear, which must report status 1 if it has
    /// one (ids 3 to 5).
    bool WaitForWCDMA_BER_Update(log_FTM2_WCDMA_BER_log_id_enum eId);

    enum class WcdmaStart { Done, Again, Failed };

    bool IsWcdmaActive() const { return m_sessions.IsRadioSessionActive(RadioSession::Wcdma); }
    bool StopOtherTests();
    WcdmaStart TryWcdmaStart();
    bool StartIdleMode();
    bool ClearWcdmaStatus();
    bool IsWcdmaConfirmed(const char* sWait, log_FTM2_WCDMA_BER_log_id_enum eId);
    bool WaitForChannel();

    const std::unique_ptr<TestSteps> m_pSteps;
    FtmLog& m_ftmLog;
    WcdmaTestRequests& m_requests;
    GsmTestRequests& m_gsmRequests;
    RadioSessions& m_sessions;
};
