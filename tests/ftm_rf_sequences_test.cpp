// Radio commands that are more than one request and its answer: modes, lists, results at fixed places.
#include <chrono>

#include "ftm_rows.h"

namespace {

constexpr std::chrono::milliseconds kSettling(100);

class FtmRfSequencesTest : public FtmRowsTest {
protected:
    /// Requests with that beginning come back as they are.
    void Echo(const std::string& sPrefix) {
        m_phone.phone.Script(Hex(sPrefix), [](const Bytes& request) { return std::vector<Bytes>{request}; });
    }
    /// The requests since the last call, forgotten by it.
    std::vector<std::string> Sent() {
        const std::vector<std::string> requests = m_phone.Requests();
        m_phone.phone.ClearRequests();
        return requests;
    }
    /// The outcome of a call that fails and changes nothing.
    std::string Untouched() const { return m_preset.Text(false); }
    std::string ModeLine(int iMode) {
        return "QLIB_SetSystemMode(iSystem_Mode = " + std::to_string(iMode) + ")()";
    }
};

TEST_F(FtmRfSequencesTest, CommandTypeIsTheFirstThatIsAnswered) {
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 30);
    const std::vector<std::string> tries = {"4B 0B 00 00 00 00 01 00 00 00", "4B 0B 01 00 00 00 01 00 00 00",
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
        EXPECT_EQ(m_diag.GetCommandType(), test.iTries == 3 ? FTM_COMMAND_59 : FTM_COMMAND_75);
        EXPECT_EQ(m_diag.GetSystemMode(), test.iTries == 1 ? 0 : 1);
    }
}

TEST_F(FtmRfSequencesTest, RfModeChoosesTheSystemMode) {
    Echo("4B");
    const struct {
        int iBefore;
        std::vector<int> rfModes;
        int iAfter;
    } cases[] = {{1, {3, 5, 6, 8, 14, 17, 26, 27}, 0},
                 {0, {3}, 0},
                 {3, {3, 27}, 3},
                 {3, {9, 15, 16, 22, 23, 25, 28, 29}, 1},
                 {1, {10, 11, 12, 18}, 2},
                 {2, {30}, 19},
                 {7, {0, 1, 2, 4, 7, 13, 19, 24, 31, -1}, -1}};
    for (const auto& test : cases)
        for (const int iRfMode : test.rfModes) {
            m_diag.SetSystemMode(FTM_Mode_Id_Enum{test.iBefore});
            m_log.Clear();
            const auto begin = std::chrono::steady_clock::now();
            EXPECT_EQ(m_diag.FTM_SET_MODE(FTM_RF_Mode_Enum{iRfMode}), test.iAfter >= 0) << iRfMode;
            EXPECT_EQ(m_diag.GetRfMode(), iRfMode);
            EXPECT_EQ(m_log.Of(LOG_FN).size(), 1u);
            EXPECT_TRUE(test.iAfter != 2 || std::chrono::steady_clock::now() - begin >= kSettling);
            std::vector<std::string> expected;
            if (test.iAfter >= 0)
                expected = {handset::ToHex({0x4B, 0x0B, static_cast<uint8_t>(test.iAfter), 0, 7, 0,
                                            static_cast<uint8_t>(iRfMode), 0})};
            EXPECT_EQ(Sent(), expected) << iRfMode;
            EXPECT_EQ(m_diag.GetSystemMode(), test.iAfter >= 0 ? test.iAfter : test.iBefore);
        }
}

TEST_F(FtmRfSequencesTest, DetectorTableIsWholeOrUntouched) {
    const Bytes sent(TxSweep::kAllHdetSize, 0x77);
    const Bytes received = Pattern(TxSweep::kAllHdetSize);
    const auto read = [this](const Bytes& answer) {
        Bytes table(TxSweep::kAllHdetSize, 0x77);
        m_phone.Answer("", answer);
        return std::pair(m_diag.FTM_GET_ALL_HDET_FROM_TX_SWEEP_CAL(table.data()), table);
    };
    Bytes answer = Hex("4B 0B 01 00 7F 00 " + handset::ToHex(received));
    EXPECT_EQ(read(answer), std::pair(true, received));
    EXPECT_EQ(Sent(), std::vector{"4B 0B 01 00 7F 00 " + handset::ToHex(sent)});
    answer.pop_back();
    EXPECT_EQ(read(answer), std::pair(false, sent));
    EXPECT_EQ(read(Hex("4B 0B")), std::pair(false, sent));
}

