// The requests of the radio tests: their bytes, their status and their log lines.
#include "ftm_rows.h"

namespace {

const unsigned char kCodes[] = {1, 2, 3, 4};
const unsigned char kPartitions[] = {1, 2, 3, 4, 5, 6, 7, 8};

// The status is returned in b0.
const FtmRows kGsmRows = {
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
     DO(FTM_EGPRS_BER_CONFIGURE_DL_TBF, 0, 0, 0x1234, 3, 1, 2, 0, 0, b0)},
    {"03 01 00 00 00 00 01 02 03 04 05 06 07", DO(FTM_EGPRS_BER_CONFIGURE_UL_TBF, 1, 2, 3, 4, 5, 6, 7, b0)},
    {"04 01 00 00 00 00", DO(FTM_EGPRS_BER_RELEASE_ALL_TBF, b0)},
    {"05 01 00 00 00 00", DO(FTM_EGPRS_BER_RELEASE_UL_TBF, b0)},
};

const std::string kRmcBytes = "00 00 00 00 01 02 01 02 03 04 03 04 05 06 07 08";

const FtmRows kWcdmaRows = {
    {"00 00 00 00 00 00", DO(FTM_WCDMA_START_MODE_REQ, b0)},
    {"01 00 00 00 00 00", DO(FTM_WCDMA_STOP_MODE_REQ, b0)},
    {"02 00 00 00 00 00", DO(FTM_WCDMA_START_IDLE_MODE_REQ, b0)},
    {"03 00 00 00 00 00 01 02 04 03 06 05 0A 09 08 07",
     DO(FTM_WCDMA_ACQUIRE_REQ, 1, 2, 0x304, 0x506, 0x708090A, b0)},
    {"04 00 " + kRmcBytes, DO(FTM_WCDMA_RMC_DCH_SETUP_REQ, 1, 2, 0x4030201, 3, 4, 0x605, 0x807, b0)},
    {"05 00 " + kRmcBytes + " 09 0A 0C 0B 0D 0E 0F 10 11 13 12",
     DO(FTM_WCDMA_RMC_DCH_SETUP_REQ_V2B, 1, 2, 0x4030201, 3, 4, 0x605, 0x807, 9, 10, 0xB0C, 13, 14, 15, 16,
        17, 0x1213, b0)},
    {"05 00 " + kRmcBytes + " 09 0A C4 FF 00 04 00 01 03 13 12",
     DO(FTM_WCDMA_RMC_DCH_SETUP_REQ_V2, 1, 2, 0x4030201, 3, 4, 0x605, 0x807, 9, 10, 0x1213, b0)},
};

const FtmRows kHsdpaRows = {
    {"00 01 00 00 00 00", DO(FTM_HSDPA_BLER_CMD_START_HS, b0)},
    {"01 01 00 00 00 00", DO(FTM_HSDPA_BLER_CMD_STOP_HS, b0)},
    {"02 01 00 00 00 00 09", DO(FTM_HSDPA_BLER_CMD_RECONFIG_HS, 9, b0)},
    {"03 01 00 00 00 00 02 01", DO(FTM_HSDPA_BLER_CMD_CONFIG_HS_PDSCH, 0x102, b0)},
    {"04 01 00 00 00 00 01 01 02 03 04", DO(FTM_HSDPA_BLER_CMD_CONFIG_HS_SCCH, 1, kCodes, b0)},
    {"05 01 00 00 00 00 02 01 03 04 01 02 03 04 05 06 07 08",
     DO(FTM_HSDPA_BLER_CMD_CONFIG_HS_DSCH, 0x102, 3, 4, kPartitions, b0)},
    {"06 01 00 00 00 00 01 02 03 04 05 06 07",
     DO(FTM_HSDPA_BLER_CMD_CONFIG_HS_DPCCH, 1, 2, 3, 4, 5, 6, 7, b0)},
};

using RadioTestRequests = FtmRowsTest;

/// Sets the same response for all rows; its seventh or eighth byte after the header is the status.
FtmTable Table(const std::string& sHeader, FtmRows rows, const char* sStatus) {
    for (FtmRow& row : rows) {
        row.sAnswer = "00 00 00 00 00 77 05 0C 0D";
        row.sOuts = sStatus;
        row.sResult = "-";
    }
    return {sHeader, rows, "false b0=1"};
}

