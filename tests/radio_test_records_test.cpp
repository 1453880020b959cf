// The log records of the radio tests: what they change in the status blocks, and what they write to the log.
#include <map>

#include "radio_session_fixture.h"

namespace {

class RadioTestRecords : public RadioSessionTest {
    void Begin() override {}

protected:
    RadioTestRecords() {
        m_diag.SetLogFlags(LOG_ASYNC);
        m_diag.FTM_EGPRS_BER_ClearStatus();
        EXPECT_EQ(Changes(), "E4=02 E5=02 "); // no event
    }

    /// The bytes of all status blocks that have changed since the last call: "G1=01 G9=22" (G, E, W, H).
    std::string Changes() {
        GSM_BER_State gsm;
        EGPRS_BER_State egprs;
        WCDMA_BER_State wcdma;
        HSDPA_BER_State hsdpa;
        EXPECT_TRUE(m_diag.FTM_GSM_BER_GetStatus(&gsm) && m_diag.FTM_EGPRS_BER_GetStatus(&egprs) &&
                    m_diag.FTM_WCDMA_BER_GetStatus(&wcdma) && m_diag.FTM_HSDPA_BER_GetStatus(&hsdpa));
        std::string sText;
        const auto compare = [&](char cBlock, const auto& state) {
            Bytes& before = m_before[cBlock];
            before.resize(sizeof state);
            for (size_t i = 0; i < sizeof state; ++i) {
                const uint8_t iByte = reinterpret_cast<const uint8_t*>(&state)[i];
                if (iByte != before[i])
                    sText += cBlock + std::to_string(i) + "=" + handset::ToHex({iByte}) + " ";
                before[i] = iByte;
            }
        };
        compare('G', gsm);
        compare('E', egprs);
        compare('W', wcdma);
        compare('H', hsdpa);
        return sText;
    }