TEST_F(FtmRfSequencesTest, PaProfileSendsBothTables) {
    unsigned short aRamp[64];
    unsigned short aLookup[64];
    Bytes expected = Hex("4B 0B 01 00 D4 00 00 00");
    for (unsigned i = 0; i < 128; ++i) {
        (i < 64 ? aRamp[i] : aLookup[i - 64]) = static_cast<unsigned short>(i * 517);
        expected.push_back(static_cast<uint8_t>(i * 517));
        expected.push_back(static_cast<uint8_t>(i * 517 >> 8));
    }
    expected.insert(expected.end(), {20, 30});
    m_phone.Answer("", Hex("4B"));
    EXPECT_TRUE(m_diag.FTM_SET_PA_PROFILE(aRamp, aLookup, 20, 30));
    EXPECT_EQ(Sent(), std::vector{handset::ToHex(expected)});
}

TEST_F(FtmRfSequencesTest, AutoCalStartsItsLogFirst) {
    const auto calibrate = [this] { return m_diag.FTM_DO_GSM_AUTOCAL(-2, 0x102, -3, 4, 1, 5, 6, 7, 8); };
    const std::string sEnable = "4B 0B 09 00 00 00 00 00 00 00 0A 00 14 00 00 00 01 00 00 00";
    const std::string sAutoCal =
        "4B 0B 01 00 EC 00 00 00 FE FF 02 01 FD FF FF FF 04 00 00 00 01 05 00 06 00 07 00 08 00";
    Echo("4B 0B");
    EXPECT_TRUE(calibrate());
    const std::vector<std::string> sent = Sent();
    ASSERT_EQ(sent.size(), 5u);
    EXPECT_EQ(sent.front(), sEnable);
    for (size_t i = 1; i < 4; ++i)
        EXPECT_EQ(sent[i].substr(0, 2), "73"); // ranges, mask, new mask
    EXPECT_EQ(sent.back(), sAutoCal);
    m_phone.Answer("4B 0B 01", Hex("4B 0B 02 00 EC 00"));
    EXPECT_FALSE(calibrate());
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 30);
    m_phone.Misbehave(Action::Ignore, "4B 0B 09");
    m_log.Clear();
    Sent();
    EXPECT_FALSE(calibrate());
    EXPECT_EQ(Sent(), std::vector{sEnable});
    EXPECT_EQ(m_log.Of(LOG_RET),
              std::vector<std::string>{"QLIB_FTM_DO_GSM_AUTOCAL() -- Error: failed to start FTM log"});
}

TEST_F(FtmRfSequencesTest, PolarSweepSendsPairsThatFit) {
    std::vector<DWORD> first(5000, 0xFFFF0102);
    std::vector<DWORD> second(5000, 0x10304);
    const auto sweep = [&](DWORD iPairs) {
        return m_diag.FTM_GSM_POLAR_TX_SWEEP_CAL(iPairs, first.data(), second.data());
    };
    first[1] = 0x1FFFE;
    m_phone.Answer("4B", Hex("4B 00 01"));
    EXPECT_TRUE(sweep(2));
    EXPECT_EQ(Sent(), std::vector<std::string>{"4B 0B 01 00 2C 01 08 00 0A 00 02 01 04 03 FE FF 04 03"});
    EXPECT_TRUE(sweep(1020));
    EXPECT_EQ(Sent().at(0).size(), 3 * (10 + 4 * 1020) - 1);
    for (const DWORD iTooMany : {1022U, 5000U, 0xFFFFFFFFU})
        EXPECT_FALSE(sweep(iTooMany));
    EXPECT_TRUE(Sent().empty());
    for (const char* sAnswer : {"4B 0B", "4B 0B 02"}) {
        m_phone.Answer("4B", Hex(sAnswer));
        EXPECT_FALSE(sweep(2)) << sAnswer;
    }
    Sent();
    m_diag.SetCommandType(FTM_COMMAND_59);
    m_phone.Answer("3B", Hex("3B 77 00"));
    EXPECT_TRUE(sweep(1));
    EXPECT_EQ(Sent(), std::vector<std::string>{"3B 77 00 0A 00 2C 01 04 00 0A 00 02 01 04 03"});
}

