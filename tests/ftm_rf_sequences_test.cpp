// Radio commands that need more than one request and its response: modes, lists, results at fixed offsets.
#include "ftm_rows.h"

namespace {

class FtmRfSequencesTest : public FtmRowsTest {
protected:
    /// Returns requests with that prefix unchanged.
    void Echo(const std::string& sPrefix) {
        m_phone.phone.Script(Hex(sPrefix), [](const Bytes& request) { return std::vector<Bytes>{request}; });
    }
    /// Returns the requests since the last call.
    Lines Sent() {
        const Lines requests = m_phone.Requests();
        m_phone.phone.ClearRequests();
        return requests;
    }
};

TEST_F(FtmRfSequencesTest, CommandTypeIsTheFirstOneAnswered) {
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 100);
    const Lines tries = {"4B 0B 00 00 00 00 01 00 00 00", "4B 0B 01 00 00 00 01 00 00 00",
                         "3B 77 00 06 00 00 00 01 00 00 00"};
    const struct {
        const char* sAnswered;
        FTM_Command_Type eResult;
        size_t iTries;
    } cases[] = {{"3C", FTM_COMMAND_UNKNOWN, 3},
                 {"3B", FTM_COMMAND_59, 3},
                 {"4B 0B 01", FTM_COMMAND_75, 2},
                 {"4B 0B 00", FTM_COMMAND_75, 1}};
    for (const auto& test : cases) {
        Echo(test.sAnswered);
        EXPECT_EQ(m_diag.AutoDetectCommandType(), test.eResult) << test.sAnswered;
        EXPECT_EQ(Sent(), std::vector(tries.begin(), tries.begin() + static_cast<long>(test.iTries)));
        EXPECT_EQ(m_diag.GetSystemMode(), test.iTries == 1 ? 0 : 1);
    }
}

TEST_F(FtmRfSequencesTest, RfModeDeterminesTheSystemMode) {
    Echo("4B");
    const struct {
        int iBefore;
        std::vector<int> rfModes;
        std::string sAfter;
    } cases[] = {{1, {3, 5, 6, 8, 14, 17, 26, 27}, "00"},
                 {3, {3, 27}, "03"},
                 {3, {9, 15, 16, 22, 23, 25, 28, 29}, "01"},
                 {1, {10, 11, 12, 18}, "02"},
                 {2, {30}, "13"},
                 {7, {0, 1, 2, 4, 7, 13, 19, 24, 31, -1}, ""}};
    for (const auto& [iBefore, rfModes, sAfter] : cases)
        for (const int iRfMode : rfModes) {
            m_diag.SetSystemMode(FTM_Mode_Id_Enum{iBefore});
            EXPECT_EQ(m_diag.FTM_SET_MODE(FTM_RF_Mode_Enum{iRfMode}), !sAfter.empty()) << iRfMode;
            EXPECT_EQ(m_diag.GetRfMode(), iRfMode);
            EXPECT_TRUE(!sAfter.empty() || m_diag.GetSystemMode() == iBefore);
            const std::string sMode = handset::ToHex({static_cast<uint8_t>(iRfMode)});
            EXPECT_EQ(Sent(),
                      sAfter.empty() ? Lines{} : Lines{"4B 0B " + sAfter + " 00 07 00 " + sMode + " 00"});
        }
}

TEST_F(FtmRfSequencesTest, DetectorTableIsCompleteOrUnchanged) {
    const Bytes before(TxSweep::kAllHdetSize, 0x77);
    const Bytes received = Pattern(before.size());
    Bytes answer = Hex("4B 0B 01 00 7F 00 " + handset::ToHex(received));
    for (const bool bWhole : {true, false}) {
        Bytes table = before;
        m_phone.Answer("", answer);
        EXPECT_EQ(m_diag.FTM_GET_ALL_HDET_FROM_TX_SWEEP_CAL(table.data()), bWhole);
        EXPECT_EQ(table, bWhole ? received : before);
        EXPECT_EQ(Sent(), Lines{"4B 0B 01 00 7F 00 " + handset::ToHex(before)});
        answer.pop_back();
    }
}