    static std::string Joined(const Lines& lines) {
        std::string sText;
        for (const std::string& sLine : lines)
            sText += (sText.empty() ? "" : "\n") + sLine;
        return sText;
    }

private:
    std::map<char, Bytes> m_before;
};

TEST_F(RadioTestRecords, ChangeTheirBlockAndAreLogged) {
    const struct {
        uint8_t iType;
        const char* sRecord;
        const char* sChanges;
        const char* sName;
        std::string sLog; // behind the name; @ stands for it
    } cases[] = {
        {5, "00", "G0=01 ", "LOG_FTM2_START_GSM_MODE_CNF", ""},
        {5, "01 01 22", "G1=01 G8=01 G9=22 ", "LOG_FTM2_SELECT_SPECIFIC_BCCH_CNF",
         "\n         @.bSCCH_Found = 1\n            @.iSchData = 34"},
        {5, "03 00", "G3=01 G13=01 ", "LOG_FTM2_CHANNEL_ASSIGN_CNF",
         "\n         @.iCHANNEL_ASSIGN_CNF_status = 1"},
        {5, "03 01", "G13=00 ", "LOG_FTM2_CHANNEL_ASSIGN_CNF", "\n         @.iCHANNEL_ASSIGN_CNF_status = 0"},
        {5, "06 07 02", "G6=01 G14=07 G15=02 G23=01 G31=02 ", "LOG_FTM2_PH_DATA_IND",
         "\n      @.iPH_ChannelType = 7\n         @.iPH_CRC_Pass = 2"},
        {5, "06 09 01", "G14=09 G15=01 ", "LOG_FTM2_PH_DATA_IND",
         "\n      @.iPH_ChannelType = 9\n         @.iPH_CRC_Pass = 1"},
        {5, "07 41 42", "G7=01 G32=41 G33=42 ", "LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT",
         "\n      @.iDED_RPtRxLev_Full = 65\n     @.iDED_RPtRxQual_Full = 66"},
        {5, "40 00 01", "E0=01 E5=01 ", "FTM_LOG_EGPRS_BER_TBF_IND",
         "\n         @.type = 0\n        @.event = 1"},
        {5, "40 01 00", "E4=00 ", "FTM_LOG_EGPRS_BER_TBF_IND", "\n         @.type = 1\n        @.event = 0"},
        {5, "40 02 01", "", "FTM_LOG_EGPRS_BER_TBF_IND", "\n         @.type = 2\n        @.event = 1"},
        {5, "41", "E1=01 ", "FTM_LOG_EGPRS_BER_MAC_PH_DATA_IND", ""},
        {5, "42 44", "E2=01 E6=44 ", "FTM_LOG_EGPRS_BER_SERVING_MEAS_IND",
         "\n         LOG_FTM2_CHANNEL_ASSIGN_CNF.RxLev_average = 68"},
        {6, "03 01 22 33 44 55", "W3=01 W8=01 W9=22 W13=44 ", "LOG_FTM2_WCDMA_ACQUIRE_CNF",
         " \n        @.status = 1\n     @.frequency = 34\n      @.scr_code = 68"},
        {6, "04 02", "W4=01 W17=02 ", "LOG_FTM2_WCDMA_CPHY_SETUP_CNF", "\n         @.status = 2"},
        {6, "05 03", "W5=01 W18=03 ", "LOG_FTM2_WCDMA_PHYCHAN_ESTABLISHED_IND", "\n      @.status = 3"},
        {6, "07", "W7=01 ", "LOG_FTM2_WCDMA_RL_FAILURE_IND", ""},
        {6, "40 11", "H0=01 H3=11 ", "FTM_LOG_HSDPA_HS_CHANNEL_START_IND", "\n        @.status = 17"},
        {6, "41 12", "H1=01 H4=12 ", "FTM_LOG_HSDPA_HS_CHANNEL_STOP_IND", "\n        @.status = 18"},
        {6, "42 13", "H2=01 H5=13 ", "FTM_LOG_HSDPA_HS_CHANNEL_RECFG_IND",
         "\n        @.ReconfigureStatus = 19"},
    };
    for (const auto& test : cases) {
        m_log.Clear();
        Report(test.iType, test.sRecord);
        EXPECT_EQ(Changes(), test.sChanges) << test.sRecord;
        std::string sLog = test.sName + test.sLog;
        for (size_t i = 0; (i = sLog.find('@')) != std::string::npos;)
            sLog.replace(i, 1, test.sName);
        EXPECT_EQ(Joined(m_log.Of(LOG_ASYNC)), sLog);
    }
    m_log.Clear();
    for (const char* sIgnored :
         {"08 01 01", "3F 01 01", "43 01 01", "FF", "", "01 01", "06 07", "07 41", "03"})
        Report(5, sIgnored);
    for (const char* sIgnored : {"0F 01", "03 01 22 33", "04", "40"})
        Report(6, sIgnored);
    EXPECT_EQ(Changes(), "");
    EXPECT_EQ(m_log.Of(LOG_ASYNC), Lines{});
    for (int iId = -1; iId <= 8; ++iId) {
        EXPECT_EQ(m_diag.FTM_GSM_BER_GetEventStatus(log_FTM2_GSM_BER_log_id_enum{iId}),
                  iId == 0 || iId == 1 || iId == 3 || iId == 6 || iId == 7);
        EXPECT_EQ(m_diag.FTM_WCDMA_BER_GetEventStatus(log_FTM2_WCDMA_BER_log_id_enum{iId}),
                  iId == 3 || iId == 4 || iId == 5 || iId == 7);
    }
    EXPECT_TRUE(m_diag.FTM_GSM_BER_ClearStatus() && m_diag.FTM_EGPRS_BER_ClearStatus() &&
                m_diag.FTM_WCDMA_BER_ClearStatus() && m_diag.FTM_HSDPA_BER_ClearStatus());
    EXPECT_EQ(Changes(),
              "G0=00 G1=00 G3=00 G6=00 G7=00 G23=00 G31=00 E0=00 E1=00 E2=00 E4=02 E5=02 "
              "W3=00 W4=00 W5=00 W7=00 H0=00 H1=00 H2=00 ");
}

} // namespace
