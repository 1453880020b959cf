// The WCDMA and HSDPA test sessions against a phone that confirms, refuses, and keeps silent.
#include "radio_session_fixture.h"

namespace {

constexpr TestMode kWcdma = TestMode::Wcdma;

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

Lines Sent(const std::string& sRequest, int iStatus = 0, const char* sKind = "") {
    return {sKind + sRequest + " = PASS, status = " + std::to_string(iStatus)};
}
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
Lines Idle(bool bCame) {
    return Sent("FTM_WCDMA_START_IDLE_MODE_REQ") +
           Wcdma("LOG_FTM2_WCDMA_START_IDLE_MODE_REQ", bCame, "LOG_FTM2_START_IDLE_MODE_CNF )");
}
Lines Acquired(bool bCame) {
    return Sent("FTM_WCDMA_ACQUIRE_REQ") +
           Wcdma("LOG_FTM2_WCDMA_ACQUIRE_CNF ", bCame, "LOG_FTM2_WCDMA_ACQUIRE_CNF )");
}
Lines Channel(bool bSetUp, bool bStands) {
    const Lines setUp = Wcdma("LOG_FTM2_WCDMA_CPHY_SETUP_CNF", bSetUp);
    return bSetUp ? setUp + Wcdma("LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND", bStands) : setUp;
}
Lines HsStarted(bool bCame) {
    return Sent("FTM_HSDPA_BLER_CMD_START_HS") +
           Confirmed("HSDPA", "LOG_FTM2_HSDPA_HS_CHANNEL_START_IND", "LOG_FTM2_HSDPA_START_MODE_CNF)", bCame);
}
Lines HsStopped(bool bCame) {
    return Confirmed("HSDPA", "LOG_FTM2_HSDPA_HS_CHANNEL_STOP_IND", "LOG_FTM2_HSDPA_STOP_MODE_CNF )", bCame);
}
const Lines kStart = {"> QLIB_FTM_WCDMA_BER_StartSession", "FTM_WCDMA_BER_ClearStatus = PASS"};
const Lines kAcquire = {"> QLIB_FTM_WCDMA_BER_AcquirePilot", "FTM_WCDMA_BER_ClearStatus = PASS"};
const Lines kHsStart = {"> QLIB_FTM_HSDPA_BER_StartSession", "FTM_HSDPA_BER_ClearStatus = PASS"};
const Lines kHsStop = Sent("FTM_HSDPA_BLER_CMD_STOP_HS");

class WcdmaWithoutSession : public RadioSessionTest {
    void Begin() override {}
};

TEST_F(WcdmaWithoutSession, StartsOrRefuses) {
    const std::string sError = " -- Error, session is not started";
    const TestOutcome confirmed = Says({"00"});
    Check(
        {Sequence("start", {}, Start, true, {"16/0", "16/2"}, "W", kStart + Started(true) + Idle(true)),
         Sequence("start refused", {{kWcdma, 0, {Refused()}}}, Start, false, {"16/0"}, "",
                  kStart + Sent("FTM_WCDMA_START_MODE_REQ", 5)),
         Sequence("neither start nor stop confirmed",
                  {{kWcdma, 0, {Silent(), Silent()}}, {kWcdma, 1, {Silent(), Silent()}}}, Start, false,
                  {"16/0", "16/1", "16/0", "16/1"}, "",
                  kStart + Started(false) + Stopped(false) + Started(false) + Stopped(false)),
         Sequence("second start confirmed", {{kWcdma, 0, {Silent(), confirmed}}, {kWcdma, 1, {Silent()}}},
                  Start, true, {"16/0", "16/1", "16/0", "16/2"}, "W",
                  kStart + Started(false) + Stopped(false) + Started(true) + Idle(true)),
         Sequence("stop confirmed instead", {{kWcdma, 0, {Silent()}}, {kWcdma, 2, {Says({"02"})}}}, Start,
                  true, {"16/0", "16/1", "16/2"}, "W", kStart + Started(false) + Stopped(true) + Idle(true)),
         Sequence("stop refused", {{kWcdma, 0, {Silent()}}, {kWcdma, 1, {Refused()}}}, Start, false,
                  {"16/0", "16/1"}, "", kStart + Started(false) + Sent("FTM_WCDMA_STOP_MODE_REQ", 5)),
         Sequence("idle mode refused", {{kWcdma, 2, {Refused()}}}, Start, false, {"16/0", "16/2"}, "",
                  kStart + Started(true) + Sent("FTM_WCDMA_START_IDLE_MODE_REQ", 5)),
         Sequence("idle mode not confirmed", {{kWcdma, 2, {Silent()}}}, Start, false, {"16/0", "16/2"}, "",
                  kStart + Started(true) + Idle(false)),
         Sequence("pilot", {}, Acquire, false, {}, "",
                  kAcquire + Lines{"QLIB_FTM_WCDMA_BER_AcquirePilot" + sError}),
         Sequence("channel", {}, SetUpChannel, false, {}, "", {"QLIB_FTM_WCDMA_BER_SetupRMC_DCH" + sError}),
         Sequence("handover", {}, Handover, false, {}, "",
                  {"> QLIB_FTM_WCDMA_BER_Handover", "QLIB_FTM_WCDMA_BER_Handover" + sError}),
         Sequence("handover V2B", {}, HandoverV2B, false, {}, "",
                  {"> QLIB_FTM_WCDMA_BER_Handover_V2B", "FTM_WCDMA_BER_ClearStatus = PASS",
                   "QLIB_FTM_WCDMA_BER_Handover_V2B" + sError}),
         Sequence("stop", {}, Stop, false, {"16/1"}, "",
                  Sent("FTM_WCDMA_STOP_MODE_REQ", 1, "> ") + Lines{"DIAG_SetPhoneLoggingState = FAIL"}),
         Sequence(
             "high speed", {}, HsStart, false, {}, "",
             kHsStart + Lines{"QLIB_FTM_HSDPA_BER_StartSession -- Error, WCDMA BER session is not active"}),
         Sequence("reconfiguration", {}, Reconfigure, false, {}, "",
                  {"> QLIB_FTM_HSDPA_BLER_Reconfigure_HS( iReconfigBitmask = 9 )",
                   "FTM_HSDPA_BER_ClearStatus = PASS", "QLIB_FTM_HSDPA_BLER_Reconfigure_HS" + sError})});
}

TEST_F(WcdmaWithoutSession, OneTechnologyStopsTheOther) {
    EXPECT_TRUE(GsmStart(m_diag));
    m_phone.phone.ClearRequests();
    m_log.Clear();
    EXPECT_TRUE(Start(m_diag));
    EXPECT_EQ(TestRequests(), (Lines{"13/6", "16/0", "16/2"}));
    EXPECT_EQ(SessionLines(), kStart + Sent("FTM_GSM_STOP_MODE_REQ") + Started(true) + Idle(true));
    m_phone.phone.ClearRequests();
    EXPECT_FALSE(GsmStart(m_diag)); // the phone has no GSM session any more, and says so
    EXPECT_EQ(TestRequests(), (Lines{"16/1", "13/6"}));
    EXPECT_EQ(Active(), "GW");
    m_diag.OpenPort();
    EXPECT_EQ(Active(), "");
}

class WcdmaStarted : public RadioSessionTest {
    void Begin() override { EXPECT_TRUE(Start(m_diag)); }
};

TEST_F(WcdmaStarted, PilotAndStop) {
    const Lines acquire = {"16/2", "16/3 00 01 3B 2A 00 00 00 00 00 00"};
    const Lines stop = Sent("FTM_WCDMA_STOP_MODE_REQ", 0, "> ");
    Check({Sequence("pilot", {}, Acquire, true, acquire, "W", kAcquire + Idle(true) + Acquired(true)),
           Sequence("no pilot", {{kWcdma, 3, {Says({"03 00 00 00 00"})}}}, Acquire, false, acquire, "W",
                    kAcquire + Idle(true) + Acquired(false)),
           Sequence("cut record", {{kWcdma, 3, {Says({"03 01 00 00"})}}}, Acquire, false, acquire, "W",
                    kAcquire + Idle(true) + Acquired(false)),
           Sequence("pilot refused", {{kWcdma, 3, {Refused()}}}, Acquire, false, acquire, "W",
                    kAcquire + Idle(true) + Sent("FTM_WCDMA_ACQUIRE_REQ", 5)),
           Sequence("idle mode not confirmed", {{kWcdma, 2, {Silent()}}}, Acquire, false, {"16/2"}, "W",
                    kAcquire + Idle(false)),
           Sequence("start again", {}, Start, true, {"16/1", "16/0", "16/2"}, "W",
                    kStart + Sent("FTM_WCDMA_STOP_MODE_REQ") + Started(true) + Idle(true)),
           Sequence("stop", {}, Stop, true, {"16/1"}, "",
                    stop + Wcdma("LOG_FTM2_WCDMA_STOP_MODE_CNF", true) +
                        Lines{"DIAG_SetPhoneLoggingState = PASS"}),
           Sequence("stop not confirmed", {{kWcdma, 1, {Silent()}}}, Stop, false, {"16/1"}, "",
                    stop + Wcdma("LOG_FTM2_WCDMA_STOP_MODE_CNF", false) +
                        Lines{"DIAG_SetPhoneLoggingState = FAIL"})});
}

class WcdmaChannel : public RadioSessionTest {
    void Begin() override { EXPECT_TRUE(Start(m_diag) && Acquire(m_diag) && SetUpChannel(m_diag)); }
};

TEST_F(WcdmaChannel, SetUpAndHandover) {
    const std::string sRmc = " 01 02 03 00 00 00 04 05 06 00 07 00";
    const Lines setUp = Sent("FTM_WCDMA_RMC_DCH_SETUP_REQ");
    const Lines request = {"16/4 00 18 00 00 00 00 00 00 00 00 03 00"};
    const Lines moving = {"> QLIB_FTM_WCDMA_BER_Handover"};
    Check({Sequence("default", {}, SetUpChannel, true, request, "W", setUp + Channel(true, true)),
           Sequence("out of order", {{kWcdma, 4, {Says({"05 01", "04 01"})}}}, SetUpChannel, true, request,
                    "W", setUp + Channel(true, true)),
           Sequence("handover", {}, Handover, true, {"16/5" + sRmc + " 08 09 C4 FF 00 04 00 01 03 0A 00"},
                    "W", moving + Sent("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2") + Channel(true, true)),
           Sequence("handover, no channel", {{kWcdma, 5, {Says({"04 00", "05 01"})}}}, Handover, false,
                    {"16/5" + sRmc + " 08 09 C4 FF 00 04 00 01 03 0A 00"}, "W",
                    moving + Sent("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2") + Channel(false, false)),
           Sequence("handover V2B, channel does not stand", {{kWcdma, 5, {Says({"04 01", "05 00"})}}},
                    HandoverV2B, false, {"16/5" + sRmc + " 08 09 0A 00 0B 0C 0D 0E 0F 10 00"}, "W",
                    Lines{"> QLIB_FTM_WCDMA_BER_Handover_V2B", "FTM_WCDMA_BER_ClearStatus = PASS"} +
                        Sent("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B") + Channel(true, false)),
           Sequence("handover refused", {{kWcdma, 5, {Refused()}}}, Handover, false,
                    {"16/5" + sRmc + " 08 09 C4 FF 00 04 00 01 03 0A 00"}, "W",
                    moving + Sent("FTM_WCDMA_RMC_DCH_SETUP_REQ_V2", 5))});
}

TEST_F(WcdmaChannel, HighSpeedStarts) {
    const TestOutcome confirmed = Says({"40 00"}); // whatever its status
    const TestOutcome stopConfirmed = Says({"41 01"});
    const Lines once = kHsStart + HsStarted(false) + kHsStop;
    Check(
        {Sequence("start", {}, HsStart, true, {"16/256"}, "WH", kHsStart + HsStarted(true)),
         Sequence("refused", {{kWcdma, 256, {Refused()}}}, HsStart, false, {"16/256"}, "W",
                  kHsStart + Sent("FTM_HSDPA_BLER_CMD_START_HS", 5)),
         Sequence("confirmed at the second attempt",
                  {{kWcdma, 256, {Silent(), confirmed}}, {kWcdma, 257, {stopConfirmed}}}, HsStart, true,
                  {"16/256", "16/257", "16/256"}, "WH", once + HsStopped(true) + HsStarted(true)),
         Sequence("never confirmed",
                  {{kWcdma, 256, {Silent(), Silent()}}, {kWcdma, 257, {stopConfirmed, stopConfirmed}}},
                  HsStart, false, {"16/256", "16/257", "16/256", "16/257"}, "W",
                  once + HsStopped(true) + HsStarted(false) + kHsStop + HsStopped(true)),
         Sequence("first start confirmed too late",
                  {{kWcdma, 256, {Silent(), Silent()}}, {kWcdma, 257, {Says({"40 01", "41 01"}), Silent()}}},
                  HsStart, false, {"16/256", "16/257", "16/256", "16/257"}, "W",
                  once + HsStopped(true) + HsStarted(false) + kHsStop + HsStopped(false)),
         Sequence("stop not confirmed", {{kWcdma, 256, {Silent()}}, {kWcdma, 257, {Silent()}}}, HsStart,
                  false, {"16/256", "16/257"}, "W", once + HsStopped(false)),
         Sequence("stop refused", {{kWcdma, 256, {Silent()}}, {kWcdma, 257, {Refused()}}}, HsStart, false,
                  {"16/256", "16/257"}, "W",
                  kHsStart + HsStarted(false) + Sent("FTM_HSDPA_BLER_CMD_STOP_HS", 5))});
}

class Hsdpa : public RadioSessionTest {
    void Begin() override {
        EXPECT_TRUE(Start(m_diag) && Acquire(m_diag) && SetUpChannel(m_diag) && HsStart(m_diag));
    }
};

TEST_F(Hsdpa, Session) {
    const Lines reconfigure = {"> QLIB_FTM_HSDPA_BLER_Reconfigure_HS( iReconfigBitmask = 9 )",
                               "FTM_HSDPA_BER_ClearStatus = PASS"};
    const auto reconfigured = [&](bool bCame) {
        return reconfigure + Sent("FTM_HSDPA_BLER_CMD_RECONFIG_HS") +
               Confirmed("HSDPA", "LOG_FTM2_HSDPA_HS_CHANNEL_RECFG_IND",
                         "LOG_FTM2_HSDPA_FTM_CMD_RECONFIG_HS )", bCame);
    };
    Check({Sequence("reconfigure", {}, Reconfigure, true, {"16/258 09"}, "WH", reconfigured(true)),
           Sequence("reconfiguration not confirmed", {{kWcdma, 258, {Silent()}}}, Reconfigure, false,
                    {"16/258 09"}, "WH", reconfigured(false)),
           Sequence("reconfiguration refused", {{kWcdma, 258, {Refused()}}}, Reconfigure, false,
                    {"16/258 09"}, "WH", reconfigure + Sent("FTM_HSDPA_BLER_CMD_RECONFIG_HS", 5)),
           Sequence("start again", {}, HsStart, true, {"16/257", "16/256"}, "WH",
                    kHsStart + kHsStop + HsStarted(true)),
           Sequence("stop", {}, HsStop, true, {"16/257"}, "W",
                    Sent("FTM_HSDPA_STOP_MODE_REQ", 0, "> ") + HsStopped(true)),
           Sequence("stop not confirmed", {{kWcdma, 257, {Silent()}}}, HsStop, false, {"16/257"}, "W",
                    Sent("FTM_HSDPA_STOP_MODE_REQ", 0, "> ") + HsStopped(false)),
           Sequence("stop refused", {{kWcdma, 257, {Refused()}}}, HsStop, false, {"16/257"}, "W",
                    Sent("FTM_HSDPA_STOP_MODE_REQ", 5, "> "))});
}

TEST_F(Hsdpa, UnknownRecordIsNotWaitedFor) {
    HsdpaTestSession& session = m_diag;
    m_log.Clear();
    EXPECT_FALSE(session.WaitForHSDPA_BER_Update(log_FTM2_HSDPA_BER_log_id_enum{67}));
    EXPECT_FALSE(session.WaitForHSDPA_BER_Update(log_FTM2_HSDPA_BER_log_id_enum{-1}));
    EXPECT_TRUE(m_log.Lines().empty());
}

} // namespace
