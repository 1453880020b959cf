// Answers in two stages, and the greeting of download mode.
#include <algorithm>
#include <atomic>
#include <optional>

#include "diag_fixture.h"

namespace {

using std::chrono::milliseconds;
using Plan = std::vector<handset::DelayedResponse>;

const Call Backup = [](Diag_FTM& diag) { return Outcome(diag.DIAG_NV_CNV_DIAG_BACKUP_F()); };
const Call GpsParams = [](Diag_FTM& diag) {
    return Outcome(diag.GPS_SET_TEST_MODE_PARAMS(5, 6, 7, 8, 9, 1, 2, 3, 4));
};
const Call Capture = [](Diag_FTM& diag) {
    return Outcome(diag.HS_DISPLAY_CAPTURE_DELAYED_CMD(1, 2, 3, 4, 0x506, "s.bmp"));
};
const Call Ping = [](Diag_FTM& diag) { return Outcome(diag.DOWNLOAD_Ping()); };

const std::string kGreeting =
    "01 51 43 4F 4D 20 46 61 73 74 20 64 6F 77 6E 6C 6F 61 64 20 70 72 6F 74 6F 63 6F "
    "6C 20 68 6F 73 74 ";

const std::string kSend = "QLIB_SendDiag2WithMultipleResponse()";

class DiagDelayed : public DiagTest {
protected:
    void SetPlan(const Plan& plan, uint32_t iAnnouncedStatus = 0) {
        m_phone.phone.WithState([&](handset::State& state) {
            state.delayed.plan = plan;
            state.delayed.announcedStatus = iAnnouncedStatus;
        });
    }
    /// Counts every packet that arrives, in `count`.
    void CountArrivals(std::atomic<size_t>& count) {
        m_diag.ConfigureAsyncMessageCallBack(&count, [](unsigned short, unsigned char*, void* pCount) {
            ++*static_cast<std::atomic<size_t>*>(pCount);
        });
    }
    /// The accepted responses, without FCS.
    Lines Accepted() {
        Lines texts;
        QueueItem item;
        while (static_cast<DiagConnection&>(m_diag).DelayedResponseQueue().Pop(&item))
            texts.push_back(handset::ToHex({item.data, item.data + item.length - 2}));
        return texts;
    }
};

TEST_F(DiagDelayed, RequestsAnswersAndLog) {
    const Lines waited = {kSend + "--send successful", kSend + "-delayed response detected",
                          kSend + "--delayed response check match"};
    const auto check = [&](Call call, const char* sRequest, const Lines& operation, const char* sStatus) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        EXPECT_EQ(call(m_diag), "true");
        EXPECT_EQ(m_phone.Requests(), Lines{sRequest});
        EXPECT_EQ(m_log.Of(LOG_FN), operation);
        Lines result = waited;
        result.push_back(kSend + sStatus);
        EXPECT_EQ(m_log.Of(LOG_RET), result);
    };
    check(Backup, "80 37 00 00", {"QLIB_DIAG_NV_CNV_DIAG_BACKUP_F()", kSend},
          "-- Status: 0, RespID: 1, Count: 1 ");
    EXPECT_EQ(Accepted(), Lines{"80 37 00 00 00 00 00 00 01 00 01 00"});
    check(GpsParams, "4B 0D 12 00 05 06 07 08 09 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 04 00 00 00",
          {"QLIB_DIAG_GPS_COLD_START()", kSend}, "-- Status: 0, RespID: 2, Count: 1 ");
    check(Capture, "80 10 02 00 01 02 00 03 00 04 00 06 05 73 2E 62 6D 70 00",
          {"QLIB_HS_DISPLAY_CAPTURE_DELAYED_CMD( ) -- NOT IMPLEMENTED!!!",
           "QLIB_HS_DISPLAY_CAPTURE_DELAYED_CMD( iDisplayID = 1, iStartingRow = 2, iStartingCol = 3, "
           "iHeight = 4, iWidth = 1286, sFileName = s.bmp)",
           kSend},
          "-- Status: 0, RespID: 3, Count: 1 ");
    EXPECT_EQ(Accepted(), Lines{"80 10 02 00 00 00 00 00 03 00 01 00"}); // the former commands' is gone
}

TEST_F(DiagDelayed, FirstAnswersThatAnnounceNothing) {
    for (const char* sAnswer : {
             "80", "80 37 00 00 00 00 00 00 05 00 00", // too short
             "80 37 00 00 00 00 00 00 00 00 00 00",    // no id
             "80 37 00 00 00 00 00 00 05 00 01 00",    // a count
             "80 37 00 00 01 00 00 00 05 00 00 00",    // an error
             "80 37 00 00 00 00 00 00 00 00 01 00",    // a count alone
         })
        EXPECT_EQ(Answered(Backup, Hex(sAnswer)), "false") << sAnswer;
    EXPECT_FALSE(m_log.Has(LOG_RET, kSend + "--send successful"));
    EXPECT_EQ(Unanswered(Backup), "false");
    m_phone.phone.ClearRequests();
    EXPECT_FALSE(m_diag.HS_DISPLAY_CAPTURE_DELAYED_CMD(1, 2, 3, 4, 5, std::string(4090, 'n').c_str()));
    EXPECT_TRUE(m_phone.Requests().empty());
}