TEST_F(RadioTestRequests, StatusOfHsdpaIsOneByteLater) {
    Check({Table("4B 0B 0D 00", kGsmRows, "b0=5"), Table("4B 0B 10 00", kWcdmaRows, "b0=5"),
           Table("4B 0B 10 00", kHsdpaRows, "b0=c")});
}

TEST_F(RadioTestRequests, ResponsesWithoutAStatusAreFailures) {
    const std::string sHeader = "4B 0B 0D 00 00 00 00 00 00 00";
    for (const FtmRows& rows : {kGsmRows, kWcdmaRows, kHsdpaRows})
        for (const FtmRow& row : rows)
            EXPECT_EQ(Run(row.call, Hex(sHeader)), "false b0=1") << row.call.sName;
    EXPECT_EQ(Run(kHsdpaRows[0].call, Hex(sHeader + " 05")), "false b0=1");
}

TEST_F(RadioTestRequests, ReferenceSets) {
    const std::pair<int, std::string> cases[] = {
        {1, "02 01 0B 0B 00 00 00 00 00 00"}, {4, "03 01 0B 0B 0B 00 00 00 00 00"},
        {6, "06 01 0B 0B 0B 0B 0B 0B 00 00"}, {7, "02 01 08 08 00 00 00 00 00 00"},
        {9, "09 01 00 00 00 00 00 00 00 00"}, {255, "06 01 15 15 15 15 15 15 00 00"}};
    for (const auto& [iHSet, sFields] : cases) { // the fields after the H-RNTI
        const FtmCall call =
            DO(FTM_HSDPA_BLER_Configure_HS_DSCH_HSET, 0x1234, static_cast<unsigned char>(iHSet));
        EXPECT_EQ(Run(call, Hex("4B 0B 00 00 00 00 00 00 00 00 05 00")), "true");
        EXPECT_EQ(m_phone.Requests(), Lines{"4B 0B 10 00 05 01 00 00 00 00 34 12 " + sFields});
    }
}

TEST_F(RadioTestRequests, ConfigurationsSucceedWhenAccepted) {
    const FtmRows rows = {
        {"03 01 00 00 00 00 02 01", DO(FTM_HSDPA_BLER_Configure_PDSCH, 0x102), "", "", "PDSCH"},
        {"04 01 00 00 00 00 02 01 02 03 04", DO(FTM_HSDPA_BLER_Configure_HS_SCCH, 2, kCodes), "", "",
         "HS_SCCH( iNumCodes = 2, aiCodes[4] = {1, 2, 3, 4 })"},
        {"05 01 00 00 00 00 02 01 03 04 01 02 03 04 05 06 07 08",
         DO(FTM_HSDPA_BLER_Configure_HS_DSCH, 0x102, 3, 4, kPartitions), "", "",
         "DSCH( iH_RNTI = 258, iNum_HARQ_Processes = 3, bMemPartitionValid = 4,  aiMemPartitionInfo[8] = {1, "
         "2, 3, 4, 5, 6, 7, 8 })"},
        {"06 01 00 00 00 00 01 02 03 04 05 06 07", DO(FTM_HSDPA_BLER_Configure_HS_DPCCH, 1, 2, 3, 4, 5, 6, 7),
         "", "",
         "HS_DPCCH( iCPICH_PowerOffset = 1, iCQI_FeedbackCycle = 2, iCQI_RepetitionFactor = 3, iDeltaCQI = "
         "4, iDeltaACK = 5, iDeltaNACK = 6, iACK_NACK_RepetitionFactor = 7)"},
    };
    for (const FtmRow& row : rows) {
        EXPECT_EQ(Run(row.call, Hex("4B 0B 00 00 00 00 00 00 00 00 00 05")), "false");
        EXPECT_EQ(Run(row.call, Hex("4B 0B 00 00 00 00 00 00 00 00 05 00")), "true");
        EXPECT_EQ(m_phone.Requests(), Lines{"4B 0B 10 00 " + row.sRequest});
        EXPECT_TRUE(m_log.Has(LOG_FN, "    QLIB_FTM_HSDPA_BLER_Configure_" + row.sEntry));
    }
}

} // namespace
