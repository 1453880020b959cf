// The requests of the radio tests: their bytes, their status, their entry lines.
#include "diag_fixture.h"

namespace {

struct TestRow {
    std::string sRequest; // behind subsystem and mode
    std::string sEntry;
    bool (*call)(Diag_FTM& diag, unsigned char& iStatus);
};

const unsigned char kCodes[] = {1, 2, 3, 4};
const unsigned char kPartitions[] = {1, 2, 3, 4, 5, 6, 7, 8};

const TestRow kGsmRows[] = {
    {"00 00 00 00 00 00", "GSM_START_MODE_REQ()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_GSM_START_MODE_REQ(s); }},
    {"01 00 00 00 00 00 02 01 03", "GSM_SELECT_SPECIFIC_BCCH_REQ( iChannel = 258, iBand = 3)",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_GSM_SELECT_SPECIFIC_BCCH_REQ(0x102, 3, s); }},
    {"02 00 00 00 00 00", "GSM_START_IDLE_MODE_REQ()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_GSM_START_IDLE_MODE_REQ(s); }},
    {"03 00 00 00 00 00 05", "GSM_CONFIG_LOOPBACK_TYPE_REQ( iLoopbackType = 5)",
     [](Diag_FTM& d, unsigned char& s) {
         return d.FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ(FTM_GSM_BER_LoopbackType_Enum{5}, s);
     }},
    {"04 00 00 00 00 00 06 07", "GSM_CHANNEL_ASSIGN_REQ( iSlot = 6, eMode = 7)",
     [](Diag_FTM& d, unsigned char& s) {
         return d.FTM_GSM_CHANNEL_ASSIGN_REQ(6, FTM_GSM_BER_Channel_Modes_Enum{7}, s);
     }},
    {"05 00 00 00 00 00", "GSM_CHANNEL_RELEASE_REQ()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_GSM_CHANNEL_RELEASE_REQ(s); }},
    {"06 00 00 00 00 00", "GSM_STOP_GSM_MODE_REQ()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_GSM_STOP_GSM_MODE_REQ(s); }},
    {"07 00 00 00 00 00 02 01 03 04 05 06 07",
     "GSM_BER_CHANNEL_ASSIGN_V2_REQ( iChannel = 258, iBand = 3, iTSC = 4, iSlot = 5, eMode = 6, iPowerLevel "
     "= 7 )",
     [](Diag_FTM& d, unsigned char& s) {
         return d.FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ(0x102, 3, 4, 5, FTM_GSM_BER_Channel_Modes_Enum{6}, 7, s);
     }},
    {"00 01 00 00 00 00", "EGPRS_BER_START_GPRS_IDLE_MODE_REQ()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ(s); }},
    {"01 01 00 00 00 00", "EGPRS_BER_ESTABLISH_SRB_LOOPBACK()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK(s); }},
    {"02 01 00 00 00 00 00 00 34 12 03 01 02 00 00", "EGPRS_BER_CONFIGURE_DL_TBF()",
     [](Diag_FTM& d, unsigned char& s) {
         return d.FTM_EGPRS_BER_CONFIGURE_DL_TBF(0, 0, 0x1234, 3, 1, 2, 0, 0, s);
     }},
    {"03 01 00 00 00 00 01 02 03 04 05 06 07", "EGPRS_BER_CONFIGURE_UL_TBF()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_EGPRS_BER_CONFIGURE_UL_TBF(1, 2, 3, 4, 5, 6, 7, s); }},
    {"04 01 00 00 00 00", "EGPRS_BER_RELEASE_ALL_TBF()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_EGPRS_BER_RELEASE_ALL_TBF(s); }},
    {"05 01 00 00 00 00", "EGPRS_BER_RELEASE_UL_TBF()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_EGPRS_BER_RELEASE_UL_TBF(s); }},
};

const std::string kRmcValues =
    "iRMC_Type = 1, iUL_MaxTxPwr = 2, iUL_DPCH_ScrCode = 67305985, iUL_PCA = 3, iUL_TPC_StepSize = 4, "
    "iDL_PriCPICH_Scr_Code = 1541, iDL_ChanCode = 2055 )";
const std::string kRmcBytes = "00 00 00 00 01 02 01 02 03 04 03 04 05 06 07 08";

const TestRow kWcdmaRows[] = {
    {"00 00 00 00 00 00", "WCDMA_START_MODE_REQ()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_WCDMA_START_MODE_REQ(s); }},
    {"01 00 00 00 00 00", "WCDMA_STOP_MODE_REQ()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_WCDMA_STOP_MODE_REQ(s); }},
    {"02 00 00 00 00 00", "WCDMA_START_IDLE_MODE_REQ()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_WCDMA_START_IDLE_MODE_REQ(s); }},
    {"03 00 00 00 00 00 01 02 04 03 06 05 0A 09 08 07", "WCDMA_ACQUIRE_REQ( 1, 2, 772, 1286, 117967114 )",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_WCDMA_ACQUIRE_REQ(1, 2, 0x304, 0x506, 0x708090A, s); }},
    {"04 00 " + kRmcBytes, "WCDMA_RMC_DCH_SETUP_REQ( " + kRmcValues,
     [](Diag_FTM& d, unsigned char& s) {
         return d.FTM_WCDMA_RMC_DCH_SETUP_REQ(1, 2, 0x4030201, 3, 4, 0x605, 0x807, s);
     }},
    {"05 00 " + kRmcBytes + " 09 0A 0C 0B 0D 0E 0F 10 11 13 12", "WCDMA_RMC_DCH_SETUP_REQ_V2B( " + kRmcValues,
     [](Diag_FTM& d, unsigned char& s) {
         return d.FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B(1, 2, 0x4030201, 3, 4, 0x605, 0x807, 9, 10, 0xB0C, 13, 14,
                                                  15, 16, 17, 0x1213, s);
     }},
    {"05 00 " + kRmcBytes + " 09 0A C4 FF 00 04 00 01 03 13 12", "WCDMA_RMC_DCH_SETUP_REQ_V2( " + kRmcValues,
     [](Diag_FTM& d, unsigned char& s) {
         return d.FTM_WCDMA_RMC_DCH_SETUP_REQ_V2(1, 2, 0x4030201, 3, 4, 0x605, 0x807, 9, 10, 0x1213, s);
     }},
};

const TestRow kHsdpaRows[] = {
    {"00 01 00 00 00 00", "HSDPA_BLER_CMD_START_HS()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_HSDPA_BLER_CMD_START_HS(s); }},
    {"01 01 00 00 00 00", "HSDPA_BLER_CMD_STOP_HS()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_HSDPA_BLER_CMD_STOP_HS(s); }},
    {"02 01 00 00 00 00 09", "HSDPA_BLER_CMD_RECONFIG_HS()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_HSDPA_BLER_CMD_RECONFIG_HS(9, s); }},
    {"03 01 00 00 00 00 02 01", "HSDPA_BLER_CMD_CONFIG_HS_PDSCH()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH(0x102, s); }},
    {"04 01 00 00 00 00 01 01 02 03 04", "HSDPA_BLER_CMD_CONFIG_HS_SCCH()",
     [](Diag_FTM& d, unsigned char& s) { return d.FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH(1, kCodes, s); }},
    {"05 01 00 00 00 00 02 01 03 04 01 02 03 04 05 06 07 08", "HSDPA_BLER_CMD_CONFIG_HS_DSCH()",
     [](Diag_FTM& d, unsigned char& s) {
         return d.FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH(0x102, 3, 4, kPartitions, s);
     }},
    {"06 01 00 00 00 00 01 02 03 04 05 06 07",
     "HSDPA_BLER_CMD_CONFIG_HS_DPCCH(iCPICH_PowerOffset = 1, iCQI_FeedbackCycle = 2, iCQI_RepetitionFactor "
     "= 3, iDeltaCQI = 4, iDeltaACK = 5, iDeltaNACK = 6, iACK_NACK_RepetitionFactor = 7)",
     [](Diag_FTM& d, unsigned char& s) {
         return d.FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH(1, 2, 3, 4, 5, 6, 7, s);
     }},
};

class RadioTestRequests : public DiagTest {
protected:
    void CheckAnswer(const TestRow& row, const Bytes& answer, const std::string& sOutcome) {
        m_log.Clear();
        m_phone.phone.ClearRequests();
        m_phone.Answer("", answer);
        unsigned char iStatus = 0xEE;
        const bool bResult = row.call(m_diag, iStatus);
        EXPECT_EQ(Outcome(bResult, iStatus), sOutcome) << row.sEntry;
    }
    void CheckRows(std::span<const TestRow> rows, const std::string& sMode, const std::string& sOutcome) {
        for (const TestRow& row : rows) {
            CheckAnswer(row, Hex("4B 0B 00 00 00 00 00 00 00 77 05 0C 0D"), sOutcome);
            EXPECT_EQ(m_phone.Requests(), Lines{"4B 0B " + sMode + " 00 " + row.sRequest});
            EXPECT_EQ(m_log.Of(LOG_FN), Lines{"QLIB_FTM_" + row.sEntry});
            CheckAnswer(row, Hex("4B 0B 00 77"), "true 77"); // ends early: its last byte
            CheckAnswer(row, Hex("4B"), "true 4b");
        }
        m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 5);
        for (const TestRow& row : rows)
            CheckAnswer(row, Hex("13 4B 0B"), "false 1");
    }
};

TEST_F(RadioTestRequests, GsmAndEgprs) {
    CheckRows(kGsmRows, "0D", "true 5");
}

TEST_F(RadioTestRequests, Wcdma) {
    CheckRows(kWcdmaRows, "10", "true 5");
}

TEST_F(RadioTestRequests, HsdpaStatusStandsOneByteLater) {
    CheckRows(kHsdpaRows, "10", "true c");
}

// Configuring high-speed channels: what is derived, and what is told.

TEST_F(RadioTestRequests, ReferenceSets) {
    const struct {
        unsigned char iHSet;
        const char* sFields; // behind the H-RNTI
    } cases[] = {{1, "02 01 0B 0B 00 00 00 00 00 00"},   {2, "02 01 0B 0B 00 00 00 00 00 00"},
                 {3, "03 01 0B 0B 0B 00 00 00 00 00"},   {4, "03 01 0B 0B 0B 00 00 00 00 00"},
                 {5, "06 01 0B 0B 0B 0B 0B 0B 00 00"},   {6, "06 01 0B 0B 0B 0B 0B 0B 00 00"},
                 {7, "02 01 08 08 00 00 00 00 00 00"},   {8, "03 01 0B 0B 0B 00 00 00 00 00"},
                 {9, "09 01 00 00 00 00 00 00 00 00"},   {0, "00 01 00 00 00 00 00 00 00 00"},
                 {254, "FE 01 00 00 00 00 00 00 00 00"}, {255, "06 01 15 15 15 15 15 15 00 00"}};
    m_phone.Answer("", Hex("4B 0B 00 00 00 00 00 00 00 00 05 00"));
    for (const auto& test : cases) {
        m_phone.phone.ClearRequests();
        EXPECT_TRUE(m_diag.FTM_HSDPA_BLER_Configure_HS_DSCH_HSET(0x1234, test.iHSet));
        EXPECT_EQ(m_phone.Requests(),
                  Lines{std::string("4B 0B 10 00 05 01 00 00 00 00 34 12 ") + test.sFields});
    }
}

TEST_F(RadioTestRequests, ConfigurationsAreTrueWhenAccepted) {
    const struct {
        bool (*call)(Diag_FTM& diag);
        const char* sRequest;
        const char* sEntry;
        const char* sResult;
    } cases[] = {
        {[](Diag_FTM& d) { return d.FTM_HSDPA_BLER_Configure_PDSCH(0x102); }, "03 01 00 00 00 00 02 01",
         "PDSCH", "PDSCH"},
        {[](Diag_FTM& d) { return d.FTM_HSDPA_BLER_Configure_HS_SCCH(2, kCodes); },
         "04 01 00 00 00 00 02 01 02 03 04", "HS_SCCH( iNumCodes = 2, aiCodes[4] = {1, 2, 3, 4 })", "SCCH"},
        {[](Diag_FTM& d) { return d.FTM_HSDPA_BLER_Configure_HS_DSCH(0x102, 3, 4, kPartitions); },
         "05 01 00 00 00 00 02 01 03 04 01 02 03 04 05 06 07 08",
         "DSCH( iH_RNTI = 258, iNum_HARQ_Processes = 3, bMemPartitionValid = 4,  aiMemPartitionInfo[8] = {1, "
         "2, 3, 4, 5, 6, 7, 8 })",
         "DSCH"},
        {[](Diag_FTM& d) { return d.FTM_HSDPA_BLER_Configure_HS_DPCCH(1, 2, 3, 4, 5, 6, 7); },
         "06 01 00 00 00 00 01 02 03 04 05 06 07",
         "HS_DPCCH( iCPICH_PowerOffset = 1, iCQI_FeedbackCycle = 2, iCQI_RepetitionFactor = 3, iDeltaCQI = "
         "4, "
         "iDeltaACK = 5, iDeltaNACK = 6, iACK_NACK_RepetitionFactor = 7)",
         "DPSCH"},
    };
    for (const auto& test : cases)
        for (const bool bAccepted : {true, false}) {
            m_log.Clear();
            m_phone.phone.ClearRequests();
            m_phone.Answer("",
                           Hex(std::string("4B 0B 00 00 00 00 00 00 00 00 00 ") + (bAccepted ? "00" : "05")));
            EXPECT_EQ(test.call(m_diag), bAccepted);
            EXPECT_EQ(m_phone.Requests(), Lines{std::string("4B 0B 10 00 ") + test.sRequest});
            EXPECT_TRUE(m_log.Has(LOG_FN, std::string("    QLIB_FTM_HSDPA_BLER_Configure_") + test.sEntry));
            EXPECT_EQ(m_log.Of(LOG_RET),
                      Lines{std::string("    FTM_HSDPA_BLER_CMD_CONFIG_HS_") + test.sResult +
                            " = PASS, status = " + (bAccepted ? "0" : "5")});
        }
}

} // namespace
