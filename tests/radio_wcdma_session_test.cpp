// The WCDMA and HSDPA test sessions with a phone that confirms, refuses or does not respond.
#include "radio_session_fixture.h"

namespace {

const Operation GsmStart = OPERATION(FTM_GSM_BER_StartSession, 0);
const Operation Start = OPERATION(FTM_WCDMA_BER_StartSession, 0);
const Operation Acquire = OPERATION(FTM_WCDMA_BER_AcquirePilot, 0x2A3B);
const Operation SetUpChannel = OPERATION(FTM_WCDMA_BER_SetupDefaultRMC_DCH);
const Operation Handover = OPERATION(FTM_WCDMA_BER_Handover, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10);
const Operation HandoverV2B =
    OPERATION(FTM_WCDMA_BER_Handover_V2B, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
const Operation Stop = OPERATION(FTM_WCDMA_BER_StopSession);
const Operation HsStart = OPERATION(FTM_HSDPA_BER_StartSession);
const Operation HsStop = OPERATION(FTM_HSDPA_BER_StopSession);
const Operation Reconfigure = OPERATION(FTM_HSDPA_BLER_Reconfigure_HS, 9);

using WcdmaSession = RadioSessionTest;

TEST_F(WcdmaSession, StartAndRefusal) {
    const TestOutcome confirmed = Says({"00"});
    const TestOutcome stopped = Says({"02"});
    const Plans unconfirmed = {{0, {Says(), Says()}}, {1, {Says(), Says()}}};
    const char* sIdle = "LOG_FTM2_START_IDLE_MODE_CNF ) = PASS";
    const char* sNotStarted = " -- Error, session is not started";
    const Sequences sequences = {
        {{}, Start, "true W 16/0, 16/2", sIdle},
        {Refuse(0), Start, "false - 16/0", "WCDMA_START_MODE_REQ = PASS, status = 5"},

        // Neither start nor stop is confirmed; the second start is confirmed; the stop is confirmed instead
        // of the start; the stop is refused.
        {unconfirmed, Start, "false - 16/0, 16/1, 16/0, 16/1", "STOP_MODE_CNF ) = FAIL"},
        {{{0, {Says(), confirmed}}, {1, {Says()}}}, Start, "true W 16/0, 16/1, 16/0, 16/2", sIdle},
        {{{0, {Says()}}, {2, {stopped}}}, Start, "true W 16/0, 16/1, 16/2", sIdle},
        {{{0, {Says()}}, {1, {Refused()}}}, Start, "false - 16/0, 16/1", "REQ = PASS, status = 5"},
        {Silence(2), Start, "false - 16/0, 16/2", "START_IDLE_MODE_CNF ) = FAIL"},

        {{}, Acquire, "false -", sNotStarted},
        {{}, SetUpChannel, "false -", sNotStarted},
        {{}, Handover, "false -", sNotStarted},
        {{}, HandoverV2B, "false -", sNotStarted},
        {{}, Stop, "false - 16/1", "DIAG_SetPhoneLoggingState = FAIL"},
        {{}, HsStart, "false -", "Error, WCDMA BER session is not active"},
        {{}, Reconfigure, "false -", sNotStarted},
    };
    Check({}, sequences);
}

TEST_F(WcdmaSession, StartingOneTechnologyStopsTheOther) {
    EXPECT_TRUE(GsmStart(m_diag));
    m_phone.phone.ClearRequests();
    EXPECT_TRUE(Start(m_diag));
    EXPECT_EQ(TestRequests(), " 13/6, 16/0, 16/2");
    m_phone.phone.ClearRequests();
    EXPECT_FALSE(GsmStart(m_diag)); // the phone no longer has a GSM session and refuses to stop it
    EXPECT_EQ(TestRequests(), " 16/1, 13/6");
    EXPECT_EQ(Active(), "GW");
    m_diag.OpenPort();
    EXPECT_EQ(Active(), "");
}

TEST_F(WcdmaSession, PilotAndStop) {
    const std::string acquire = "16/2, 16/3 00 01 3B 2A 00 00 00 00 00 00";
    const Sequences sequences = {
        {{}, Acquire, "true W " + acquire, "LOG_FTM2_WCDMA_ACQUIRE_CNF ) = PASS"},
        {Say(3, {"03 00 00 00 00"}), Acquire, "false W " + acquire, "ACQUIRE_CNF ) = FAIL"}, // no pilot
        {Silence(2), Acquire, "false W 16/2", "START_IDLE_MODE_CNF ) = FAIL"},
        {{}, Start, "true W 16/1, 16/0, 16/2", "LOG_FTM2_START_IDLE_MODE_CNF ) = PASS"},
        {{}, Stop, "true - 16/1", "DIAG_SetPhoneLoggingState = PASS"},
        {Silence(1), Stop, "false - 16/1", "DIAG_SetPhoneLoggingState = FAIL"},
    };
    Check({Start}, sequences);
}

TEST_F(WcdmaSession, SetUpAndHandover) {
    const std::string setUp = "true W 16/4 00 18 00 00 00 00 00 00 00 00 03 00";
    const std::string rmc = " W 16/5 01 02 03 00 00 00 04 05 06 00 07 00 08 09";
    const std::string moved = rmc + " C4 FF 00 04 00 01 03 0A 00";
    const char* sStands = "LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND ) = PASS";
    const Sequences sequences = {
        {{}, SetUpChannel, setUp, sStands},
        {Say(4, {"05 01", "04 01"}), SetUpChannel, setUp, sStands}, // out of order
        {{}, Handover, "true" + moved, sStands},
        {Say(5, {"04 00", "05 01"}), Handover, "false" + moved, "CPHY_SETUP_CNF ) = FAIL"},
        {Refuse(5), Handover, "false" + moved, "WCDMA_RMC_DCH_SETUP_REQ_V2 = PASS, status = 5"},
        {Say(5, {"04 01", "05 00"}), HandoverV2B, "false" + rmc + " 0A 00 0B 0C 0D 0E 0F 10 00",
         "_IND ) = FAIL"},
    };
    Check({Start, Acquire, SetUpChannel}, sequences);
}

TEST_F(WcdmaSession, StartOfHsdpa) {
    const TestOutcome confirmed = Says({"40 00"}); // with any status
    const TestOutcome stopped = Says({"41 01"});
    const Plans second = {{256, {Says(), confirmed}}, {257, {stopped}}};
    const Plans tooLate = {{256, {Says(), Says()}}, {257, {Says({"40 01", "41 01"}), Says()}}};
    const char* sStarted = "LOG_FTM2_HSDPA_START_MODE_CNF) = PASS";
    const Sequences sequences = {
        {{}, HsStart, "true WH 16/256", sStarted},
        {Refuse(256), HsStart, "false W 16/256", "HSDPA_BLER_CMD_START_HS = PASS, status = 5"},

        // Confirmed at the second attempt; confirmed too late, and stop not confirmed.
        {second, HsStart, "true WH 16/256, 16/257, 16/256", sStarted},
        {tooLate, HsStart, "false W 16/256, 16/257, 16/256, 16/257", "STOP_MODE_CNF ) = FAIL"},
    };
    Check({Start, Acquire, SetUpChannel}, sequences);
}

TEST_F(WcdmaSession, ReconfigurationAndStopOfHsdpa) {
    const Sequences sequences = {
        {{}, Reconfigure, "true WH 16/258 09", "LOG_FTM2_HSDPA_FTM_CMD_RECONFIG_HS ) = PASS"},
        {Silence(258), Reconfigure, "false WH 16/258 09", "RECONFIG_HS ) = FAIL"},
        {{}, HsStart, "true WH 16/257, 16/256", "LOG_FTM2_HSDPA_START_MODE_CNF) = PASS"},
        {{}, HsStop, "true W 16/257", "LOG_FTM2_HSDPA_STOP_MODE_CNF ) = PASS"},
        {Silence(257), HsStop, "false W 16/257", "STOP_MODE_CNF ) = FAIL"},
        {Refuse(257), HsStop, "false W 16/257", "HSDPA_STOP_MODE_REQ = PASS, status = 5"},
    };
    Check({Start, Acquire, SetUpChannel, HsStart}, sequences);
}

TEST_F(WcdmaSession, WaitAcceptsHsdpaIndicationsOnly) {
    Report(6, "40 01");
    struct Reached : HsdpaTestSession {
        using HsdpaTestSession::WaitForHSDPA_BER_Update;
    };
    m_log.Clear();
    for (const int iId : {63, 67})
        EXPECT_FALSE((m_diag.*&Reached::WaitForHSDPA_BER_Update)(log_FTM2_HSDPA_BER_log_id_enum{iId})) << iId;
    EXPECT_TRUE(m_log.Lines().empty());
}

TEST_F(WcdmaSession, EveryStepIsLogged) {
    Begin({Start});
    EXPECT_EQ(LogOf({Acquire, SetUpChannel, HsStart, Stop}), R"(0x0002     QLIB_FTM_WCDMA_BER_AcquirePilot
0x0004     FTM_WCDMA_BER_ClearStatus = PASS
0x0002 QLIB_FTM_WCDMA_START_IDLE_MODE_REQ()
0x0004     FTM_WCDMA_START_IDLE_MODE_REQ = PASS, status = 0
0x0004  Starting wait for WCDMA BER message LOG_FTM2_WCDMA_START_IDLE_MODE_REQ...
0x0004  Wait for WCDMA BER message LOG_FTM2_WCDMA_START_IDLE_MODE_REQ took N ms, status = 1
0x0004     WaitForWCDMA_BER_Update( LOG_FTM2_START_IDLE_MODE_CNF ) = PASS
0x0002 QLIB_FTM_WCDMA_ACQUIRE_REQ( 0, 1, 10811, 0, 0 )
0x0004     FTM_WCDMA_ACQUIRE_REQ = PASS, status = 0
0x0004  Starting wait for WCDMA BER message LOG_FTM2_WCDMA_ACQUIRE_CNF ...
0x0004  Wait for WCDMA BER message LOG_FTM2_WCDMA_ACQUIRE_CNF  took N ms, status = 1
0x0004     WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_ACQUIRE_CNF ) = PASS
0x0002 QLIB_FTM_WCDMA_RMC_DCH_SETUP_REQ( iRMC_Type = 0, iUL_MaxTxPwr = 24, iUL_DPCH_ScrCode = 0, iUL_PCA = 0, iUL_TPC_StepSize = 0, iDL_PriCPICH_Scr_Code = 0, iDL_ChanCode = 3 )
0x0004     FTM_WCDMA_RMC_DCH_SETUP_REQ = PASS, status = 0
0x0004  Starting wait for WCDMA BER message LOG_FTM2_WCDMA_CPHY_SETUP_CNF...
0x0004  Wait for WCDMA BER message LOG_FTM2_WCDMA_CPHY_SETUP_CNF took N ms, status = 1
0x0004     WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_CPHY_SETUP_CNF ) = PASS
0x0004  Starting wait for WCDMA BER message LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND...
0x0004  Wait for WCDMA BER message LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND took N ms, status = 1
0x0004     WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND ) = PASS
0x0002     QLIB_FTM_HSDPA_BER_StartSession
0x0004     FTM_HSDPA_BER_ClearStatus = PASS
0x0002 QLIB_FTM_HSDPA_BLER_CMD_START_HS()
0x0004     FTM_HSDPA_BLER_CMD_START_HS = PASS, status = 0
0x0004  Starting wait for HSDPA BER message LOG_FTM2_HSDPA_HS_CHANNEL_START_IND...
0x0004  Wait for HSDPA BER message LOG_FTM2_HSDPA_HS_CHANNEL_START_IND took N ms, status = 1
0x0004     WaitForHSDPA_BER_Update( LOG_FTM2_HSDPA_START_MODE_CNF) = PASS
0x0002 QLIB_FTM_WCDMA_STOP_MODE_REQ()
0x0002     FTM_WCDMA_STOP_MODE_REQ = PASS, status = 0
0x0004  Starting wait for WCDMA BER message LOG_FTM2_WCDMA_STOP_MODE_CNF...
0x0004  Wait for WCDMA BER message LOG_FTM2_WCDMA_STOP_MODE_CNF took N ms, status = 1
0x0004     WaitForWCDMA_BER_Update( LOG_FTM2_WCDMA_STOP_MODE_CNF ) = PASS
0x0002 QLIB_DIAG_SetPhoneLoggingState(bEnableLogging=0)
0x0002 QLIB_DIAG_SetPhoneLoggingState(bEnableLogging=1)
0x0004 DIAG_SetPhoneLoggingState = PASS
)");
}

} // namespace
