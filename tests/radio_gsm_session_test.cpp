// The GSM and EGPRS test sessions against a phone that confirms, refuses, and keeps silent.
#include "radio_session_fixture.h"

namespace {

constexpr TestMode kGsm = TestMode::Gsm;
constexpr FTM_GSM_BER_LoopbackType_Enum kLoopback{9};
constexpr FTM_GSM_BER_Channel_Modes_Enum kChannelMode{6};

using Call = bool (*)(Diag_FTM&);
const Call Start = [](Diag_FTM& d) { return d.FTM_GSM_BER_StartSession(0); };
const Call Bcch = [](Diag_FTM& d) { return d.FTM_GSM_BER_AssignBCCH(0x102, 3); };
const Call Traffic = [](Diag_FTM& d) { return d.FTM_GSM_BER_AssignTraffic(kLoopback, 5, kChannelMode); };
const Call Handover = [](Diag_FTM& d) {
    return d.FTM_GSM_BER_Handover(0x102, 3, 4, 5, kChannelMode, 7, kLoopback);
};
const Call Loopback = [](Diag_FTM& d) { return d.FTM_GSM_ConfigLoopbackType(kLoopback); };
const Call Release = [](Diag_FTM& d) { return d.FTM_GSM_BER_ReleaseTCH(); };
const Call Stop = [](Diag_FTM& d) { return d.FTM_GSM_BER_StopSession(); };
const Call EgprsBcch = [](Diag_FTM& d) { return d.FTM_EGPRS_BER_AssignBCCH(0x102, 3); };
const Call EgprsIdle = [](Diag_FTM& d) { return d.FTM_EGPRS_BER_StartIdleMode(); };
const Call Downlink = [](Diag_FTM& d) {
    return d.FTM_EGPRS_BER_Configure_DL_TBF(1, 2, 0x304, 5, 6, 7, 8, 9);
};
const Call Uplink = [](Diag_FTM& d) { return d.FTM_EGPRS_BER_Configure_UL_TBF(1, 2, 3, 4, 5, 6, 7); };
const Call SrbLoopback = [](Diag_FTM& d) { return d.FTM_EGPRS_BER_Establish_SRB_LOOPBACK(); };
const Call ReleaseAll = [](Diag_FTM& d) { return d.FTM_EGPRS_BER_Release_All_TBF(); };
const Call ReleaseUplink = [](Diag_FTM& d) { return d.FTM_EGPRS_BER_Release_UL_TBF(); };

const Lines kStarted = Confirmed("GSM", "LOG_FTM2_START_GSM_MODE_CNF", "LOG_FTM2_START_GSM_MODE_CNF)", true);
Lines Found(bool bCame) {
    return Confirmed("GSM", "LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF", "LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF )",
                     bCame);
}
Lines Idle(bool bCame) {
    return Confirmed("GSM", "LOG_FTM2_START_IDLE_MODE_CNF", "LOG_FTM2_START_IDLE_MODE_CNF )", bCame);
}
Lines Assigned(bool bCame) {
    return Confirmed("GSM", "LOG_FTM2_CHANNEL_ASSIGN_CNF", "LOG_FTM2_CHANNEL_ASSIGN_CNF )", bCame);
}
Lines Loop(int iStatus) {
    return {"> QLIB_FTM_GSM_ConfigLoopbackType",
            "FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ = PASS, status = " + std::to_string(iStatus),
            "FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ status check is disabled"};
}
Lines Sent(const std::string& sRequest, int iStatus = 0) {
    return {sRequest + " = PASS, status = " + std::to_string(iStatus)};
}
const Lines kStart = {"> QLIB_FTM_GSM_BER_StartSession", "FTM_GSM_BER_ClearStatus = PASS",
                      "  DIAG_SetExtendedLogCode = PASS"};
const Lines kBcch = {"> QLIB_FTM_GSM_BER_AssignBCCH", "FTM_GSM_BER_ClearStatus = PASS"};
const Lines kStop = {"> FTM_GSM_BER_StopSession"};
Lines Flow(bool bCame, const std::string& sEvent) {
    Lines lines = Waited("EGPRS", "FTM_LOG_EGPRS_BER_TBF_IND", bCame);
    lines.push_back(
        "WaitForEGPRS_BER_Update( FTM_LOG_EGPRS_TBF_EVENT_ESTABLISHED, FTM_LOG_EGPRS_BER_TBF_DL, "
        "FTM_LOG_EGPRS_TBF_EVENT_" +
        sEvent + " ) = " + (bCame ? "PASS" : "FAIL"));
    return lines;
}
Lines Cleared(const std::string& sEntry) {
    return {"> " + sEntry, "FTM_EGPRS_BER_ClearStatus = PASS"};
}
const Lines kIdle = Cleared("QLIB_FTM_EGPRS_BER_StartIdleMode");

class GsmWithoutSession : public RadioSessionTest {
    void Begin() override {}
};

TEST_F(GsmWithoutSession, StartsOrRefuses) {
    const std::string sError = " -- Error, session is not started";
    Check(
        {Sequence("start", {}, Start, true, {"13/0"}, "G",
                  kStart + Sent("FTM_GSM_START_MODE_REQ") + kStarted),
         Sequence("start refused", {{kGsm, 0, {Refused()}}}, Start, false, {"13/0"}, "G",
                  kStart + Sent("FTM_GSM_START_MODE_REQ", 5)),
         Sequence("start not confirmed", {{kGsm, 0, {Silent()}}}, Start, false, {"13/0"}, "G",
                  kStart + Sent("FTM_GSM_START_MODE_REQ") +
                      Confirmed("GSM", "LOG_FTM2_START_GSM_MODE_CNF", "LOG_FTM2_START_GSM_MODE_CNF)", false)),
         Sequence("bcch", {}, Bcch, false, {}, "", kBcch + Lines{"QLIB_FTM_GSM_BER_AssignBCCH" + sError}),
         Sequence("traffic", {}, Traffic, false, {}, "",
                  {"> QLIB_FTM_GSM_BER_AssignTraffic", "QLIB_FTM_GSM_BER_AssignTraffic" + sError}),
         Sequence("handover", {}, Handover, false, {}, "",
                  {"> QLIB_FTM_GSM_BER_Handover", "QLIB_FTM_GSM_BER_AssignTraffic" + sError}),
         Sequence("loopback", {}, Loopback, false, {}, "",
                  {"> QLIB_FTM_GSM_ConfigLoopbackType", "FTM_GSM_ConfigLoopbackType()" + sError}),
         Sequence("release", {}, Release, false, {"13/5"}, "",
                  {"> QLIB_FTM_GSM_BER_ReleaseTCH", "FTM_GSM_CHANNEL_RELEASE_REQ = PASS, status = 1"}),
         Sequence("stop", {}, Stop, false, {"13/6"}, "",
                  kStop + Sent("FTM_GSM_STOP_MODE_REQ", 1) + Lines{"DIAG_SetPhoneLoggingState = FAIL"}),
         Sequence("egprs bcch", {}, EgprsBcch, false, {}, "",
                  {"> QLIB_FTM_EGPRS_BER_AssignBCCH", "> QLIB_FTM_GSM_BER_ClearStatus",
                   "FTM_GSM_BER_ClearStatus = PASS", "QLIB_FTM_EGPRS_BER_AssignBCCH" + sError}),
         Sequence(
             "egprs idle mode", {}, EgprsIdle, false, {}, "E",
             kIdle +
                 Lines{"QLIB_FTM_EGPRS_BER_StartIdleMode -- Error, a GSM BER session must be started first"}),
         Sequence("egprs loopback", {}, SrbLoopback, false, {}, "",
                  Cleared("QLIB_FTM_EGPRS_BER_Establish_SRB_LOOPBACK") +
                      Lines{"QLIB_FTM_EGPRS_BER_Establish_SRB_LOOPBACK" + sError}),
         Sequence("egprs release", {}, ReleaseAll, false, {}, "",
                  Cleared("QLIB_FTM_EGPRS_BER_Release_All_TBF") +
                      Lines{"QLIB_FTM_EGPRS_BER_Release_ALL_TBF" + sError})});
}

TEST_F(GsmWithoutSession, OpenedPortHasNoSession) {
    EXPECT_TRUE(Start(m_diag));
    EXPECT_TRUE(EgprsBcch(m_diag));
    EXPECT_EQ(Active(), "GE");
    m_diag.OpenPort();
    EXPECT_EQ(Active(), "E");
}

TEST_F(GsmWithoutSession, StartLetsTheRecordsThrough) {
    m_phone.phone.ClearRequests();
    EXPECT_TRUE(Start(m_diag));
    const Lines requests = m_phone.Requests();
    ASSERT_EQ(requests.size(), 6u);
    EXPECT_EQ(requests[0], "4B 0B 09 00 00 00 00 00 00 00 05 10 14 00 00 00 01 00 00 00");
    EXPECT_EQ(requests[4], "73 00 00 00 03 00 00 00 01 00 00 00 E8 02 00 00 " + Times(47, "00") + " 10 " +
                               Times(45, "00"));
}

TEST_F(GsmWithoutSession, WaitTimeStaysUntilItIsSet) {
    EXPECT_TRUE(m_diag.FTM_GSM_BER_StartSession(2500));
    EXPECT_EQ(m_diag.GetTimeOut(QMSL_TimeOut_StatisticsWait), 2500u);
    Reset();
    m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, 4321);
    EXPECT_TRUE(m_diag.FTM_GSM_BER_StartSession(0));
    EXPECT_EQ(m_diag.GetTimeOut(QMSL_TimeOut_StatisticsWait), 4321u);
}