TEST_F(DiagDelayed, OnlyTheAwaitedResponseCounts) {
    const handset::DelayedResponse good{.after = milliseconds(20), .data = {0x77}};
    const struct {
        const char* sName;
        Plan plan;
        std::optional<int> seen; // how many responses are looked at; nothing: the wait ends without one
    } cases[] = {
        {"late", {{.after = milliseconds(150), .data = {0x77}}}, 1},
        {"twice", {good, good}, 1},
        {"after another id", {{.idOffset = 1}, good}, 2},
        {"after an error", {{.status = 3}, good}, 2},
        {"none", {}, {}},
        {"another id alone", {{.idOffset = 9}}, {}},
        {"an error alone", {{.status = 9}}, {}},
    };
    std::atomic<size_t> iArrived{0};
    CountArrivals(iArrived);
    for (const auto& c : cases) {
        SetPlan(c.plan);
        iArrived = 0;
        m_diag.ConfigureTimeOut(QMSL_TimeOut_MultipleResponse, c.seen ? 60000 : 60);
        m_log.Clear();
        EXPECT_EQ(Backup(m_diag), c.seen ? "true" : "false") << c.sName;
        // What comes later than its command would be taken for the first answer to the next one.
        ASSERT_TRUE(Eventually([&] { return iArrived == 1 + c.plan.size(); })) << c.sName;
        const Lines accepted = Accepted();
        ASSERT_EQ(accepted.size(), c.seen ? 1u : 0u) << c.sName;
        EXPECT_EQ(m_log.Has(LOG_RET, kSend + "--exit after 0 response messages received"), !c.seen)
            << c.sName;
        if (!c.seen)
            continue;
        EXPECT_TRUE(accepted[0].ends_with("77")) << c.sName;
        const Lines lines = m_log.Of(LOG_RET);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), kSend + "-delayed response detected"), *c.seen)
            << c.sName;
    }
    SetPlan({}, 7);
    EXPECT_EQ(Backup(m_diag), "false");
    m_diag.ConfigureAsyncMessageCallBack(nullptr, nullptr);
}

TEST_F(DiagDelayed, ResponsesThatEndTooSoonAreDropped) {
    m_phone.phone.Script(
        Hex("80"), {Hex("80 37 00 00 00 00 00 00 05 00 00 00"), Hex("80 37 00 00 00"),
                    Hex("80 37 00 00 00 00 00 00 05 00 01"), Hex("80 37 00 00 00 00 00 00 05 00 01 00")});
    EXPECT_EQ(Backup(m_diag), "true");
    EXPECT_EQ(Accepted(), Lines{"80 37 00 00 00 00 00 00 05 00 01 00"});
}

TEST_F(DiagDelayed, SeveralResponses) {
    SetPlan({{}, {.status = 1}, {}});
    const auto send = [this](int iResponses) {
        auto& frame = static_cast<CommandFrame&>(m_diag);
        frame.BeginRequest().U8(0x80).U8(0x37).U16(0);
        return static_cast<DelayedResponses&>(m_diag).SendDiag2WithMultipleResponse(iResponses, 0);
    };
    EXPECT_TRUE(send(2));
    EXPECT_EQ(Accepted().size(), 2u);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_MultipleResponse, 500);
    EXPECT_FALSE(send(3));
    EXPECT_EQ(Accepted().size(), 2u);
    EXPECT_TRUE(m_log.Has(LOG_RET, kSend + "--exit after 2 response messages received"));
}

TEST_F(DiagDelayed, DownloadModeIsGreeted) {
    unsigned char aResponse[4096] = {0xEE, 0xEE};
    m_phone.phone.Script(Hex("06"), {Hex("06 55")});
    EXPECT_TRUE(m_diag.DOWNLOAD_Hello(7, 8, 9, aResponse));
    EXPECT_EQ(m_phone.Requests(), (Lines{kGreeting + "07 08 09", "06"}));
    EXPECT_EQ(Bytes(aResponse, aResponse + 2), Hex("06 55"));
    EXPECT_TRUE(m_log.Has(
        LOG_FN, "QLIB_DOWNLOAD_Hello( iVersionNumber = 7, iCompatibleVersion = 8, iFeatureBits = 9 )"));
    m_phone.phone.ClearRequests();
    EXPECT_EQ(Ping(m_diag), "true");
    EXPECT_EQ(m_phone.Requests().at(0), kGreeting + "03 02 01");

    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 300);
    m_phone.Answer("06", Hex("13 06")); // the greeting alone decides
    aResponse[0] = 0xEE;
    EXPECT_TRUE(m_diag.DOWNLOAD_Hello(3, 2, 1, aResponse));
    EXPECT_EQ(aResponse[0], 0xEE);
    m_phone.Answer("01", Hex("01 00"));
    EXPECT_EQ(Ping(m_diag), "false");
}

} // namespace
