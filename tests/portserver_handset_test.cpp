// A simulated handset behind a port server: file transfers in both directions, and the radio tests.
#include "fake_port_server.h"
#include "handset/state.h"
#include "handset_line.h"
#include "phone_fixture.h"
#include "portserver/qpst_server.h"

namespace {

using handset::TestMode;

class HandsetThroughServer : public testing::Test {
protected:
    static constexpr DWORD kLong_ms = 20000;

    HandsetThroughServer() {
        m_program.exchange = [this](const Bytes& request, DWORD iTimeOut_ms, Bytes& response) {
            return m_line.Exchange(request, std::chrono::milliseconds(iTimeOut_ms), response);
        };
        m_server.connect(1, kLong_ms);
        for (const auto eTimeOut : {QMSL_TimeOut_PhoneCheck, QMSL_TimeOut_StatisticsWait})
            m_diag.ConfigureTimeOut(eTimeOut, kLong_ms);
        EXPECT_TRUE(m_diag.IsPhoneConnected());
    }

    PluggedPhone m_phone;
    FakeProgram m_program;
    HandsetLine m_line{m_phone.phone.TtyPath(),
                       [this](Bytes packet) { m_program.pPacketEvents->packetReceived(packet); }};
    QpstServer m_server{"test"};
    Diag_FTM m_diag{&m_server, 1};
};

unsigned char KeepEntry(char* const sName, unsigned char isFile, unsigned short, unsigned char, unsigned char,
                        DWORD, DWORD iSize, void* pEntries) {
    static_cast<Lines*>(pEntries)->push_back(sName + (" " + std::to_string(isFile)) + " " +
                                             std::to_string(iSize));
    return 0;
}

TEST_F(HandsetThroughServer, FoldersAndFiles) {
    const LocalFolder local;
    const Bytes content = Pattern(5000);
    Lines entries;
    m_diag.ConfigureEfsCallbacks(&entries, nullptr, KeepEntry);
    m_phone.AddFile("/d/down", content);
    m_phone.AddFolder("/d/sub");
    EXPECT_TRUE(m_diag.EFS2_DIAG_READ_FILE(local.Path("down").c_str(), "/d/down"));
    EXPECT_EQ(local.Read("down"), content);
    EXPECT_TRUE(m_diag.EFS2_DIAG_WRITE_FILE(local.Write("up", Pattern(777)).c_str(), "/d/up"));
    EXPECT_EQ(m_phone.Content("/d/up"), Pattern(777));
    EXPECT_TRUE(m_diag.EFS2_DIAG_ENUM_DIR("/d"));
    EXPECT_EQ(entries, (Lines{"/d/down 1 5000", "/d/sub 0 0", "/d/up 1 777"}));
    EXPECT_EQ(m_phone.OpenCount(), 0U);
}

TEST_F(HandsetThroughServer, SessionOfEachRadioTest) {
    constexpr FTM_GSM_BER_LoopbackType_Enum kLoopback{9};
    constexpr FTM_GSM_BER_Channel_Modes_Enum kChannelMode{6};
    Diag_FTM& diag = m_diag;
    // Each step, and the test and stage that the phone is in afterwards (see handset/radio_tests.cpp).
    const std::tuple<const char*, TestMode, int, std::function<bool()>> steps[] = {
        {"GSM", TestMode::Gsm, 1, [&] { return diag.FTM_GSM_BER_StartSession(kLong_ms); }},
        {"BCCH", TestMode::Gsm, 3, [&] { return diag.FTM_GSM_BER_AssignBCCH(0x102, 3); }},
        {"traffic", TestMode::Gsm, 4,
         [&] { return diag.FTM_GSM_BER_AssignTraffic(kLoopback, 5, kChannelMode); }},
        {"EGPRS", TestMode::Gsm, 5, [&] { return diag.FTM_EGPRS_BER_AssignBCCH(0x102, 3); }},
        {"bearer", TestMode::Gsm, 5, [&] { return diag.FTM_EGPRS_BER_Establish_SRB_LOOPBACK(); }},
        {"release", TestMode::Gsm, 5, [&] { return diag.FTM_EGPRS_BER_Release_All_TBF(); }},
        {"GSM stop", TestMode::None, 0, [&] { return diag.FTM_GSM_BER_StopSession(); }},
        {"WCDMA", TestMode::Wcdma, 2, [&] { return diag.FTM_WCDMA_BER_StartSession(kLong_ms); }},
        {"pilot", TestMode::Wcdma, 3, [&] { return diag.FTM_WCDMA_BER_AcquirePilot(0x2A3B); }},
        {"channel", TestMode::Wcdma, 4, [&] { return diag.FTM_WCDMA_BER_SetupDefaultRMC_DCH(); }},
        {"HSDPA", TestMode::Wcdma, 5, [&] { return diag.FTM_HSDPA_BER_StartSession(); }},
        {"change", TestMode::Wcdma, 5, [&] { return diag.FTM_HSDPA_BLER_Reconfigure_HS(9); }},
        {"HSDPA stop", TestMode::Wcdma, 4, [&] { return diag.FTM_HSDPA_BER_StopSession(); }},
        {"WCDMA stop", TestMode::None, 0, [&] { return diag.FTM_WCDMA_BER_StopSession(); }},
    };
    for (const auto& [sStep, eMode, iStage, step] : steps) {
        EXPECT_TRUE(step()) << sStep;
        m_phone.phone.WithState([&, eRuns = eMode, iReached = iStage](const handset::State& state) {
            EXPECT_EQ(state.radio.Running(), eRuns);
            EXPECT_EQ(state.radio.Stage(), iReached);
        });
    }
}

} // namespace
