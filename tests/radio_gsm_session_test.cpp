// The GSM and EGPRS test sessions with a phone that confirms, refuses or does not respond.
#include "radio_session_fixture.h"

namespace {

constexpr FTM_GSM_BER_LoopbackType_Enum kLoopback{9};
constexpr FTM_GSM_BER_Channel_Modes_Enum kChannelMode{6};

const Operation Start = OPERATION(FTM_GSM_BER_StartSession, 0);
const Operation Bcch = OPERATION(FTM_GSM_BER_AssignBCCH, 0x102, 3);
const Operation Traffic = OPERATION(FTM_GSM_BER_AssignTraffic, kLoopback, 5, kChannelMode);
const Operation Handover = OPERATION(FTM_GSM_BER_Handover, 0x102, 3, 4, 5, kChannelMode, 7, kLoopback);
const Operation Loopback = OPERATION(FTM_GSM_ConfigLoopbackType, kLoopback);
const Operation Release = OPERATION(FTM_GSM_BER_ReleaseTCH);
const Operation Stop = OPERATION(FTM_GSM_BER_StopSession);
const Operation EgprsBcch = OPERATION(FTM_EGPRS_BER_AssignBCCH, 0x102, 3);
const Operation EgprsIdle = OPERATION(FTM_EGPRS_BER_StartIdleMode);
const Operation Downlink = OPERATION(FTM_EGPRS_BER_Configure_DL_TBF, 1, 2, 0x304, 5, 6, 7, 8, 9);
const Operation Uplink = OPERATION(FTM_EGPRS_BER_Configure_UL_TBF, 1, 2, 3, 4, 5, 6, 7);
const Operation SrbLoopback = OPERATION(FTM_EGPRS_BER_Establish_SRB_LOOPBACK);
const Operation ReleaseAll = OPERATION(FTM_EGPRS_BER_Release_All_TBF);
const Operation ReleaseUplink = OPERATION(FTM_EGPRS_BER_Release_UL_TBF);

using GsmSession = RadioSessionTest;

TEST_F(GsmSession, StartAndRefusal) {
    const char* sNotStarted = " -- Error, session is not started";
    const Sequences sequences = {
        {{}, Start, "true G 13/0", "LOG_FTM2_START_GSM_MODE_CNF) = PASS"},
        {Refuse(0), Start, "false G 13/0", "GSM_START_MODE_REQ = PASS, status = 5"},
        {Silence(0), Start, "false G 13/0", "START_GSM_MODE_CNF) = FAIL"},
        {{}, Bcch, "false -", sNotStarted},
        {{}, Traffic, "false -", sNotStarted},
        {{}, Handover, "false -", sNotStarted},
        {{}, Loopback, "false -", sNotStarted},
        {{}, Release, "false - 13/5", "GSM_CHANNEL_RELEASE_REQ = PASS, status = 1"},
        {{}, Stop, "false - 13/6", "DIAG_SetPhoneLoggingState = FAIL"},
        {{}, EgprsBcch, "false -", sNotStarted},
        {{}, EgprsIdle, "false E", "Error, a GSM BER session must be started first"},
        {{}, SrbLoopback, "false -", sNotStarted},
        {{}, ReleaseAll, "false -", sNotStarted},
    };
    Check({}, sequences);
}

TEST_F(GsmSession, StartEnablesTheRecordsAndSetsTheTimeOut) {
    m_phone.phone.ClearRequests();
    EXPECT_TRUE(m_diag.FTM_GSM_BER_StartSession(2500));
    EXPECT_EQ(m_diag.GetTimeOut(QMSL_TimeOut_StatisticsWait), 2500u);
    const Lines requests = m_phone.Requests();
    ASSERT_EQ(requests.size(), 6u);
    EXPECT_EQ(requests[0], "4B 0B 09 00 00 00 00 00 00 00 05 10 14 00 00 00 01 00 00 00");
    EXPECT_EQ(requests[4], "73 00 00 00 03 00 00 00 01 00 00 00 E8 02 00 00 " + Times(47, "00") + " 10 " +
                               Times(45, "00"));
}

TEST_F(GsmSession, BcchAndIdleMode) {
    const std::string asked = "13/1 02 01 03";
    const std::string both = asked + ", 13/2";
    const Sequences sequences = {
        {{}, Bcch, "true G " + both, "START_IDLE_MODE_CNF ) = PASS"},
        {Refuse(1), Bcch, "false G " + asked, "FTM_GSM_SELECT_SPECIFIC_BCCH_REQ failed to acquire BCCH"},
        {Say(1, {"01 00 07"}), Bcch, "false G " + asked, "SELECT_SPECIFIC_BCCH_CNF ) = FAIL"}, // not found
        {Say(1, {"01 00 07", "01 01 07"}), Bcch, "true G " + both, "START_IDLE_MODE_CNF ) = PASS"},
        {Silence(2), Bcch, "false G " + both, "START_IDLE_MODE_CNF ) = FAIL"},
        {{}, Traffic, "false G 13/4 05 06", "GSM_CHANNEL_ASSIGN_REQ = PASS, status = 1"},
        {{}, Start, "true G 13/6, 13/0", "START_GSM_MODE_CNF) = PASS"},
        {Refuse(6), Start, "false G 13/6", "GSM_STOP_MODE_REQ = PASS, status = 5"},
        {{}, Stop, "true - 13/6", "DIAG_SetPhoneLoggingState = PASS"},
        {Silence(6), Stop, "false - 13/6", "DIAG_SetPhoneLoggingState = FAIL"},
        {{}, EgprsBcch, "true GE 13/1 02 01 03, 13/256", "START_IDLE_MODE_CNF ) = PASS"},
        {Silence(256), EgprsIdle, "false GE 13/256", "START_IDLE_MODE_CNF ) = FAIL"},
    };
    Check({Start}, sequences);
}

TEST_F(GsmSession, Channels) {
    const std::string three = "13/7 02 01 03 04 05 06 07, 13/3 00, 13/3 09";
    const char* sLooped = "FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ status check is disabled";
    const Sequences sequences = {
        {{}, Traffic, "true G 13/4 05 06, 13/3 09", sLooped},
        {Say(4, {"03 02"}), Traffic, "false G 13/4 05 06", "CHANNEL_ASSIGN_CNF ) = FAIL"}, // no channel
        {{}, Handover, "true G " + three, sLooped},
        {Say(7, {"03 01"}), Handover, "false G " + three, sLooped}, // no channel
        {{}, Release, "true G 13/5", "GSM_CHANNEL_RELEASE_REQ = PASS, status = 0"},
    };
    Check({Start, Bcch, Traffic}, sequences);
}

TEST_F(GsmSession, HandoverFailsIfItsSecondLoopbackFails) {
    Begin({Start, Bcch, Traffic});
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 1000);
    m_phone.Misbehave(Action::Ignore, "4B 0B 0D 00 03 00", 1, 0, 1);
    m_log.Clear();
    EXPECT_FALSE(Handover(m_diag));
    EXPECT_TRUE(m_log.Has(LOG_RET, "    FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ = PASS, status = 0"));
    EXPECT_TRUE(m_log.Has(LOG_RET, "    FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ = FAIL, status = 1"));
}