TEST_F(FtmRfSequencesTest, WcdmaSecondaryChainLeavesItsModeOnlyWhenSwitchedOn) {
    const std::string sStatus = "QLIB_FTM_SET_WCDMA_SECONDARY_CHAIN( bEnableSecondaryChain) status = ";
    const struct {
        bool bEnable;
        const char* sAnswer;
        bool bResult;
        int iMode;
        std::vector<std::string> log;
    } cases[] = {{true, "4B 0B 15 00 78 00 00 00", true, 1, {sStatus + "0"}},
                 {false, "4B 0B 15 00 78 00 00 00", true, 21, {sStatus + "0"}},
                 {true, "4B 0B 15 00 78 00 02 01", false, 21, {sStatus + "258"}},
                 {true, "4B", false, 21, {}}};
    for (const auto& test : cases) {
        m_log.Clear();
        m_phone.Answer("", Hex(test.sAnswer));
        EXPECT_EQ(m_diag.FTM_SET_WCDMA_SECONDARY_CHAIN(test.bEnable), test.bResult);
        EXPECT_EQ(Sent(), std::vector<std::string>{test.bEnable ? "4B 0B 15 00 78 00 00 00 00 00 01"
                                                                : "4B 0B 15 00 78 00 00 00 00 00 00"});
        EXPECT_EQ(m_diag.GetSystemMode(), test.iMode);
        EXPECT_EQ(m_log.Of(LOG_RET), test.log);
        EXPECT_TRUE(m_log.Has(LOG_FN, ModeLine(21)));
        EXPECT_EQ(m_log.Has(LOG_FN, ModeLine(1)), test.iMode == 1);
    }
}

// The second CDMA interface: results at fixed places, as many as the path has.
struct Api2Case {
    unsigned char iCapacity; // b0
    FtmRow row;              // the answer behind the 10 bytes of its header
    const char* sOutcome;
    const char* sEntry = nullptr;
    const char* sValues = nullptr;
};

