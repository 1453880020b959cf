// Radio commands that are more than one request and its answer: modes, lists, results at fixed places.
#include <chrono>

#include "ftm_rows.h"

namespace {

constexpr std::chrono::milliseconds kSettling(100);

class FtmRfSequencesTest : public FtmRowsTest {
protected:
    /// The requests since the last call, forgotten by it.
    std::vector<std::string> Sent() {
        const std::vector<std::string> requests = m_phone.Requests();
        m_phone.phone.ClearRequests();
        return requests;
    }
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

/// The caller's side: count in b[0], values in h (DVGA, LNA) or in bytes, which are printed behind.
struct Api2Row {
    const char* sRequest;
    unsigned char iPath;
    unsigned char iCapacity;
    const char* sAnswer; // behind the 10 bytes of the header
    const char* sOutcome;
    std::string (*call)(Diag_FTM& diag, const Api2Row& row);
};

template <class Value>
std::string Api2Text(bool bResult, int iCount, std::span<const Value> values) {
    std::ostringstream text;
    text << (bResult ? "true " : "false ") << iCount << ':';
    for (const Value iValue : values)
        text << ' ' << std::hex << int{iValue};
    return text.str();
}

std::string Dvga(Diag_FTM& diag, const Api2Row& row) {
    unsigned short aValues[4] = {0xA, 0xA, 0xA, 0xA};
    unsigned char iCount = row.iCapacity;
    const bool bResult = diag.FTM_CDMA_API2_CALIBRATE_DVGA(row.iPath, 0x102, iCount, aValues);
    return Api2Text<unsigned short>(bResult, iCount, aValues);
}
std::string Lna(Diag_FTM& diag, const Api2Row& row) {
    unsigned short aValues[4] = {0xA, 0xA, 0xA, 0xA};
    unsigned char iCount = row.iCapacity;
    const bool bResult = diag.FTM_CDMA_API2_CALIBRATE_LNA(row.iPath, 0x102, 9, iCount, aValues);
    return Api2Text<unsigned short>(bResult, iCount, aValues);
}
std::string Im2(Diag_FTM& diag, const Api2Row& row) {
    unsigned char aValues[10] = {};
    unsigned char iCount = row.iCapacity;
    unsigned short iResult = 0xA;
    const bool bResult = diag.FTM_CDMA_API2_CALIBRATE_IM2(row.iPath, iResult, iCount, aValues);
    std::ostringstream result;
    result << std::hex << iResult << ' ';
    return result.str() + Api2Text<unsigned char>(bResult, iCount, aValues);
}
std::string Intelliceiver(Diag_FTM& diag, const Api2Row& row) {
    unsigned char aValues[15] = {};
    unsigned short iInputPower = 0x102;
    const bool bResult = diag.FTM_CDMA_API2_CALIBRATE_INTELLICEIVER(row.iPath, iInputPower, aValues);
    return Api2Text<unsigned char>(bResult, row.iCapacity, aValues);
}
std::string Commit(Diag_FTM& diag, const Api2Row& row) {
    return diag.FTM_CDMA_API2_COMMIT_RF_TO_NV(static_cast<unsigned short>(0x100 + row.iPath)) ? "true"
                                                                                              : "false";
}

TEST_F(FtmRfSequencesTest, SecondCdmaInterface) {
    const Api2Row rows[] = {
        {"00 00 00 00 00 00 05", 5, 0, "", "true", Commit},
        {"01 00 00 00 00 00 00 02 01", 0, 4, "03 01 02 03 04 05 06", "true 3: 201 403 605 a", Dvga},
        {"01 00 00 00 00 00 01 02 01", 1, 1, "01 01 02 77", "true 1: 201 a a a", Dvga},
        // No room, another number of results than the path has, other paths, answers that end early.
        {"01 00 00 00 00 00 00 02 01", 0, 2, "03 01 02 03 04 05 06", "false 2: a a a a", Dvga},
        {"01 00 00 00 00 00 00 02 01", 0, 255, "FF 01 02 03 04 05 06", "false 255: a a a a", Dvga},
        {"01 00 00 00 00 00 01 02 01", 1, 4, "03 01 02 03 04 05 06", "false 4: a a a a", Dvga},
        {"01 00 00 00 00 00 02 02 01", 2, 4, "03 01 02 03 04 05 06", "false 4: a a a a", Dvga},
        {"01 00 00 00 00 00 00 02 01", 0, 4, "03 01 02 03 04 05", "false 4: a a a a", Dvga},
        {"01 00 00 00 00 00 00 02 01", 0, 4, "", "false 4: a a a a", Dvga},
        {"02 00 00 00 00 00 01 09 02 01", 1, 1, "01 FE FF", "true 1: fffe a a a", Lna},
        {"02 00 00 00 00 00 01 09 02 01", 1, 0, "01 FE FF", "false 0: a a a a", Lna},
        {"03 00 00 00 00 00 00", 0, 9, "04 03 03 01 02 03 04 05 06 07 08 09",
         "304 true 3: 1 2 3 4 5 6 7 8 9 0", Im2},
        {"03 00 00 00 00 00 01", 1, 3, "04 03 01 01 02 03 04", "304 true 1: 1 2 3 0 0 0 0 0 0 0", Im2},
        {"03 00 00 00 00 00 00", 0, 8, "04 03 03 01 02 03 04 05 06 07 08 09",
         "304 false 8: 0 0 0 0 0 0 0 0 0 0", Im2},
        {"03 00 00 00 00 00 00", 0, 9, "04 03 03 01 02 03 04 05 06 07 08", "304 false 9: 0 0 0 0 0 0 0 0 0 0",
         Im2},
        {"03 00 00 00 00 00 00", 0, 9, "04 03", "304 false 9: 0 0 0 0 0 0 0 0 0 0", Im2},
        {"03 00 00 00 00 00 00", 0, 9, "04", "a false 9: 0 0 0 0 0 0 0 0 0 0", Im2},
        {"04 00 00 00 00 00 06 02 01", 6, 0, "01 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F",
         "true 0: 1 2 3 4 5 6 7 8 9 a b c d e 0", Intelliceiver},
        {"04 00 00 00 00 00 06 02 01", 6, 0, "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E",
         "false 0: 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0", Intelliceiver},
        {"04 00 00 00 00 00 06 02 01", 6, 0, "01 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D",
         "false 0: 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0", Intelliceiver},
        {"04 00 00 00 00 00 06 02 01", 6, 0, "", "false 0: 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0", Intelliceiver},
    };
    for (const Api2Row& row : rows) {
        m_phone.Answer("", Hex(std::string("4B 0B 12 00 00 00 00 00 00 00 ") + row.sAnswer));
        EXPECT_EQ(row.call(m_diag, row), row.sOutcome) << row.sAnswer;
        EXPECT_EQ(Sent(), std::vector{std::string("4B 0B 12 00 ") + row.sRequest});
        m_phone.Answer("", Hex(std::string("4B 0B 11 00 00 00 00 00 00 00 ") + row.sAnswer));
        EXPECT_NE(row.call(m_diag, row).find("false"), std::string::npos) << row.sAnswer;
        Sent();
    }
    m_diag.SetCommandType(FTM_COMMAND_59);
    m_phone.Answer("", Hex("3B 77 00 00 00 00 00 00 00 00 03 01 02 03 04 05 06"));
    EXPECT_EQ(Dvga(m_diag, rows[1]), "false 4: a a a a");
}

TEST_F(FtmRfSequencesTest, SecondCdmaInterfaceLogsItsValues) {
    const struct {
        std::string (*call)(Diag_FTM&, const Api2Row&);
        const char* sAnswer;
        const char* sEntry;
        unsigned iCategory;
        const char* sValues;
    } cases[] = {
        {Dvga, "03 01 00 02 00 FF FF", "DVGA iPath=0, iInputPower=258", LOG_RET, "DVGA values:  1 2 65535"},
        {Lna, "03 01 00 02 00 03 00", "LNA Path=0, \t\t\t\t\t\t\t\t\t\t\t\t\t\tInput Power=258, LNA step",
         LOG_FN, "LNA values:  1 2 3"},
        {Im2, "00 00 03 01 02 03 04 05 06 07 08 FF", "IM2 Path=0, Path=0", LOG_RET,
         "IM2 values:  1 2 3 4 5 6 7 8 255"},
        {Intelliceiver, "01 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D FF",
         "INTELLICEIVER Path=0, Input Power=258", LOG_RET,
         "INTELLICEIVER values:  1 2 3 4 5 6 7 8 9 10 11 12 13 255"},
    };
    for (const auto& test : cases) {
        m_log.Clear();
        m_phone.Answer("", Hex(std::string("4B 0B 12 00 00 00 00 00 00 00 ") + test.sAnswer));
        test.call(m_diag, {"", 0, 9, "", "", nullptr});
        std::vector<std::string> operation = {std::string("QLIB_FTM_CDMA_API2_CALIBRATE_") + test.sEntry,
                                              ModeLine(18)};
        if (test.iCategory == LOG_FN)
            operation.push_back(test.sValues);
        EXPECT_EQ(m_log.Of(LOG_FN), operation);
        EXPECT_TRUE(m_log.Has(test.iCategory, test.sValues)) << test.sValues;
    }
}

} // namespace
