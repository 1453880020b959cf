// The GSM and EGPRS test sessions against a phone that confirms, refuses, and keeps silent.
#include "radio_session_fixture.h"

namespace {

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

Lines Gsm(const std::string& sRecord, bool bCame, const std::string& sEnd = " )") {
    return Confirmed("GSM", sRecord, sRecord + sEnd, bCame);
}
Lines Assigned(bool bCame) {
    return Gsm("LOG_FTM2_CHANNEL_ASSIGN_CNF", bCame);
}
Lines Loop(int iStatus) {
    return Lines{"> QLIB_FTM_GSM_ConfigLoopbackType"} + Sent("FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ", iStatus) +
           Lines{"FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ status check is disabled"};
}
Lines Flow(bool bCame, const std::string& sEvent) {
    return Waited("EGPRS", "FTM_LOG_EGPRS_BER_TBF_IND", bCame) +
           Lines{
               "WaitForEGPRS_BER_Update( FTM_LOG_EGPRS_TBF_EVENT_ESTABLISHED, FTM_LOG_EGPRS_BER_TBF_DL, "
               "FTM_LOG_EGPRS_TBF_EVENT_" +
               sEvent + " ) = " + (bCame ? "PASS" : "FAIL")};
}
const Lines kStart =
    Cleared("QLIB_FTM_GSM_BER_StartSession", "GSM") + Lines{"  DIAG_SetExtendedLogCode = PASS"};
const Lines kStarted = Sent("FTM_GSM_START_MODE_REQ") + Gsm("LOG_FTM2_START_GSM_MODE_CNF", true, ")");
const Lines kBcch = Cleared("QLIB_FTM_GSM_BER_AssignBCCH", "GSM");
const Lines kFound =
    Sent("FTM_GSM_SELECT_SPECIFIC_BCCH_REQ") + Gsm("LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF", true);
const Lines kIdle = Gsm("LOG_FTM2_START_IDLE_MODE_CNF", true);
const Lines kEgprs = Cleared("QLIB_FTM_EGPRS_BER_StartIdleMode");

class GsmWithoutSession : public RadioSessionTest {
    void Begin() override {}
};

TEST_F(GsmWithoutSession, StartsOrRefuses) {
    const std::vector<Sequence> sequences = {
        Sequence({}, Start, "true G 13/0", kStart + kStarted),
        Sequence(Refuse(0), Start, "false G 13/0", "GSM_START_MODE_REQ = PASS, status = 5"),
        Sequence(Silence(0), Start, "false G 13/0", "START_GSM_MODE_CNF) = FAIL"),
        Sequence({}, Bcch, "false -", "QLIB_FTM_GSM_BER_AssignBCCH -- Error, session is not started"),
        Sequence({}, Traffic, "false -", "QLIB_FTM_GSM_BER_AssignTraffic -- Error, session is not started"),
        Sequence({}, Handover, "false -", "QLIB_FTM_GSM_BER_AssignTraffic -- Error, session is not started"),
        Sequence({}, Loopback, "false -", "FTM_GSM_ConfigLoopbackType() -- Error, session is not started"),
        Sequence({}, Release, "false - 13/5", "GSM_CHANNEL_RELEASE_REQ = PASS, status = 1"),
        Sequence({}, Stop, "false - 13/6", "DIAG_SetPhoneLoggingState = FAIL"),
        Sequence({}, EgprsBcch, "false -", "QLIB_FTM_EGPRS_BER_AssignBCCH -- Error, session is not started"),
        Sequence({}, EgprsIdle, "false E",
                 "QLIB_FTM_EGPRS_BER_StartIdleMode -- Error, a GSM BER session must be started first"),
        Sequence({}, SrbLoopback, "false -",
                 "QLIB_FTM_EGPRS_BER_Establish_SRB_LOOPBACK -- Error, session is not started"),
        Sequence({}, ReleaseAll, "false -",
                 "QLIB_FTM_EGPRS_BER_Release_ALL_TBF -- Error, session is not started"),
    };
    Check(sequences);
}

TEST_F(GsmWithoutSession, OpenedPortHasNoSession) {
    EXPECT_TRUE(Start(m_diag) && EgprsBcch(m_diag));
    EXPECT_EQ(Active(), "GE");
    m_diag.OpenPort();
    EXPECT_EQ(Active(), "E");
}

TEST_F(GsmWithoutSession, StartLetsTheRecordsThroughAndSetsTheWaitTime) {
    m_phone.phone.ClearRequests();
    EXPECT_TRUE(m_diag.FTM_GSM_BER_StartSession(2500));
    EXPECT_EQ(m_diag.GetTimeOut(QMSL_TimeOut_StatisticsWait), 2500u);
    const Lines requests = m_phone.Requests();
    ASSERT_EQ(requests.size(), 6u);
    EXPECT_EQ(requests[0], "4B 0B 09 00 00 00 00 00 00 00 05 10 14 00 00 00 01 00 00 00");
    EXPECT_EQ(requests[4], "73 00 00 00 03 00 00 00 01 00 00 00 E8 02 00 00 " + Times(47, "00") + " 10 " +
                               Times(45, "00"));
    EXPECT_TRUE(Start(m_diag)); // 0 leaves it
    EXPECT_EQ(m_diag.GetTimeOut(QMSL_TimeOut_StatisticsWait), 2500u);
}

class GsmStarted : public RadioSessionTest {
    void Begin() override { EXPECT_TRUE(Start(m_diag)); }
};

TEST_F(GsmStarted, Bcch) {
    const std::string asked = "13/1 02 01 03";
    const std::string both = "13/1 02 01 03, 13/2";
    const Lines found = kBcch + kFound + Sent("FTM_GSM_START_IDLE_MODE_REQ") + kIdle;
    const std::vector<Sequence> sequences = {
        Sequence({}, Bcch, "true G " + both, found),
        Sequence(Refuse(1), Bcch, "false G " + asked,
                 "FTM_GSM_SELECT_SPECIFIC_BCCH_REQ failed to acquire BCCH"),

        // Not found.
        Sequence(Say(1, {"01 00 07"}), Bcch, "false G " + asked, "SELECT_SPECIFIC_BCCH_CNF ) = FAIL"),

        // Found at the second record.
        Sequence(Say(1, {"01 00 07", "01 01 07"}), Bcch, "true G " + both, found),
        Sequence(Refuse(2), Bcch, "false G " + both,
                 "FTM_GSM_START_IDLE_MODE_REQ failed recive acquire BCCH message from mobile"),
        Sequence(Silence(2), Bcch, "false G " + both, "START_IDLE_MODE_CNF ) = FAIL"),
        Sequence({}, Traffic, "false G 13/4 05 06", "GSM_CHANNEL_ASSIGN_REQ = PASS, status = 1"),
        Sequence({}, Start, "true G 13/6, 13/0", kStart + Sent("FTM_GSM_STOP_MODE_REQ") + kStarted),
        Sequence(Refuse(6), Start, "false G 13/6", "GSM_STOP_MODE_REQ = PASS, status = 5"),
        Sequence({}, Stop, "true - 13/6",
                 Lines{"> FTM_GSM_BER_StopSession"} + Sent("FTM_GSM_STOP_MODE_REQ") +
                     Waited("GSM", "LOG_FTM2_STOP_GSM_MODE_CNF", true) +
                     Lines{"DIAG_SetPhoneLoggingState = PASS"}),
        Sequence(Silence(6), Stop, "false - 13/6", "DIAG_SetPhoneLoggingState = FAIL"),
    };
    Check(sequences);
}

TEST_F(GsmStarted, EgprsIdleMode) {
    const Lines bcch =
        Lines{"> QLIB_FTM_EGPRS_BER_AssignBCCH"} + Cleared("QLIB_FTM_GSM_BER_ClearStatus", "GSM");
    const std::string both = "13/1 02 01 03, 13/256";
    const std::vector<Sequence> sequences = {
        Sequence({}, EgprsBcch, "true GE " + both,
                 bcch + kFound + kEgprs + Sent("FTM_EGPRS_START_MODE_REQ") + kIdle),
        Sequence(Refuse(1), EgprsBcch, "true GE " + both, "START_IDLE_MODE_CNF ) = PASS"),
        Sequence(Silence(1), EgprsBcch, "true GE " + both, "START_IDLE_MODE_CNF ) = PASS"),
        Sequence(Refuse(256), EgprsIdle, "false GE 13/256", "EGPRS_START_MODE_REQ = PASS, status = 5"),
        Sequence(Silence(256), EgprsIdle, "false GE 13/256", "START_IDLE_MODE_CNF ) = FAIL"),
    };
    Check(sequences);
}

class GsmTraffic : public RadioSessionTest {
protected:
    void Begin() override { EXPECT_TRUE(Start(m_diag) && Bcch(m_diag) && Traffic(m_diag)); }
};

TEST_F(GsmTraffic, Channels) {
    const Lines assigned =
        Lines{"> QLIB_FTM_GSM_BER_AssignTraffic"} + Sent("FTM_GSM_CHANNEL_ASSIGN_REQ") + Assigned(true);
    const Lines handover = {"> QLIB_FTM_GSM_BER_Handover"};
    const Lines moved = handover + Sent("FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ");
    const std::string three = "13/7 02 01 03 04 05 06 07, 13/3 00, 13/3 09";
    const std::vector<Sequence> sequences = {
        Sequence({}, Traffic, "true G 13/4 05 06, 13/3 09", assigned + Loop(0)),

        // No channel.
        Sequence(Say(4, {"03 02"}), Traffic, "false G 13/4 05 06", "CHANNEL_ASSIGN_CNF ) = FAIL"),
        Sequence(Refuse(3), Traffic, "true G 13/4 05 06, 13/3 09", assigned + Loop(5)),
        Sequence({}, Handover, "true G " + three, moved + Assigned(true) + Loop(0) + Loop(0)),
        Sequence(Refuse(7), Handover, "false G " + three,
                 handover + Sent("FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ", 5) + Loop(0) + Loop(0)),

        // Handover to no channel.
        Sequence(Say(7, {"03 01"}), Handover, "false G " + three,
                 moved + Assigned(false) + Loop(0) + Loop(0)),
        Sequence({}, Release, "true G 13/5",
                 Lines{"> QLIB_FTM_GSM_BER_ReleaseTCH"} + Sent("FTM_GSM_CHANNEL_RELEASE_REQ")),
        Sequence(Refuse(5), Release, "false G 13/5", "GSM_CHANNEL_RELEASE_REQ = PASS, status = 5"),
    };
    Check(sequences);
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
    const std::vector<std::pair<const char*, bool>> records = {{"06 03 01", false},
                                                               {"06 04 00", false},
                                                               {"06 04 01", true},
                                                               {"06 03 00", true},
                                                               {"06 04 00", false}};
    for (const auto& [sRecord, bValid] : records) {
        Report(5, sRecord);
        EXPECT_EQ(m_diag.FTM_GSM_BER_IsTrafficValid(), bValid) << sRecord;
    }
    EXPECT_TRUE(m_log.Has(LOG_RET, "    FTM_GSM_BER_IsTrafficValid() found SACCH status to be invalid"));
}

class Egprs : public RadioSessionTest {
    void Begin() override { EXPECT_TRUE(Start(m_diag) && EgprsBcch(m_diag)); }
};

TEST_F(Egprs, BlockFlows) {
    const Lines loopback = Cleared("QLIB_FTM_EGPRS_BER_Establish_SRB_LOOPBACK") +
                           Sent("FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK") + Flow(true, "ESTABLISHED") +
                           Flow(true, "ESTABLISHED");
    const Lines releaseAll = Cleared("QLIB_FTM_EGPRS_BER_Release_All_TBF") +
                             Sent("FTM_EGPRS_BER_RELEASE_ALL_TBF") + Flow(true, "RELEASED");
    const Lines released = {"FTM_EGPRS_BER_Release_UL_TBF = PASS "};
    const std::vector<Sequence> sequences = {
        Sequence(
            {}, Downlink, "true GE 13/258 01 02 04 03 05 06 07 08 09",
            Cleared(
                "QLIB_FTM_EGPRS_BER_Configure_DL_TBF(iDL_TSC = 1, iDL_TFI = 2, iChannel = 772, iBand = 5, "
                "bFirstSlotActive = 6, iFirstSlotNum = 7, bSecondSlotActive = 8, iSecondSlotNum = 9)") +
                Sent("FTM_EGPRS_BER_CONFIGURE_DL_TBF")),
        Sequence(Refuse(259), Uplink, "false GE 13/259 01 02 03 04 05 06 07",
                 Cleared("QLIB_FTM_EGPRS_BER_Configure_UL_TBF( iUL_TSC = 1, iUSF = 2, bFirstSlotActive = 4, "
                         "iFirstSlotNum = 5, bSecondSlotActive = 6, iSecondSlotNum  = 7)") +
                     Sent("FTM_EGPRS_BER_CONFIGURE_UL_TBF", 5)),
        Sequence({}, SrbLoopback, "true GE 13/257", loopback),

        // Loopback, downlink after uplink.
        Sequence(Say(257, {"40 01 00", "40 00 00"}), SrbLoopback, "true GE 13/257", loopback),

        // Loopback, uplink alone.
        Sequence(Say(257, {"40 01 00"}), SrbLoopback, "false GE 13/257", "ESTABLISHED ) = FAIL"),

        // Loopback, downlink released.
        Sequence(Say(257, {"40 00 01"}), SrbLoopback, "false GE 13/257", "ESTABLISHED ) = FAIL"),
        Sequence({}, ReleaseAll, "true GE 13/260", releaseAll),

        // Release, some flow.
        Sequence(Say(260, {"40 02 00"}), ReleaseAll, "true GE 13/260", releaseAll),
        Sequence(Silence(261), ReleaseUplink, "false GE 13/261",
                 Cleared("QLIB_FTM_EGPRS_BER_Release_UL_TBF") + Sent("FTM_EGPRS_BER_RELEASE_UL_TBF") +
                     Flow(false, "RELEASED")),
        Sequence({}, EgprsIdle, "true GE 13/260, 13/256",
                 kEgprs + released + Sent("FTM_EGPRS_START_MODE_REQ") + kIdle),
        Sequence({}, Start, "true GE 13/260, 13/6, 13/0",
                 kStart + released + Sent("FTM_GSM_STOP_MODE_REQ") + kStarted),
        Sequence({}, Bcch, "true G 13/1 02 01 03, 13/2", "START_IDLE_MODE_CNF ) = PASS"),
    };
    Check(sequences);
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