class GsmStarted : public RadioSessionTest {
    void Begin() override { EXPECT_TRUE(Start(m_diag)); }
};

TEST_F(GsmStarted, Bcch) {
    const Lines select = kBcch + Sent("FTM_GSM_SELECT_SPECIFIC_BCCH_REQ");
    const Lines asked = {"13/1 02 01 03"};
    const Lines both = {"13/1 02 01 03", "13/2"};
    Check(
        {Sequence("found", {}, Bcch, true, both, "G",
                  select + Found(true) + Sent("FTM_GSM_START_IDLE_MODE_REQ") + Idle(true)),
         Sequence("refused", {{kGsm, 1, {Refused()}}}, Bcch, false, asked, "G",
                  kBcch + Sent("FTM_GSM_SELECT_SPECIFIC_BCCH_REQ", 5) +
                      Lines{"FTM_GSM_SELECT_SPECIFIC_BCCH_REQ failed to acquire BCCH"}),
         Sequence("not found", {{kGsm, 1, {Says({"01 00 07"})}}}, Bcch, false, asked, "G",
                  select + Found(false)),
         Sequence("cut record", {{kGsm, 1, {Says({"01 01"})}}}, Bcch, false, asked, "G",
                  select + Found(false)),
         Sequence("found at the second record", {{kGsm, 1, {Says({"01 00 07", "01 01 07"})}}}, Bcch, true,
                  both, "G", select + Found(true) + Sent("FTM_GSM_START_IDLE_MODE_REQ") + Idle(true)),
         Sequence("idle mode refused", {{kGsm, 2, {Refused()}}}, Bcch, false, both, "G",
                  select + Found(true) + Sent("FTM_GSM_START_IDLE_MODE_REQ", 5) +
                      Lines{"FTM_GSM_START_IDLE_MODE_REQ failed recive acquire BCCH message from mobile"}),
         Sequence("idle mode not confirmed", {{kGsm, 2, {Silent()}}}, Bcch, false, both, "G",
                  select + Found(true) + Sent("FTM_GSM_START_IDLE_MODE_REQ") + Idle(false)),
         Sequence("traffic before a channel", {}, Traffic, false, {"13/4 05 06"}, "G",
                  Lines{"> QLIB_FTM_GSM_BER_AssignTraffic"} + Sent("FTM_GSM_CHANNEL_ASSIGN_REQ", 1)),
         Sequence("start again", {}, Start, true, {"13/6", "13/0"}, "G",
                  kStart + Sent("FTM_GSM_STOP_MODE_REQ") + Sent("FTM_GSM_START_MODE_REQ") + kStarted),
         Sequence("start again, stop refused", {{kGsm, 6, {Refused()}}}, Start, false, {"13/6"}, "G",
                  kStart + Sent("FTM_GSM_STOP_MODE_REQ", 5)),
         Sequence("stop", {}, Stop, true, {"13/6"}, "",
                  kStop + Sent("FTM_GSM_STOP_MODE_REQ") + Waited("GSM", "LOG_FTM2_STOP_GSM_MODE_CNF", true) +
                      Lines{"DIAG_SetPhoneLoggingState = PASS"}),
         Sequence("stop not confirmed", {{kGsm, 6, {Silent()}}}, Stop, false, {"13/6"}, "",
                  kStop + Sent("FTM_GSM_STOP_MODE_REQ") + Waited("GSM", "LOG_FTM2_STOP_GSM_MODE_CNF", false) +
                      Lines{"DIAG_SetPhoneLoggingState = FAIL"})});
}