TEST_F(GsmSession, Metrics) {
    Begin({Start, Bcch, Traffic});
    unsigned char iLevel = 0xEE;
    unsigned char iQuality = 0xEE;
    const auto measure = [&] { return m_diag.FTM_GSM_BER_GetRxMetrics(iLevel, iQuality); };
    m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, kShort_ms);
    Report(5, "07 10 11"); // sent before the measurement
    EXPECT_FALSE(measure());
    EXPECT_EQ(iLevel, 0xEE);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, kLong_ms);
    EXPECT_TRUE(WhileReporting("07 20 21", measure));
    EXPECT_EQ(iLevel, 0x20);
    EXPECT_EQ(iQuality, 0x21);
    EXPECT_TRUE(WhileReporting("42 33", [&] { return m_diag.FTM_EGPRS_BER_GetRxMetrics(iLevel); }));
    EXPECT_EQ(iLevel, 0x33);
}

TEST_F(GsmSession, TrafficIsValidIfItsLastDataWere) {
    Begin({Start, Bcch, Traffic});
    const std::pair<const char*, bool> records[] = {
        {"06 03 01", false}, {"06 04 01", true}, {"06 03 00", true}, {"06 04 00", false}};
    for (const auto& [sRecord, bValid] : records) {
        Report(5, sRecord);
        EXPECT_EQ(m_diag.FTM_GSM_BER_IsTrafficValid(), bValid) << sRecord;
    }
}

TEST_F(GsmSession, BlockFlows) {
    const Sequences sequences = {
        {{}, Downlink, "true GE 13/258 01 02 04 03 05 06 07 08 09", "CONFIGURE_DL_TBF = PASS, status = 0"},
        {Refuse(259), Uplink, "false GE 13/259 01 02 03 04 05 06 07", "UL_TBF = PASS, status = 5"},
        {Say(257, {"40 01 00", "40 00 00"}), SrbLoopback, "true GE 13/257", "ESTABLISHED ) = PASS"},
        {Say(257, {"40 00 01"}), SrbLoopback, "false GE 13/257", "ESTABLISHED ) = FAIL"}, // released
        {{}, ReleaseAll, "true GE 13/260", "FTM_LOG_EGPRS_TBF_EVENT_RELEASED ) = PASS"},
        {Silence(261), ReleaseUplink, "false GE 13/261", "FTM_LOG_EGPRS_TBF_EVENT_RELEASED ) = FAIL"},
        {{}, EgprsIdle, "true GE 13/260, 13/256", "START_IDLE_MODE_CNF ) = PASS"},
        {{}, Start, "true GE 13/260, 13/6, 13/0", "START_GSM_MODE_CNF) = PASS"},
        {{}, Bcch, "true G 13/1 02 01 03, 13/2", "START_IDLE_MODE_CNF ) = PASS"},
    };
    Check({Start, EgprsBcch}, sequences);
}

