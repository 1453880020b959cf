// Delayed responses, and the greeting of download mode.
#include "diag/command_frame.h"
#include "diag_fixture.h"

namespace {

const Call Backup = [](Diag_FTM& d) { return Outcome(d.DIAG_NV_CNV_DIAG_BACKUP_F()); };
const Call Gps = [](Diag_FTM& d) { return Outcome(d.GPS_SET_TEST_MODE_PARAMS(5, 6, 7, 8, 9, 1, 2, 3, 4)); };
const Call Capture = [](Diag_FTM& d) {
    return Outcome(d.HS_DISPLAY_CAPTURE_DELAYED_CMD(1, 2, 3, 4, 0x506, "s.bmp"));
};

const std::string kGreeting =
    "01 51 43 4F 4D 20 46 61 73 74 20 64 6F 77 6E 6C 6F 61 64 20 70 72 6F 74 6F 63 6F "
    "6C 20 68 6F 73 74 ";

class DiagDelayed : public DiagTest {
protected:
    /// The accepted responses, without FCS.
    Lines Accepted() {
        Lines texts;
        QueueItem item;
        while (ConnectionAccess(m_diag).DelayedResponseQueue().Pop(&item))
            texts.push_back(handset::ToHex({item.data, item.data + item.length - 2}));
        return texts;
    }
};

TEST_F(DiagDelayed, RequestsAndTheirResponses) {
    const std::pair<Call, const char*> cases[] = {
        {Backup, "80 37 00 00"},
        {Gps, "4B 0D 12 00 05 06 07 08 09 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 04 00 00 00"},
        {Capture, "80 10 02 00 01 02 00 03 00 04 00 06 05 73 2E 62 6D 70 00"},
    };
    for (const auto& [call, sRequest] : cases) {
        m_phone.phone.ClearRequests();
        EXPECT_EQ(call(m_diag), "true");
        EXPECT_EQ(m_phone.Requests(), Lines{sRequest});
    }
    EXPECT_EQ(Accepted(), Lines{"80 10 02 00 00 00 00 00 03 00 01 00"}); // of the last command alone
    EXPECT_FALSE(m_diag.HS_DISPLAY_CAPTURE_DELAYED_CMD(1, 2, 3, 4, 5, std::string(4090, 'n').c_str()));
}

TEST_F(DiagDelayed, FirstResponsesThatAnnounceNoDelayedResponse) {
    CheckAnswers({
        {Backup, "80 37 00 00 00 00 00 00 00 00 00 00", "false"}, // no id
        {Backup, "80 37 00 00 00 00 00 00 05 00 01 00", "false"}, // a response count of 1
        {Backup, "80 37 00 00 01 00 00 00 05 00 00 00", "false"}, // an error
    });
    EXPECT_EQ(Unanswered(Backup), "false");
}

TEST_F(DiagDelayed, OnlyTheExpectedResponseIsAccepted) {
    const std::string sAwaited = "80 37 00 00 00 00 00 00 05 00 01 00 77";
    m_phone.phone.Script(Hex("80"), {Hex("80 37 00 00 00 00 00 00 05 00 00 00"), // the first response
                                     Hex("80 37 00 00 00 00 00 00 05 00 01"),    // too short
                                     Hex("80 37 00 00 00 00 00 00 06 00 01 00"), // another id
                                     Hex("80 37 00 00 03 00 00 00 05 00 01 00"), // an error
                                     Hex(sAwaited)});
    EXPECT_EQ(Backup(m_diag), "true");
    EXPECT_EQ(Accepted(), Lines{sAwaited});
}

TEST_F(DiagDelayed, SeveralLateAndMissingResponses) {
    const auto check = [this](int iResponses, const std::vector<handset::DelayedResponse>& plan,
                              size_t iAccepted) {
        m_phone.phone.WithState([&](handset::State& state) { state.delayed.plan = plan; });
        CommandFrame frame(m_diag);
        frame.BeginRequest().U8(0x80).U8(0x37).U16(0);
        struct Family : DelayedResponses {
            using DelayedResponses::DelayedResponses;
            using DelayedResponses::SendDiag2WithMultipleResponse;
        } family(frame);
        EXPECT_EQ(family.SendDiag2WithMultipleResponse(iResponses, 0),
                  static_cast<size_t>(iResponses) == iAccepted);
        EXPECT_EQ(Accepted().size(), iAccepted);
    };
    check(2, {{}, {.status = 1}, {.after = std::chrono::milliseconds(150)}}, 2);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_MultipleResponse, 500);
    check(2, {{}}, 1);
    check(1, {}, 0);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_MultipleResponse, 60000);
    check(1, {{}, {}}, 1); // the last check, because its second response arrives later
}

TEST_F(DiagDelayed, GreetingOfDownloadMode) {
    const Call Hello = [](Diag_FTM& d, QueueItem answer = {0, {0xEE, 0xEE}}) {
        return Outcome(d.DOWNLOAD_Hello(7, 8, 9, answer.data), answer.data[0], answer.data[1]);
    };
    m_phone.Answer("06", Hex("06 55"));
    EXPECT_EQ(Hello(m_diag), "true 6 55");
    EXPECT_EQ(m_phone.Requests(), (Lines{kGreeting + "07 08 09", "06"}));
    m_phone.phone.ClearRequests();
    EXPECT_TRUE(m_diag.DOWNLOAD_Ping());
    EXPECT_EQ(m_phone.Requests().at(0), kGreeting + "03 02 01");

    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 300);
    m_phone.Answer("06", Hex("13 06")); // the result depends on the greeting alone
    EXPECT_EQ(Hello(m_diag), "true ee ee");
}

} // namespace
