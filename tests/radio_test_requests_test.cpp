// The requests of the radio tests: their bytes, their status, their entry lines.
#include "ftm_rows.h"

namespace {

const unsigned char kCodes[] = {1, 2, 3, 4};
const unsigned char kPartitions[] = {1, 2, 3, 4, 5, 6, 7, 8};

// The status comes out in b0; a number tells how many fields the entry line shows.
const FtmTable kGsmRows = {
    {"00 00 00 00 00 00", DO(FTM_GSM_START_MODE_REQ, b0)},
    {"01 00 00 00 00 00 02 01 03", DO(FTM_GSM_SELECT_SPECIFIC_BCCH_REQ, 0x102, 3, b0)},
    {"02 00 00 00 00 00", DO(FTM_GSM_START_IDLE_MODE_REQ, b0)},
    {"03 00 00 00 00 00 05", DO(FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ, FTM_GSM_BER_LoopbackType_Enum{5}, b0)},
    {"04 00 00 00 00 00 06 07", DO(FTM_GSM_CHANNEL_ASSIGN_REQ, 6, FTM_GSM_BER_Channel_Modes_Enum{7}, b0)},
    {"05 00 00 00 00 00", DO(FTM_GSM_CHANNEL_RELEASE_REQ, b0)},
    {"06 00 00 00 00 00", DO(FTM_GSM_STOP_GSM_MODE_REQ, b0)},
    {"07 00 00 00 00 00 02 01 03 04 05 06 07",
     DO(FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ, 0x102, 3, 4, 5, FTM_GSM_BER_Channel_Modes_Enum{6}, 7, b0)},
    {"00 01 00 00 00 00", DO(FTM_EGPRS_BER_START_GPRS_IDLE_MODE_REQ, b0)},
    {"01 01 00 00 00 00", DO(FTM_EGPRS_BER_ESTABLISH_SRB_LOOPBACK, b0)},
    {"02 01 00 00 00 00 00 00 34 12 03 01 02 00 00",
     DO(FTM_EGPRS_BER_CONFIGURE_DL_TBF, 0, 0, 0x1234, 3, 1, 2, 0, 0, b0), "", "", "0"},
    {"03 01 00 00 00 00 01 02 03 04 05 06 07", DO(FTM_EGPRS_BER_CONFIGURE_UL_TBF, 1, 2, 3, 4, 5, 6, 7, b0),
     "", "", "0"},
    {"04 01 00 00 00 00", DO(FTM_EGPRS_BER_RELEASE_ALL_TBF, b0)},
    {"05 01 00 00 00 00", DO(FTM_EGPRS_BER_RELEASE_UL_TBF, b0)},
};

const std::string kRmcBytes = "00 00 00 00 01 02 01 02 03 04 03 04 05 06 07 08";

const FtmTable kWcdmaRows = {
    {"00 00 00 00 00 00", DO(FTM_WCDMA_START_MODE_REQ, b0)},
    {"01 00 00 00 00 00", DO(FTM_WCDMA_STOP_MODE_REQ, b0)},
    {"02 00 00 00 00 00", DO(FTM_WCDMA_START_IDLE_MODE_REQ, b0)},
    {"03 00 00 00 00 00 01 02 04 03 06 05 0A 09 08 07",
     DO(FTM_WCDMA_ACQUIRE_REQ, 1, 2, 0x304, 0x506, 0x708090A, b0)},
    {"04 00 " + kRmcBytes, DO(FTM_WCDMA_RMC_DCH_SETUP_REQ, 1, 2, 0x4030201, 3, 4, 0x605, 0x807, b0), "", "",
     "7"},
    {"05 00 " + kRmcBytes + " 09 0A 0C 0B 0D 0E 0F 10 11 13 12",
     DO(FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B, 1, 2, 0x4030201, 3, 4, 0x605, 0x807, 9, 10, 0xB0C, 13, 14, 15, 16,
        17, 0x1213, b0),
     "", "", "7"},
    {"05 00 " + kRmcBytes + " 09 0A C4 FF 00 04 00 01 03 13 12",
     DO(FTM_WCDMA_RMC_DCH_SETUP_REQ_V2, 1, 2, 0x4030201, 3, 4, 0x605, 0x807, 9, 10, 0x1213, b0), "", "", "7"},
};

const FtmTable kHsdpaRows = {
    {"00 01 00 00 00 00", DO(FTM_HSDPA_BLER_CMD_START_HS, b0)},
    {"01 01 00 00 00 00", DO(FTM_HSDPA_BLER_CMD_STOP_HS, b0)},
    {"02 01 00 00 00 00 09", DO(FTM_HSDPA_BLER_CMD_RECONFIG_HS, 9, b0), "", "", "0"},
    {"03 01 00 00 00 00 02 01", DO(FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH, 0x102, b0), "", "", "0"},
    {"04 01 00 00 00 00 01 01 02 03 04", DO(FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH, 1, kCodes, b0), "", "", "0"},
    {"05 01 00 00 00 00 02 01 03 04 01 02 03 04 05 06 07 08",
     DO(FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH, 0x102, 3, 4, kPartitions, b0), "", "", "0"},
    {"06 01 00 00 00 00 01 02 03 04 05 06 07",
     DO(FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH, 1, 2, 3, 4, 5, 6, 7, b0)},
};

class RadioTestRequests : public FtmRowsTest {
protected:
    void CheckRows(const FtmTable& rows, const std::string& sMode, const std::string& sOutcome) {
        for (const FtmRow& row : rows) {
            EXPECT_EQ(Run(row, Hex("4B 0B 00 00 00 00 00 00 00 77 05 0C 0D")), sOutcome) << row.call.sName;
            EXPECT_EQ(m_phone.Requests(), std::vector{"4B 0B " + sMode + " 00 " + row.sRequest});
            CheckLog(row);
            EXPECT_EQ(Run(row, Hex("4B 0B 00 77")), "true b0=77"); // ends early: its last byte
            EXPECT_EQ(Run(row, Hex("4B")), "true b0=4b");
        }
        m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 5);
        for (const FtmRow& row : rows)
            EXPECT_EQ(Run(row, Hex("13 4B 0B")), "false b0=1") << row.call.sName;
    }
};