TEST_F(FtmRfSequencesTest, SecondCdmaInterface) {
    const FtmCall dvga = DO(FTM_CDMA_API2_CALIBRATE_DVGA, 0, 0x102, b0, &h0);
    const FtmCall dvga1 = DO(FTM_CDMA_API2_CALIBRATE_DVGA, 1, 0x102, b0, &h0);
    const FtmCall lna = DO(FTM_CDMA_API2_CALIBRATE_LNA, 1, 0x102, 9, b0, &h0);
    const FtmCall im2 = DO(FTM_CDMA_API2_CALIBRATE_IM2, 0, h0, b0, &b1);
    const FtmCall intelliceiver = DO(FTM_CDMA_API2_CALIBRATE_INTELLICEIVER, 6, h0, &b1);
    const Api2Case cases[] = {
        Api2Case(0xB0, FtmRow("00 00 00 00 00 00 05", DO(FTM_CDMA_API2_COMMIT_RF_TO_NV, 0x105)), "true"),
        Api2Case(4, FtmRow("01 00 00 00 00 00 00 02 01", dvga, "03 01 02 03 04 05 06"),
                 "true b0=3 h0=201 h1=403 h2=605", "DVGA iPath=0, iInputPower=258",
                 "DVGA values:  513 1027 1541"),
        Api2Case(1, FtmRow("01 00 00 00 00 00 01 02 01", dvga1, "01 01 02"), "true b0=1 h0=201"),
        // No room, another number of results than the path has, another path.
        Api2Case(2, FtmRow("01 00 00 00 00 00 00 02 01", dvga, "03 01 02 03 04 05 06"), "false b0=2"),
        Api2Case(255, FtmRow("01 00 00 00 00 00 00 02 01", dvga, "FF 01 02 03 04 05 06"), "false b0=ff"),
        Api2Case(4, FtmRow("01 00 00 00 00 00 01 02 01", dvga1, "03 01 02 03 04 05 06"), "false b0=4"),
        Api2Case(4,
                 FtmRow("01 00 00 00 00 00 02 02 01", DO(FTM_CDMA_API2_CALIBRATE_DVGA, 2, 0x102, b0, &h0),
                        "03 01 02 03 04 05 06"),
                 "false b0=4"),
        Api2Case(1, FtmRow("02 00 00 00 00 00 01 09 02 01", lna, "01 FE FF"), "true b0=1 h0=fffe",
                 "LNA Path=1, \t\t\t\t\t\t\t\t\t\t\t\t\t\tInput Power=258, LNA step", "LNA values:  65534"),
        Api2Case(0, FtmRow("02 00 00 00 00 00 01 09 02 01", lna, "01 FE FF"), "false b0=0"),
        Api2Case(9, FtmRow("03 00 00 00 00 00 00", im2, "04 03 03 01 02 03 04 05 06 07 08 FF"),
                 "true b0=3 b1=1 b2=2 b3=3 b4=4 b5=5 b6=6 b7=7 b8=8 b9=ff h0=304", "IM2 Path=0, Path=0",
                 "IM2 values:  1 2 3 4 5 6 7 8 255"),
        Api2Case(3,
                 FtmRow("03 00 00 00 00 00 01", DO(FTM_CDMA_API2_CALIBRATE_IM2, 1, h0, b0, &b1),
                        "04 03 01 01 02 03"),
                 "true b0=1 b1=1 b2=2 b3=3 h0=304"),
        Api2Case(8, FtmRow("03 00 00 00 00 00 00", im2, "04 03 03 01 02 03 04 05 06 07 08 09"),
                 "false b0=8 h0=304"),
        Api2Case(0xB0,
                 FtmRow("04 00 00 00 00 00 06 C0 C0", intelliceiver,
                        "01 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D FF"),
                 "true b1=1 b2=2 b3=3 b4=4 b5=5 b6=6 b7=7 b8=8 b9=9 ba=a bb=b bc=c bd=d be=ff",
                 "INTELLICEIVER Path=6, Input Power=49344",
                 "INTELLICEIVER values:  1 2 3 4 5 6 7 8 9 10 11 12 13 255"),
        Api2Case(0xB0,
                 FtmRow("04 00 00 00 00 00 06 C0 C0", intelliceiver,
                        "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E"),
                 "false"),
    };
    for (const auto& test : cases) {
        m_preset.b[0] = test.iCapacity;
        Bytes answer = Hex("4B 0B 12 00 00 00 00 00 00 00 " + test.row.sAnswer);
        EXPECT_EQ(Run(test.row, answer), test.sOutcome) << test.row.sRequest;
        EXPECT_EQ(Sent(), std::vector{"4B 0B 12 00 " + test.row.sRequest});
        if (test.sEntry != nullptr) {
            const bool bLna = *test.sEntry == 'L';
            EXPECT_EQ(m_log.Of(LOG_FN).at(0), std::string("QLIB_FTM_CDMA_API2_CALIBRATE_") + test.sEntry);
            EXPECT_EQ(m_log.Of(LOG_FN).at(1), ModeLine(18));
            EXPECT_TRUE(m_log.Has(bLna ? LOG_FN : LOG_RET, test.sValues)) << test.sValues;
        }
        // Other modes are refused; in an answer that ends early nothing but the word of IM2 is taken.
        const std::string sNothing = Untouched();
        answer[2] = 0x11;
        EXPECT_EQ(Run(test.row, answer), sNothing) << test.row.sRequest;
        answer[2] = 0x12;
        while (answer.size() > 10) {
            answer.pop_back();
            const bool bWord = test.row.sRequest[1] == '3' && answer.size() >= 12;
            EXPECT_EQ(Run(test.row, answer), sNothing + (bWord ? " h0=304" : "")) << answer.size();
        }
    }
    m_diag.SetCommandType(FTM_COMMAND_59);
    EXPECT_EQ(Run(cases[1].row, Hex("3B 77 00 00 00 00 00 00 00 00 03 01 02 03 04 05 06")), Untouched());
}

} // namespace