TEST_F(GsmStarted, EgprsIdleMode) {
    const Lines bcch = {"> QLIB_FTM_EGPRS_BER_AssignBCCH", "> QLIB_FTM_GSM_BER_ClearStatus",
                        "FTM_GSM_BER_ClearStatus = PASS"};
    const Lines idle = kIdle + Sent("FTM_EGPRS_START_MODE_REQ");
    const Lines both = {"13/1 02 01 03", "13/256"};
    Check({Sequence("bcch", {}, EgprsBcch, true, both, "GE",
                    bcch + Sent("FTM_GSM_SELECT_SPECIFIC_BCCH_REQ") + Found(true) + idle + Idle(true)),
           Sequence("bcch refused", {{kGsm, 1, {Refused()}}}, EgprsBcch, true, both, "GE",
                    bcch + Sent("FTM_GSM_SELECT_SPECIFIC_BCCH_REQ", 5) +
                        Lines{"FTM_GSM_SELECT_SPECIFIC_BCCH_REQ failed to acquire BCCH"} + idle + Idle(true)),
           Sequence("bcch not found", {{kGsm, 1, {Silent()}}}, EgprsBcch, true, both, "GE",
                    bcch + Sent("FTM_GSM_SELECT_SPECIFIC_BCCH_REQ") + Found(false) + idle + Idle(true)),
           Sequence("refused", {{kGsm, 256, {Refused()}}}, EgprsIdle, false, {"13/256"}, "GE",
                    kIdle + Sent("FTM_EGPRS_START_MODE_REQ", 5)),
           Sequence("not confirmed", {{kGsm, 256, {Silent()}}}, EgprsIdle, false, {"13/256"}, "GE",
                    idle + Idle(false))});
}

