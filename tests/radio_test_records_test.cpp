// The log records of the radio tests: what they change in the status blocks, and what they write to the log.
#include "radio_session_fixture.h"

namespace {

/// A status block as hex.
template <class State, class Get>
std::string Block(Get get) {
    State state;
    EXPECT_TRUE(get(&state));
    const auto* pBytes = reinterpret_cast<const uint8_t*>(&state);
    return handset::ToHex(Bytes(pBytes, pBytes + sizeof state));
}

class RadioTestRecords : public RadioSessionTest {
    void Begin() override {}

public:
    std::string Gsm() {
        return Block<GSM_BER_State>([this](auto* p) { return m_diag.FTM_GSM_BER_GetStatus(p); });
    }
    std::string Egprs() {
        return Block<EGPRS_BER_State>([this](auto* p) { return m_diag.FTM_EGPRS_BER_GetStatus(p); });
    }
    std::string Wcdma() {
        return Block<WCDMA_BER_State>([this](auto* p) { return m_diag.FTM_WCDMA_BER_GetStatus(p); });
    }
    std::string Hsdpa() {
        return Block<HSDPA_BER_State>([this](auto* p) { return m_diag.FTM_HSDPA_BER_GetStatus(p); });
    }

    RadioTestRecords() { m_diag.SetLogFlags(LOG_ASYNC); }
};

TEST_F(RadioTestRecords, Gsm) {
    const struct {
        const char* sRecord;
        const char* sHead; // bytes 0 to 15
        const char* sTypes;
        const char* sMetrics;
        Lines log;
    } cases[] = {
        {"00",
         "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00",
         "",
         "00 00",
         {"LOG_FTM2_START_GSM_MODE_CNF"}},
        {"01 01 22",
         "01 01 00 00 00 00 00 00 01 22 00 00 00 00 00 00",
         "",
         "00 00",
         {"LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF", "         LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF.bSCCH_Found = 1",
          "            LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF.iSchData = 34"}},
        {"03 00",
         "01 01 00 01 00 00 00 00 01 22 00 00 00 01 00 00",
         "",
         "00 00",
         {"LOG_FTM2_CHANNEL_ASSIGN_CNF",
          "         LOG_FTM2_CHANNEL_ASSIGN_CNF.iCHANNEL_ASSIGN_CNF_status = 1"}},
        {"03 01",
         "01 01 00 01 00 00 00 00 01 22 00 00 00 00 00 00",
         "",
         "00 00",
         {"LOG_FTM2_CHANNEL_ASSIGN_CNF",
          "         LOG_FTM2_CHANNEL_ASSIGN_CNF.iCHANNEL_ASSIGN_CNF_status = 0"}},
        {"06 07 02",
         "01 01 00 01 00 00 01 00 01 22 00 00 00 00 07 02",
         "00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 02",
         "00 00",
         {"LOG_FTM2_PH_DATA_IND", "      LOG_FTM2_PH_DATA_IND.iPH_ChannelType = 7",
          "         LOG_FTM2_PH_DATA_IND.iPH_CRC_Pass = 2"}},
        {"06 09 01",
         "01 01 00 01 00 00 01 00 01 22 00 00 00 00 09 01",
         "00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 02",
         "00 00",
         {"LOG_FTM2_PH_DATA_IND", "      LOG_FTM2_PH_DATA_IND.iPH_ChannelType = 9",
          "         LOG_FTM2_PH_DATA_IND.iPH_CRC_Pass = 1"}},
        {"07 41 42",
         "01 01 00 01 00 00 01 01 01 22 00 00 00 00 09 01",
         "00 00 00 00 00 00 00 01 00 00 00 00 00 00 00 02",
         "41 42",
         {"LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT",
          "      LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT.iDED_RPtRxLev_Full = 65",
          "     LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT.iDED_RPtRxQual_Full = 66"}},
    };
    for (const auto& test : cases) {
        m_log.Clear();
        Report(5, test.sRecord);
        const std::string sTypes = *test.sTypes != '\0' ? test.sTypes : Times(16, "00");
        EXPECT_EQ(Gsm(), std::string(test.sHead) + " " + sTypes + " " + test.sMetrics) << test.sRecord;
        EXPECT_EQ(m_log.Of(LOG_ASYNC), test.log);
    }
    const std::string sBefore = Gsm();
    m_log.Clear();
    for (const char* sIgnored :
         {"08 01 01", "3F 01 01", "43 01 01", "FF", "", "01 01", "06 07", "07 41", "03"})
        Report(5, sIgnored);
    Report(6, "0F 01");
    EXPECT_EQ(Gsm(), sBefore);
    EXPECT_EQ(m_log.Of(LOG_ASYNC), Lines{});
    for (int iId = -1; iId <= 8; ++iId)
        EXPECT_EQ(m_diag.FTM_GSM_BER_GetEventStatus(log_FTM2_GSM_BER_log_id_enum{iId}),
                  iId == 0 || iId == 1 || iId == 3 || iId == 6 || iId == 7);
    EXPECT_TRUE(m_diag.FTM_GSM_BER_ClearStatus());
    EXPECT_EQ(Gsm(), Times(8, "00") + " 01 22 00 00 00 00 09 01 " + Times(16, "00") + " 41 42");
}

TEST_F(RadioTestRecords, OtherTests) {
    const struct {
        uint8_t iType;
        const char* sRecord;
        std::string (RadioTestRecords::*block)();
        std::string sBlock;
        Lines log;
    } cases[] = {
        {5,
         "40 00 01",
         &RadioTestRecords::Egprs,
         "01 00 00 00 02 01 00",
         {"FTM_LOG_EGPRS_BER_TBF_IND", "         FTM_LOG_EGPRS_BER_TBF_IND.type = 0",
          "        FTM_LOG_EGPRS_BER_TBF_IND.event = 1"}},
        {5,
         "40 01 00",
         &RadioTestRecords::Egprs,
         "01 00 00 00 00 01 00",
         {"FTM_LOG_EGPRS_BER_TBF_IND", "         FTM_LOG_EGPRS_BER_TBF_IND.type = 1",
          "        FTM_LOG_EGPRS_BER_TBF_IND.event = 0"}},
        {5,
         "40 02 01",
         &RadioTestRecords::Egprs,
         "01 00 00 00 00 01 00",
         {"FTM_LOG_EGPRS_BER_TBF_IND", "         FTM_LOG_EGPRS_BER_TBF_IND.type = 2",
          "        FTM_LOG_EGPRS_BER_TBF_IND.event = 1"}},
        {5, "41", &RadioTestRecords::Egprs, "01 01 00 00 00 01 00", {"FTM_LOG_EGPRS_BER_MAC_PH_DATA_IND"}},
        {5,
         "42 44",
         &RadioTestRecords::Egprs,
         "01 01 01 00 00 01 44",
         {"FTM_LOG_EGPRS_BER_SERVING_MEAS_IND", "         LOG_FTM2_CHANNEL_ASSIGN_CNF.RxLev_average = 68"}},
        {6,
         "03 01 22 33 44 55",
         &RadioTestRecords::Wcdma,
         "00 00 00 01 00 00 00 00 01 22 00 00 00 44 " + Times(22, "00"),
         {"LOG_FTM2_WCDMA_ACQUIRE_CNF ", "        LOG_FTM2_WCDMA_ACQUIRE_CNF.status = 1",
          "     LOG_FTM2_WCDMA_ACQUIRE_CNF.frequency = 34",
          "      LOG_FTM2_WCDMA_ACQUIRE_CNF.scr_code = 68"}},
        {6,
         "04 02",
         &RadioTestRecords::Wcdma,
         "00 00 00 01 01 00 00 00 01 22 00 00 00 44 00 00 00 02 " + Times(18, "00"),
         {"LOG_FTM2_WCDMA_CPHY_SETUP_CNF", "         LOG_FTM2_WCDMA_CPHY_SETUP_CNF.status = 2"}},
        {6,
         "05 03",
         &RadioTestRecords::Wcdma,
         "00 00 00 01 01 01 00 00 01 22 00 00 00 44 00 00 00 02 03 " + Times(17, "00"),
         {"LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND",
          "      LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND.status = 3"}},
        {6,
         "07",
         &RadioTestRecords::Wcdma,
         "00 00 00 01 01 01 00 01 01 22 00 00 00 44 00 00 00 02 03 " + Times(17, "00"),
         {"LOG_FTM2_WCDMA_RL_FAILURE_IND"}},
        {6,
         "40 11",
         &RadioTestRecords::Hsdpa,
         "01 00 00 11 00 00",
         {"FTM_LOG_HSDPA_HS_CHANNEL_START_IND", "        FTM_LOG_HSDPA_HS_CHANNEL_START_IND.status = 17"}},
        {6,
         "41 12",
         &RadioTestRecords::Hsdpa,
         "01 01 00 11 12 00",
         {"FTM_LOG_HSDPA_HS_CHANNEL_STOP_IND", "        FTM_LOG_HSDPA_HS_CHANNEL_STOP_IND.status = 18"}},
        {6,
         "42 13",
         &RadioTestRecords::Hsdpa,
         "01 01 01 11 12 13",
         {"FTM_LOG_HSDPA_HS_CHANNEL_RECFG_IND",
          "        FTM_LOG_HSDPA_HS_CHANNEL_RECFG_IND.ReconfigureStatus = 19"}},
    };
    EXPECT_TRUE(m_diag.FTM_EGPRS_BER_ClearStatus());
    for (const auto& test : cases) {
        m_log.Clear();
        Report(test.iType, test.sRecord);
        EXPECT_EQ((this->*test.block)(), test.sBlock) << test.sRecord;
        EXPECT_EQ(m_log.Of(LOG_ASYNC), test.log);
    }
    EXPECT_EQ(Gsm(), Times(34, "00"));
    for (int iId = -1; iId <= 8; ++iId)
        EXPECT_EQ(m_diag.FTM_WCDMA_BER_GetEventStatus(log_FTM2_WCDMA_BER_log_id_enum{iId}),
                  iId == 3 || iId == 4 || iId == 5 || iId == 7);
    EXPECT_TRUE(m_diag.FTM_EGPRS_BER_ClearStatus());
    EXPECT_TRUE(m_diag.FTM_WCDMA_BER_ClearStatus());
    EXPECT_TRUE(m_diag.FTM_HSDPA_BER_ClearStatus());
    EXPECT_EQ(Egprs(), "00 00 00 00 02 02 44");
    EXPECT_EQ(Wcdma(), Times(8, "00") + " 01 22 00 00 00 44 00 00 00 02 03 " + Times(17, "00"));
    EXPECT_EQ(Hsdpa(), "00 00 00 11 12 13");
}

} // namespace
