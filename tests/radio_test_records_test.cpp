// The log records of the radio tests: their effect on the status blocks, and their log lines.
#include <map>

#include "radio_session_fixture.h"

namespace {

class RadioTestRecords : public RadioSessionTest {
protected:
    RadioTestRecords() {
        m_diag.SetLogFlags(LOG_ASYNC);
        m_diag.FTM_EGPRS_BER_ClearStatus();
        EXPECT_EQ(Changes(), "E4=02 E5=02 "); // no event
    }

    /// Returns the bytes of all status blocks that have changed since the last call: "G1=01 G9=22" (G, E, W,
    /// H).
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

private:
    std::map<char, Bytes> m_before;
};

TEST_F(RadioTestRecords, UpdateTheirBlockAndAreLogged) {
    const struct {
        uint8_t iType;
        const char* sRecord;
        const char* sChanges;
        std::string sLogged = ""; // the last line, if it is checked
    } cases[] = {
        {5, "00", "G0=01 ", "LOG_FTM2_START_GSM_MODE_CNF"},
        {5, "01 01 22", "G1=01 G8=01 G9=22 "},
        {5, "03 00", "G3=01 G13=01 "},
        {5, "03 01", "G13=00 "},
        {5, "06 07 02", "G6=01 G14=07 G15=02 G23=01 G31=02 "},
        {5, "06 09 01", "G14=09 G15=01 "},
        {5, "07 41 42", "G7=01 G32=41 G33=42 ",
         "     LOG_FTM2_FTM_LOG_GSM_BER_DED_RPT.iDED_RPtRxQual_Full = 66"},
        {5, "40 00 01", "E0=01 E5=01 "},
        {5, "40 01 00", "E4=00 "},
        {5, "40 02 01", ""},
        {5, "41", "E1=01 "},
        {5, "42 44", "E2=01 E6=44 "},
        {6, "03 01 22 33 44 55", "W3=01 W8=01 W9=22 W13=44 "},
        {6, "04 02", "W4=01 W17=02 "},
        {6, "05 03", "W5=01 W18=03 "},
        {6, "07", "W7=01 "},
        {6, "40 11", "H0=01 H3=11 "},
        {6, "41 12", "H1=01 H4=12 "},
        {6, "42 13", "H2=01 H5=13 "},
    };
    for (const auto& test : cases) {
        m_log.Clear();
        Report(test.iType, test.sRecord);
        EXPECT_EQ(Changes(), test.sChanges) << test.sRecord;
        EXPECT_TRUE(test.sLogged.empty() || m_log.Of(LOG_ASYNC).back() == test.sLogged) << test.sRecord;
    }
    for (const char* sIgnored : {"08 01 01", "3F 01 01", "43 01 01", "", "01 01", "07 41"})
        Report(5, sIgnored);
    for (const char* sIgnored : {"0F 01", "03 01 22 33", "40"})
        Report(6, sIgnored);
    EXPECT_EQ(Changes(), "");
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