class GsmTraffic : public RadioSessionTest {
protected:
    void Begin() override { EXPECT_TRUE(Start(m_diag) && Bcch(m_diag) && Traffic(m_diag)); }
};

TEST_F(GsmTraffic, Channels) {
    const Lines traffic = Lines{"> QLIB_FTM_GSM_BER_AssignTraffic"};
    const Lines assign = traffic + Sent("FTM_GSM_CHANNEL_ASSIGN_REQ");
    const Lines handover = {"> QLIB_FTM_GSM_BER_Handover"};
    const Lines moved = handover + Sent("FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ");
    const Lines both = {"13/7 02 01 03 04 05 06 07", "13/3 00", "13/3 09"};
    Check({Sequence("assigned", {}, Traffic, true, {"13/4 05 06", "13/3 09"}, "G",
                    assign + Assigned(true) + Loop(0)),
           Sequence("no channel", {{kGsm, 4, {Says({"03 02"})}}}, Traffic, false, {"13/4 05 06"}, "G",
                    assign + Assigned(false)),
           Sequence("loopback refused, which does not count", {{kGsm, 3, {Refused()}}}, Traffic, true,
                    {"13/4 05 06", "13/3 09"}, "G", assign + Assigned(true) + Loop(5)),
           Sequence("handover", {}, Handover, true, both, "G", moved + Assigned(true) + Loop(0) + Loop(0)),
           Sequence("handover refused", {{kGsm, 7, {Refused()}}}, Handover, false, both, "G",
                    handover + Sent("FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ", 5) + Loop(0) + Loop(0)),
           Sequence("handover to no channel", {{kGsm, 7, {Says({"03 01"})}}}, Handover, false, both, "G",
                    moved + Assigned(false) + Loop(0) + Loop(0)),
           Sequence("release", {}, Release, true, {"13/5"}, "G",
                    {"> QLIB_FTM_GSM_BER_ReleaseTCH", "FTM_GSM_CHANNEL_RELEASE_REQ = PASS, status = 0"}),
           Sequence("release refused", {{kGsm, 5, {Refused()}}}, Release, false, {"13/5"}, "G",
                    {"> QLIB_FTM_GSM_BER_ReleaseTCH", "FTM_GSM_CHANNEL_RELEASE_REQ = PASS, status = 5"})});
}