TEST_F(FtmRfSequencesTest, PaProfileSendsBothTables) {
    unsigned short aTables[128];
    std::string sRequest = "4B 0B 01 00 D4 00 00 00 ";
    for (unsigned short i = 0; i < 128; ++i) {
        aTables[i] = static_cast<unsigned short>(0xA500 + i);
        sRequest += handset::ToHex({static_cast<uint8_t>(i), 0xA5}) + " ";
    }
    m_phone.Answer("", Hex("4B"));
    EXPECT_TRUE(m_diag.FTM_SET_PA_PROFILE(aTables, aTables + 64, 20, 30));
    EXPECT_EQ(Sent(), Lines{sRequest + "14 1E"});
}

TEST_F(FtmRfSequencesTest, AutoCalStartsItsLogFirst) {
    const auto calibrate = [this] { return m_diag.FTM_DO_GSM_AUTOCAL(-2, 0x102, -3, 4, 1, 5, 6, 7, 8); };
    const std::string sEnable = "4B 0B 09 00 00 00 00 00 00 00 0A 00 14 00 00 00 01 00 00 00";
    const std::string sAutoCal =
        "4B 0B 01 00 EC 00 00 00 FE FF 02 01 FD FF FF FF 04 00 00 00 01 05 00 06 00 07 00 08 00";
    Echo("4B 0B");
    EXPECT_TRUE(calibrate());
    const Lines sent = Sent();
    ASSERT_EQ(sent.size(), 5u); // the requests between set the log mask
    EXPECT_EQ(sent.front(), sEnable);
    EXPECT_EQ(sent.back(), sAutoCal);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 30);
    m_phone.Misbehave(Action::Ignore, "4B 0B 09");
    Sent();
    EXPECT_FALSE(calibrate());
    EXPECT_EQ(Sent(), Lines{sEnable});
}

TEST_F(FtmRfSequencesTest, PolarSweepSendsPairsThatFit) {
    std::vector<DWORD> first(1022, 0xFFFF0102);
    std::vector<DWORD> second(1022, 0x10304);
    const auto sweep = [&](DWORD iPairs) {
        return m_diag.FTM_GSM_POLAR_TX_SWEEP_CAL(iPairs, first.data(), second.data());
    };
    first[1] = 0x1FFFE;
    m_phone.Answer("4B", Hex("4B 00 01"));
    EXPECT_TRUE(sweep(2));
    EXPECT_EQ(Sent(), Lines{"4B 0B 01 00 2C 01 08 00 0A 00 02 01 04 03 FE FF 04 03"});
    EXPECT_TRUE(sweep(1020));
    EXPECT_EQ(Sent().at(0).size(), 3 * (10 + 4 * 1020) - 1);
    EXPECT_FALSE(sweep(1022) || sweep(0xFFFFFFFF));
    EXPECT_TRUE(Sent().empty());
}

TEST_F(FtmRfSequencesTest, OnlyEnablingTheWcdmaSecondaryChainReturnsToCdma1x) {
    const struct {
        bool bEnable;
        unsigned char iStatus;
        int iMode;
    } cases[] = {{true, 0, 1}, {false, 0, 21}, {true, 2, 21}};
    const std::string sCommand = "4B 0B 15 00 78 00 00 00 00 00 ";
    const std::string sLog = "QLIB_FTM_SET_WCDMA_SECONDARY_CHAIN( bEnableSecondaryChain) status = ";
    for (const auto& [bEnable, iStatus, iMode] : cases) {
        m_phone.Answer("", Hex(sCommand + handset::ToHex({iStatus, iStatus})));
        EXPECT_EQ(m_diag.FTM_SET_WCDMA_SECONDARY_CHAIN(bEnable), iStatus == 0);
        EXPECT_EQ(Sent(), Lines{sCommand + (bEnable ? "01" : "00")});
        EXPECT_EQ(m_diag.GetSystemMode(), iMode);
        EXPECT_EQ(m_log.Of(LOG_RET).back(), sLog + std::to_string(iStatus * 257));
    }
    m_phone.Answer("", Hex(sCommand)); // without a status
    EXPECT_FALSE(m_diag.FTM_SET_WCDMA_SECONDARY_CHAIN(true));
}

