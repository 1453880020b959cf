// The WCDMA and HSDPA test sessions against a phone that confirms, refuses, and keeps silent.
#include "radio_session_fixture.h"

namespace {

using Operation = bool (*)(Diag_FTM&);
const Operation GsmStart = [](Diag_FTM& d) { return d.FTM_GSM_BER_StartSession(0); };
const Operation Start = [](Diag_FTM& d) { return d.FTM_WCDMA_BER_StartSession(0); };
const Operation Acquire = [](Diag_FTM& d) { return d.FTM_WCDMA_BER_AcquirePilot(0x2A3B); };
const Operation SetUpChannel = [](Diag_FTM& d) { return d.FTM_WCDMA_BER_SetupDefaultRMC_DCH(); };
const Operation Handover = [](Diag_FTM& d) {
    return d.FTM_WCDMA_BER_Handover(1, 2, 3, 4, 5, 6, 7, 8, 9, 10);
};
const Operation HandoverV2B = [](Diag_FTM& d) {
    return d.FTM_WCDMA_BER_Handover_V2B(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
};
const Operation Stop = [](Diag_FTM& d) { return d.FTM_WCDMA_BER_StopSession(); };
const Operation HsStart = [](Diag_FTM& d) { return d.FTM_HSDPA_BER_StartSession(); };
const Operation HsStop = [](Diag_FTM& d) { return d.FTM_HSDPA_BER_StopSession(); };
const Operation Reconfigure = [](Diag_FTM& d) { return d.FTM_HSDPA_BLER_Reconfigure_HS(9); };

Lines Wcdma(const std::string& sRecord, bool bCame, const std::string& sLabel = "") {
    return Confirmed("WCDMA", sRecord, sLabel.empty() ? sRecord + " )" : sLabel, bCame);
}
Lines Started(bool bCame) {
    return Sent("FTM_WCDMA_START_MODE_REQ") +
           Wcdma("LOG_FTM2_WCDMA_START_MODE_CNF", bCame, "LOG_FTM2_WCDMA_START_MODE_CNF)");
}
Lines Stopped(bool bCame) {
    return Sent("FTM_WCDMA_STOP_MODE_REQ") + Wcdma("LOG_FTM2_WCDMA_STOP_MODE_CNF", bCame);
}
Lines Channel(bool bStands) {
    return Wcdma("LOG_FTM2_WCDMA_CPHY_SETUP_CNF", true) +
           Wcdma("LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND", bStands);
}
Lines HsStarted(bool bCame) {
    return Sent("FTM_HSDPA_BLER_CMD_START_HS") +
           Confirmed("HSDPA", "LOG_FTM2_HSDPA_HS_CHANNEL_START_IND", "LOG_FTM2_HSDPA_START_MODE_CNF)", bCame);
}
Lines HsStopped(bool bCame) {
    return Confirmed("HSDPA", "LOG_FTM2_HSDPA_HS_CHANNEL_STOP_IND", "LOG_FTM2_HSDPA_STOP_MODE_CNF )", bCame);
}
const Lines kStart = Cleared("QLIB_FTM_WCDMA_BER_StartSession", "WCDMA");
const Lines kIdle = Sent("FTM_WCDMA_START_IDLE_MODE_REQ") +
                    Wcdma("LOG_FTM2_WCDMA_START_IDLE_MODE_REQ", true, "LOG_FTM2_START_IDLE_MODE_CNF )");
const Lines kAcquire = Cleared("QLIB_FTM_WCDMA_BER_AcquirePilot", "WCDMA");
const Lines kHsStart = Cleared("QLIB_FTM_HSDPA_BER_StartSession", "HSDPA");
const Lines kHsStop = Sent("FTM_HSDPA_BLER_CMD_STOP_HS");

class WcdmaWithoutSession : public RadioSessionTest {
    void Begin() override {}
};

TEST_F(WcdmaWithoutSession, StartsOrRefuses) {
    const TestOutcome confirmed = Says({"00"});
    const std::vector<Sequence> sequences = {
        Sequence({}, Start, "true W 16/0, 16/2", kStart + Started(true) + kIdle),
        Sequence(Refuse(0), Start, "false - 16/0", "WCDMA_START_MODE_REQ = PASS, status = 5"),

        // Neither start nor stop confirmed.
        Sequence({{0, {Silent(), Silent()}}, {1, {Silent(), Silent()}}}, Start,
                 "false - 16/0, 16/1, 16/0, 16/1",
                 kStart + Started(false) + Stopped(false) + Started(false) + Stopped(false)),

        // Second start confirmed.
        Sequence({{0, {Silent(), confirmed}}, {1, {Silent()}}}, Start, "true W 16/0, 16/1, 16/0, 16/2",
                 kStart + Started(false) + Stopped(false) + Started(true) + kIdle),

        // Stop confirmed instead.
        Sequence({{0, {Silent()}}, {2, {Says({"02"})}}}, Start, "true W 16/0, 16/1, 16/2",
                 kStart + Started(false) + Stopped(true) + kIdle),

        // Stop refused.
        Sequence({{0, {Silent()}}, {1, {Refused()}}}, Start, "false - 16/0, 16/1",
                 "WCDMA_STOP_MODE_REQ = PASS, status = 5"),
        Sequence(Refuse(2), Start, "false - 16/0, 16/2", "WCDMA_START_IDLE_MODE_REQ = PASS, status = 5"),
        Sequence(Silence(2), Start, "false - 16/0, 16/2", "START_IDLE_MODE_CNF ) = FAIL"),
        Sequence({}, Acquire, "false -", "QLIB_FTM_WCDMA_BER_AcquirePilot -- Error, session is not started"),
        Sequence({}, SetUpChannel, "false -",
                 "QLIB_FTM_WCDMA_BER_SetupRMC_DCH -- Error, session is not started"),
        Sequence({}, Handover, "false -", "QLIB_FTM_WCDMA_BER_Handover -- Error, session is not started"),
        Sequence({}, HandoverV2B, "false -",
                 "QLIB_FTM_WCDMA_BER_Handover_V2B -- Error, session is not started"),
        Sequence({}, Stop, "false - 16/1", "DIAG_SetPhoneLoggingState = FAIL"),
        Sequence({}, HsStart, "false -",
                 "QLIB_FTM_HSDPA_BER_StartSession -- Error, WCDMA BER session is not active"),
        Sequence({}, Reconfigure, "false -",
                 "QLIB_FTM_HSDPA_BLER_Reconfigure_HS -- Error, session is not started"),
    };
    Check(sequences);
}

TEST_F(WcdmaWithoutSession, OneTechnologyStopsTheOther) {
    EXPECT_TRUE(GsmStart(m_diag));
    m_phone.phone.ClearRequests();
    m_log.Clear();
    EXPECT_TRUE(Start(m_diag));
    EXPECT_EQ(TestRequests(), " 13/6, 16/0, 16/2");
    EXPECT_EQ(SessionLines(), kStart + Sent("FTM_GSM_STOP_MODE_REQ") + Started(true) + kIdle);
    m_phone.phone.ClearRequests();
    EXPECT_FALSE(GsmStart(m_diag)); // the phone has no GSM session any more, and says so
    EXPECT_EQ(TestRequests(), " 16/1, 13/6");
    EXPECT_EQ(Active(), "GW");
    m_diag.OpenPort();
    EXPECT_EQ(Active(), "");
}

class WcdmaStarted : public RadioSessionTest {
    void Begin() override { EXPECT_TRUE(Start(m_diag)); }
};

TEST_F(WcdmaStarted, PilotAndStop) {
    const std::string acquire = "16/2, 16/3 00 01 3B 2A 00 00 00 00 00 00";
    const std::vector<Sequence> sequences = {
        Sequence({}, Acquire, "true W " + acquire,
                 kAcquire + kIdle + Sent("FTM_WCDMA_ACQUIRE_REQ") +
                     Wcdma("LOG_FTM2_WCDMA_ACQUIRE_CNF ", true, "LOG_FTM2_WCDMA_ACQUIRE_CNF )")),

        // No pilot.
        Sequence(Say(3, {"03 00 00 00 00"}), Acquire, "false W " + acquire, "ACQUIRE_CNF ) = FAIL"),

        Sequence(Refuse(3), Acquire, "false W " + acquire, "WCDMA_ACQUIRE_REQ = PASS, status = 5"),
        Sequence(Silence(2), Acquire, "false W 16/2", "START_IDLE_MODE_CNF ) = FAIL"),
        Sequence({}, Start, "true W 16/1, 16/0, 16/2",
                 kStart + Sent("FTM_WCDMA_STOP_MODE_REQ") + Started(true) + kIdle),
        Sequence({}, Stop, "true - 16/1",
                 Sent("> FTM_WCDMA_STOP_MODE_REQ") + Wcdma("LOG_FTM2_WCDMA_STOP_MODE_CNF", true) +
                     Lines{"DIAG_SetPhoneLoggingState = PASS"}),
        Sequence(Silence(1), Stop, "false - 16/1", "DIAG_SetPhoneLoggingState = FAIL"),
    };
    Check(sequences);
}

class WcdmaChannel : public RadioSessionTest {
    void Begin() override { EXPECT_TRUE(Start(m_diag) && Acquire(m_diag) && SetUpChannel(m_diag)); }
};

TEST_F(WcdmaChannel, SetUpAndHandover) {
    const std::string sRmc = " 01 02 03 00 00 00 04 05 06 00 07 00";
    const Lines setUp = Sent("FTM_WCDMA_RMC_DCH_SETUP_REQ");
    const std::string request = "16/4 00 18 00 00 00 00 00 00 00 00 03 00";
    const Lines moving = {"> QLIB_FTM_WCDMA_BER_Handover"};
    const std::vector<Sequence> sequences = {
        Sequence({}, SetUpChannel, "true W " + request, setUp + Channel(true)),

        // Out of order.
        Sequence(Say(4, {"05 01", "04 01"}), SetUpChannel, "true W " + request, setUp + Channel(true)),
        Sequence({}, Handover, "true W 16/5" + sRmc + " 08 09 C4 FF 00 04 00 01 03 0A 00",
                 moving + Sent("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2") + Channel(true)),

        // Handover, no channel.
        Sequence(Say(5, {"04 00", "05 01"}), Handover,
                 "false W 16/5" + sRmc + " 08 09 C4 FF 00 04 00 01 03 0A 00", "CPHY_SETUP_CNF ) = FAIL"),

        // Handover V2B, channel does not stand.
        Sequence(Say(5, {"04 01", "05 00"}), HandoverV2B,
                 "false W 16/5" + sRmc + " 08 09 0A 00 0B 0C 0D 0E 0F 10 00",
                 Cleared("QLIB_FTM_WCDMA_BER_Handover_V2B", "WCDMA") +
                     Sent("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B") + Channel(false)),
        Sequence(Refuse(5), Handover, "false W 16/5" + sRmc + " 08 09 C4 FF 00 04 00 01 03 0A 00",
                 "WCDMA_RMC_DCH_SETUP_REQ_V2 = PASS, status = 5"),
    };
    Check(sequences);
}

TEST_F(WcdmaChannel, HighSpeedStarts) {
    const TestOutcome confirmed = Says({"40 00"}); // whatever its status
    const TestOutcome stopConfirmed = Says({"41 01"});
    const Lines once = kHsStart + HsStarted(false) + kHsStop;
    const std::vector<Sequence> sequences = {
        Sequence({}, HsStart, "true WH 16/256", kHsStart + HsStarted(true)),
        Sequence(Refuse(256), HsStart, "false W 16/256", "HSDPA_BLER_CMD_START_HS = PASS, status = 5"),

        // Confirmed at the second attempt.
        Sequence({{256, {Silent(), confirmed}}, {257, {stopConfirmed}}}, HsStart,
                 "true WH 16/256, 16/257, 16/256", once + HsStopped(true) + HsStarted(true)),

        // Never confirmed.
        Sequence({{256, {Silent(), Silent()}}, {257, {stopConfirmed, stopConfirmed}}}, HsStart,
                 "false W 16/256, 16/257, 16/256, 16/257",
                 once + HsStopped(true) + HsStarted(false) + kHsStop + HsStopped(true)),

        // First start confirmed too late.
        Sequence({{256, {Silent(), Silent()}}, {257, {Says({"40 01", "41 01"}), Silent()}}}, HsStart,
                 "false W 16/256, 16/257, 16/256, 16/257", "STOP_MODE_CNF ) = FAIL"),

        // Stop not confirmed.
        Sequence({{256, {Silent()}}, {257, {Silent()}}}, HsStart, "false W 16/256, 16/257",
                 "STOP_MODE_CNF ) = FAIL"),

        // Stop refused.
        Sequence({{256, {Silent()}}, {257, {Refused()}}}, HsStart, "false W 16/256, 16/257",
                 "HSDPA_BLER_CMD_STOP_HS = PASS, status = 5"),
    };
    Check(sequences);
}

class Hsdpa : public RadioSessionTest {
    void Begin() override {
        EXPECT_TRUE(Start(m_diag) && Acquire(m_diag) && SetUpChannel(m_diag) && HsStart(m_diag));
    }
};

TEST_F(Hsdpa, Session) {
    const Lines reconfigured =
        Cleared("QLIB_FTM_HSDPA_BLER_Reconfigure_HS( iReconfigBitmask = 9 )", "HSDPA") +
        Sent("FTM_HSDPA_BLER_CMD_RECONFIG_HS") +
        Confirmed("HSDPA", "LOG_FTM2_HSDPA_HS_CHANNEL_RECFG_IND", "LOG_FTM2_HSDPA_FTM_CMD_RECONFIG_HS )",
                  true);
    const std::vector<Sequence> sequences = {
        Sequence({}, Reconfigure, "true WH 16/258 09", reconfigured),
        Sequence(Silence(258), Reconfigure, "false WH 16/258 09", "RECONFIG_HS ) = FAIL"),
        Sequence(Refuse(258), Reconfigure, "false WH 16/258 09",
                 "HSDPA_BLER_CMD_RECONFIG_HS = PASS, status = 5"),
        Sequence({}, HsStart, "true WH 16/257, 16/256", kHsStart + kHsStop + HsStarted(true)),
        Sequence({}, HsStop, "true W 16/257", Sent("> FTM_HSDPA_STOP_MODE_REQ") + HsStopped(true)),
        Sequence(Silence(257), HsStop, "false W 16/257", "STOP_MODE_CNF ) = FAIL"),
        Sequence(Refuse(257), HsStop, "false W 16/257", "HSDPA_STOP_MODE_REQ = PASS, status = 5"),
    };
    Check(sequences);
}

TEST_F(Hsdpa, UnknownRecordIsNotWaitedFor) {
    HsdpaTestSession& session = m_diag;
    m_log.Clear();
    EXPECT_FALSE(session.WaitForHSDPA_BER_Update(log_FTM2_HSDPA_BER_log_id_enum{67}));
    EXPECT_FALSE(session.WaitForHSDPA_BER_Update(log_FTM2_HSDPA_BER_log_id_enum{-1}));
    EXPECT_TRUE(m_log.Lines().empty());
}

} // namespace