TEST_F(GsmTraffic, HandoverFailsWithItsSecondLoopback) {
    Begin();
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 1000);
    m_phone.Misbehave(Action::Ignore, "4B 0B 0D 00 03 00", 1, 0, 1);
    m_log.Clear();
    EXPECT_FALSE(Handover(m_diag));
    EXPECT_TRUE(m_log.Has(LOG_RET, "    FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ = PASS, status = 0"));
    EXPECT_TRUE(m_log.Has(LOG_RET, "    FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ = FAIL, status = 1"));
}

TEST_F(GsmTraffic, Metrics) {
    unsigned char iLevel = 0xEE;
    unsigned char iQuality = 0xEE;
    const auto measure = [&] { return m_diag.FTM_GSM_BER_GetRxMetrics(iLevel, iQuality); };
    m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, kShort_ms);
    Report(5, "07 10 11"); // of before
    EXPECT_FALSE(measure());
    EXPECT_EQ(iLevel, 0xEE);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, kLong_ms);
    EXPECT_TRUE(WhileReporting(5, "07 20 21", measure));
    EXPECT_EQ(iLevel, 0x20);
    EXPECT_EQ(iQuality, 0x21);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, 0);
    EXPECT_FALSE(WhileReporting(5, "07 20 21", measure));
}

TEST_F(GsmTraffic, TrafficIsValidAsItsLastDataWere) {
    for (const auto& [sRecord, bValid] : std::vector<std::pair<const char*, bool>>{{"06 03 01", false},
                                                                                   {"06 04 00", false},
                                                                                   {"06 04 01", true},
                                                                                   {"06 03 00", true},
                                                                                   {"06 04 00", false}}) {
        Report(5, sRecord);
        EXPECT_EQ(m_diag.FTM_GSM_BER_IsTrafficValid(), bValid) << sRecord;
    }
    EXPECT_TRUE(m_log.Has(LOG_RET, "    FTM_GSM_BER_IsTrafficValid() found SACCH status to be invalid"));
}

class Egprs : public RadioSessionTest {
    void Begin() override { EXPECT_TRUE(Start(m_diag) && EgprsBcch(m_diag)); }
};