// The second CDMA interface: results at fixed offsets, as many as the path has.
TEST_F(FtmRfSequencesTest, SecondCdmaInterface) {
    const FtmCall dvga = DO(FTM_CDMA_API2_CALIBRATE_DVGA, 0, 0x102, b0, &h0);
    const FtmCall im2 = DO(FTM_CDMA_API2_CALIBRATE_IM2, 0, h0, b0, &b1);
    const std::string sHead = "00 00 00 00 00 00 ";
    const std::string sName = "QLIB_FTM_CDMA_API2_CALIBRATE_";
    const std::string sMode = "\nQLIB_SetSystemMode(iSystem_Mode = 18)()";
    Check({{"4B 0B 12 00",
            {{"00 00 00 00 00 00 05", DO(FTM_CDMA_API2_COMMIT_RF_TO_NV, 0x105), "", "", "*"},
             {"01 00 00 00 00 00 00 02 01", dvga, sHead + "03 01 02 03 04 05 06", "b0=3 h0=201 h1=403 h2=605",
              sName + "DVGA iPath=0, iInputPower=258" + sMode, "DVGA values:  513 1027 1541"},
             {"02 00 00 00 00 00 01 09 02 01", DO(FTM_CDMA_API2_CALIBRATE_LNA, 1, 0x102, 9, b0, &h0),
              sHead + "01 FE FF", "b0=1 h0=fffe",
              sName + "LNA Path=1, \t\t\t\t\t\t\t\t\t\t\t\t\t\tInput Power=258, LNA step" + sMode +
                  "\nLNA values:  65534",
              "-"},
             {"03 00 00 00 00 00 00", im2, sHead + "04 03 03 01 02 03 04 05 06 07 08 FF",
              "b0=3 b1=1 b2=2 b3=3 b4=4 b5=5 b6=6 b7=7 b8=8 b9=ff h0=304",
              sName + "IM2 Path=0, Path=0" + sMode, "IM2 values:  1 2 3 4 5 6 7 8 255"},
             {"04 00 00 00 00 00 06 C0 C0", DO(FTM_CDMA_API2_CALIBRATE_INTELLICEIVER, 6, h0, &b1),
              sHead + "01 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D FF",
              "b1=1 b2=2 b3=3 b4=4 b5=5 b6=6 b7=7 b8=8 b9=9 ba=a bb=b bc=c bd=d be=ff",
              sName + "INTELLICEIVER Path=6, Input Power=49344" + sMode,
              "INTELLICEIVER values:  1 2 3 4 5 6 7 8 9 10 11 12 13 255"}}}});
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 1000);
    m_preset.b[0] = 2; // the buffer holds two results
    const struct {
        const FtmCall& call;
        const char* sAnswer;
        const char* sOutcome;
    } cases[] = {
        {dvga, "4B 0B 12 00 00 00 00 00 00 00 02 01 02 03 04", "false b0=2"}, // wrong count for the path
        {dvga, "4B 0B 12 00 00 00 00 00 00 00 03 01 02 03 04 05 06", "false b0=2"}, // too many results
        {im2, "4B 0B 12 00 00 00 00 00 00 00 04 03 03 01 02 03 04 05 06 07 08", "false b0=2 h0=304"},
        {im2, "4B 0B 11 00 00 00 00 00 00 00 04 03 03 01 02 03 04 05 06 07 08 09", "false b0=2"}};
    for (const auto& test : cases)
        EXPECT_EQ(Run(test.call, Hex(test.sAnswer)), test.sOutcome) << test.sAnswer;
}

} // namespace