TEST_F(GsmSession, EveryStepIsLogged) {
    Begin({Start});
    EXPECT_EQ(LogOf({Bcch, Traffic, Handover, Release, Stop}), R"(0x0002     QLIB_FTM_GSM_BER_AssignBCCH
0x0004     FTM_GSM_BER_ClearStatus = PASS
0x0002 QLIB_FTM_GSM_SELECT_SPECIFIC_BCCH_REQ( iChannel = 258, iBand = 3)
0x0004     FTM_GSM_SELECT_SPECIFIC_BCCH_REQ = PASS, status = 0
0x0004  Starting wait for GSM BER message LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF...
0x0004  Wait for GSM BER message LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF took N ms, status = 1
0x0004     WaitForGSM_BER_Update( LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF ) = PASS
0x0002 QLIB_FTM_GSM_START_IDLE_MODE_REQ()
0x0004     FTM_GSM_START_IDLE_MODE_REQ = PASS, status = 0
0x0004  Starting wait for GSM BER message LOG_FTM2_START_IDLE_MODE_CNF...
0x0004  Wait for GSM BER message LOG_FTM2_START_IDLE_MODE_CNF took N ms, status = 1
0x0004     WaitForGSM_BER_Update( LOG_FTM2_START_IDLE_MODE_CNF ) = PASS
0x0002     QLIB_FTM_GSM_BER_AssignTraffic
0x0002 QLIB_FTM_GSM_CHANNEL_ASSIGN_REQ( iSlot = 5, eMode = 6)
0x0004     FTM_GSM_CHANNEL_ASSIGN_REQ = PASS, status = 0
0x0004  Starting wait for GSM BER message LOG_FTM2_CHANNEL_ASSIGN_CNF...
0x0004  Wait for GSM BER message LOG_FTM2_CHANNEL_ASSIGN_CNF took N ms, status = 1
0x0004     WaitForGSM_BER_Update( LOG_FTM2_CHANNEL_ASSIGN_CNF ) = PASS
0x0002     QLIB_FTM_GSM_ConfigLoopbackType
0x0002 QLIB_FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ( iLoopbackType = 9)
0x0004     FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ = PASS, status = 0
0x0004     FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ status check is disabled
0x0002     QLIB_FTM_GSM_BER_Handover
0x0002 QLIB_FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ( iChannel = 258, iBand = 3, iTSC = 4, iSlot = 5, eMode = 6, iPowerLevel = 7 )
0x0004     FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ = PASS, status = 0
0x0004  Starting wait for GSM BER message LOG_FTM2_CHANNEL_ASSIGN_CNF...
0x0004  Wait for GSM BER message LOG_FTM2_CHANNEL_ASSIGN_CNF took N ms, status = 1
0x0004     WaitForGSM_BER_Update( LOG_FTM2_CHANNEL_ASSIGN_CNF ) = PASS
0x0002     QLIB_FTM_GSM_ConfigLoopbackType
0x0002 QLIB_FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ( iLoopbackType = 0)
0x0004     FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ = PASS, status = 0
0x0004     FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ status check is disabled
0x0002     QLIB_FTM_GSM_ConfigLoopbackType
0x0002 QLIB_FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ( iLoopbackType = 9)
0x0004     FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ = PASS, status = 0
0x0004     FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ status check is disabled
0x0002     QLIB_FTM_GSM_BER_ReleaseTCH
0x0002 QLIB_FTM_GSM_CHANNEL_RELEASE_REQ()
0x0004     FTM_GSM_CHANNEL_RELEASE_REQ = PASS, status = 0
0x0002     FTM_GSM_BER_StopSession
0x0002 QLIB_FTM_GSM_STOP_GSM_MODE_REQ()
0x0004     FTM_GSM_STOP_MODE_REQ = PASS, status = 0
0x0004  Starting wait for GSM BER message LOG_FTM2_STOP_GSM_MODE_CNF...
0x0004  Wait for GSM BER message LOG_FTM2_STOP_GSM_MODE_CNF took N ms, status = 1
0x0002 QLIB_DIAG_SetPhoneLoggingState(bEnableLogging=0)
0x0002 QLIB_DIAG_SetPhoneLoggingState(bEnableLogging=1)
0x0004     DIAG_SetPhoneLoggingState = PASS
)");
}

} // namespace