TEST_F(Egprs, BlockFlows) {
    const Lines loopback =
        Cleared("QLIB_FTM_EGPRS_BER_Establish_SRB_LOOPBACK") + Sent("FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK");
    const Lines releaseAll =
        Cleared("QLIB_FTM_EGPRS_BER_Release_All_TBF") + Sent("FTM_EGPRS_BER_RELEASE_ALL_TBF");
    const Lines released = {"FTM_EGPRS_BER_Release_UL_TBF = PASS "};
    Check(
        {Sequence(
             "downlink", {}, Downlink, true, {"13/258 01 02 04 03 05 06 07 08 09"}, "GE",
             Cleared(
                 "QLIB_FTM_EGPRS_BER_Configure_DL_TBF(iDL_TSC = 1, iDL_TFI = 2, iChannel = 772, iBand = 5, "
                 "bFirstSlotActive = 6, iFirstSlotNum = 7, bSecondSlotActive = 8, iSecondSlotNum = 9)") +
                 Sent("FTM_EGPRS_BER_CONFIGURE_DL_TBF")),
         Sequence("uplink refused", {{kGsm, 259, {Refused()}}}, Uplink, false,
                  {"13/259 01 02 03 04 05 06 07"}, "GE",
                  Cleared("QLIB_FTM_EGPRS_BER_Configure_UL_TBF( iUL_TSC = 1, iUSF = 2, bFirstSlotActive = 4, "
                          "iFirstSlotNum = 5, bSecondSlotActive = 6, iSecondSlotNum  = 7)") +
                      Sent("FTM_EGPRS_BER_CONFIGURE_UL_TBF", 5)),
         Sequence("loopback", {}, SrbLoopback, true, {"13/257"}, "GE",
                  loopback + Flow(true, "ESTABLISHED") + Flow(true, "ESTABLISHED")),
         Sequence("loopback, downlink after uplink", {{kGsm, 257, {Says({"40 01 00", "40 00 00"})}}},
                  SrbLoopback, true, {"13/257"}, "GE",
                  loopback + Flow(true, "ESTABLISHED") + Flow(true, "ESTABLISHED")),
         Sequence("loopback, uplink alone", {{kGsm, 257, {Says({"40 01 00"})}}}, SrbLoopback, false,
                  {"13/257"}, "GE", loopback + Flow(false, "ESTABLISHED")),
         Sequence("loopback, downlink released", {{kGsm, 257, {Says({"40 00 01"})}}}, SrbLoopback, false,
                  {"13/257"}, "GE", loopback + Flow(false, "ESTABLISHED")),
         Sequence("release", {}, ReleaseAll, true, {"13/260"}, "GE", releaseAll + Flow(true, "RELEASED")),
         Sequence("release, some flow", {{kGsm, 260, {Says({"40 02 00"})}}}, ReleaseAll, true, {"13/260"},
                  "GE", releaseAll + Flow(true, "RELEASED")),
         Sequence("release not confirmed", {{kGsm, 261, {Silent()}}}, ReleaseUplink, false, {"13/261"}, "GE",
                  Cleared("QLIB_FTM_EGPRS_BER_Release_UL_TBF") + Sent("FTM_EGPRS_BER_RELEASE_UL_TBF") +
                      Flow(false, "RELEASED")),
         Sequence("idle mode again", {}, EgprsIdle, true, {"13/260", "13/256"}, "GE",
                  kIdle + released + Sent("FTM_EGPRS_START_MODE_REQ") + Idle(true)),
         Sequence(
             "GSM start", {}, Start, true, {"13/260", "13/6", "13/0"}, "GE",
             kStart + released + Sent("FTM_GSM_STOP_MODE_REQ") + Sent("FTM_GSM_START_MODE_REQ") + kStarted),
         Sequence("GSM channel", {}, Bcch, true, {"13/1 02 01 03", "13/2"}, "G",
                  kBcch + Sent("FTM_GSM_SELECT_SPECIFIC_BCCH_REQ") + Found(true) +
                      Sent("FTM_GSM_START_IDLE_MODE_REQ") + Idle(true))});
}

TEST_F(Egprs, Metrics) {
    unsigned char iLevel = 0xEE;
    const auto measure = [&] { return m_diag.FTM_EGPRS_BER_GetRxMetrics(iLevel); };
    m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, kShort_ms);
    EXPECT_FALSE(measure());
    EXPECT_EQ(iLevel, 0xEE);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_StatisticsWait, kLong_ms);
    m_log.Clear();
    EXPECT_TRUE(WhileReporting(5, "42 33", measure));
    EXPECT_EQ(iLevel, 0x33);
    EXPECT_TRUE(m_log.Has(LOG_FN, "    WaitForGSM_BER_Update( FTM_LOG_EGPRS_BER_SERVING_MEAS_IND ) = PASS"));
}

TEST_F(Egprs, UnknownRecordIsNotWaitedFor) {
    EgprsTestSession& session = m_diag;
    m_log.Clear();
    EXPECT_FALSE(session.WaitForEGPRS_BER_Update(log_FTM2_EGPRS_BER_log_id_enum{67}, FTM_LOG_EGPRS_BER_TBF_DL,
                                                 FTM_LOG_EGPRS_TBF_EVENT_ESTABLISHED));
    EXPECT_EQ(m_log.Of(LOG_RET), Lines{" Starting wait for EGPRS BER message Invalid EGPRS BER Log..."});
}

} // namespace