TEST_F(RadioTestRequests, GsmAndEgprs) {
    CheckRows(kGsmRows, "0D", "true b0=5");
}

TEST_F(RadioTestRequests, Wcdma) {
    CheckRows(kWcdmaRows, "10", "true b0=5");
}

TEST_F(RadioTestRequests, HsdpaStatusStandsOneByteLater) {
    CheckRows(kHsdpaRows, "10", "true b0=c");
}

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
    for (const auto& test : cases) {
        const FtmRow row{"", DO(FTM_HSDPA_BLER_Configure_HS_DSCH_HSET, 0x1234, test.iHSet)};
        EXPECT_EQ(Run(row, Hex("4B 0B 00 00 00 00 00 00 00 00 05 00")), "true");
        EXPECT_EQ(m_phone.Requests(),
                  std::vector{std::string("4B 0B 10 00 05 01 00 00 00 00 34 12 ") + test.sFields});
    }
}

TEST_F(RadioTestRequests, ConfigurationsAreTrueWhenAccepted) {
    const FtmTable rows = {
        {"03 01 00 00 00 00 02 01", DO(FTM_HSDPA_BLER_Configure_PDSCH, 0x102), "", "", "PDSCH", "PDSCH"},
        {"04 01 00 00 00 00 02 01 02 03 04", DO(FTM_HSDPA_BLER_Configure_HS_SCCH, 2, kCodes), "", "",
         "HS_SCCH( iNumCodes = 2, aiCodes[4] = {1, 2, 3, 4 })", "SCCH"},
        {"05 01 00 00 00 00 02 01 03 04 01 02 03 04 05 06 07 08",
         DO(FTM_HSDPA_BLER_Configure_HS_DSCH, 0x102, 3, 4, kPartitions), "", "",
         "DSCH( iH_RNTI = 258, iNum_HARQ_Processes = 3, bMemPartitionValid = 4,  aiMemPartitionInfo[8] = {1, "
         "2, 3, 4, 5, 6, 7, 8 })",
         "DSCH"},
        {"06 01 00 00 00 00 01 02 03 04 05 06 07", DO(FTM_HSDPA_BLER_Configure_HS_DPCCH, 1, 2, 3, 4, 5, 6, 7),
         "", "",
         "HS_DPCCH( iCPICH_PowerOffset = 1, iCQI_FeedbackCycle = 2, iCQI_RepetitionFactor = 3, iDeltaCQI = "
         "4, iDeltaACK = 5, iDeltaNACK = 6, iACK_NACK_RepetitionFactor = 7)",
         "DPSCH"},
    };
    for (const FtmRow& row : rows)
        for (const bool bAccepted : {true, false}) {
            const char* sStatus = bAccepted ? "00" : "05";
            EXPECT_EQ(Run(row, Hex(std::string("4B 0B 00 00 00 00 00 00 00 00 00 ") + sStatus)),
                      bAccepted ? "true" : "false");
            EXPECT_EQ(m_phone.Requests(), std::vector{"4B 0B 10 00 " + row.sRequest});
            EXPECT_TRUE(m_log.Has(LOG_FN, "    QLIB_FTM_HSDPA_BLER_Configure_" + row.sEntry));
            EXPECT_EQ(m_log.Of(LOG_RET), std::vector{"    FTM_HSDPA_BLER_CMD_CONFIG_HS_" + row.sResult +
                                                     " = PASS, status = " + (bAccepted ? "0" : "5")});
        }
}

} // namespace
