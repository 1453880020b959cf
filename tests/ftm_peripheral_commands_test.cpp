// The commands of power management, broadcast receiver, GPS, Bluetooth, audio and camera, as bytes: what each
// sends, what it takes from an answer, what it logs.
#include "ftm_rows.h"

namespace {

const FtmTable kPmic = {
    {"00 00 00 00 00 00 00 01 B0 B1 B2 C0 C0 B3 B4 B5",
     DO(FTM_PMIC_RTC_SET_GET_TIME, 1, b0, b1, b2, h0, b3, b4, b5),
     "00 00 00 00 00 00 00 01 01 02 03 04 05 06 07 08", "?b5 b4 b3 h0 b2 b1 b0",
     "QLIB_FTM_PMIC_RTC_SET_GET_TIME-start( iReadWrite = 0x1, iTimeMode = 0xB0, iMonth = 0xB1, iDay = 0xB2, "
     "iYear = 0xC0C0, iHour = 0xB3, iMinute = 0xB4, iSecond = 0xB5)\nQLIB_FTM_PMIC_RTC_SET_GET_TIME-finish( "
     "iReadWrite = 0x1, iTimeMode = 0x1, iMonth = 0x2, iDay = 0x3, iYear = 0x504, iHour = 0x6, iMinute = "
     "0x7, iSecond = 0x8)",
     "-"},
    {"00 00 00 00 00 00 00 00 B0 B1 B2 C0 C0 B3 B4 B5",
     DO(FTM_PMIC_RTC_SET_GET_TIME, 0, b0, b1, b2, h0, b3, b4, b5),
     "00 00 00 00 00 00 00 00 01 02 03 04 05 06 07 08", "?",
     "QLIB_FTM_PMIC_RTC_SET_GET_TIME-start( iReadWrite = 0x0, iTimeMode = 0xB0, iMonth = 0xB1, iDay = 0xB2, "
     "iYear = 0xC0C0, iHour = 0xB3, iMinute = 0xB4, iSecond = 0xB5)\nQLIB_FTM_PMIC_RTC_SET_GET_TIME-finish( "
     "iReadWrite = 0x0, iTimeMode = 0xB0, iMonth = 0xB1, iDay = 0xB2, iYear = 0xC0C0, iHour = 0xB3, iMinute "
     "= 0xB4, iSecond = 0xB5)"},
    {"00 00 00 00 00 00 01 01 B6 B0 B1 B2 C0 C0 B3 B4 B5",
     DO(FTM_PMIC_RTC_SET_GET_ALARM_TIME, 1, b6, b0, b1, b2, h0, b3, b4, b5),
     "00 00 00 00 00 00 01 01 09 01 02 03 04 05 06 07 08", "?b5 b4 b3 h0 b2 b1 b0",
     "QLIB_FTM_PMIC_RTC_SET_GET_ALARM_TIME-start( iReadWrite = 0x1, iAlarmId = 0xB6, iTimeMode = 0xB0, "
     "iMonth = 0xB1, iDay = 0xB2, iYear = 0xC0C0, iHour = 0xB3, iMinute = 0xB4, iSecond = "
     "0xB5)\nQLIB_FTM_PMIC_RTC_SET_GET_ALARM_TIME-finish( iReadWrite = 0x1, iAlarmId = 0xB6, iTimeMode = "
     "0x1, iMonth = 0x2, iDay = 0x3, iYear = 0x504, iHour = 0x6, iMinute = 0x7, iSecond = 0x8)",
     "-"},
    {"00 00 00 00 00 00 02", DO(FTM_PMIC_RTC_STOP)},
    {"00 00 00 00 00 00 03 B0", DO(FTM_PMIC_RTC_GET_ALARM_STATUS, b0), "00 00 00 00 00 00 03 01", "?b0"},
    {"00 00 00 00 00 00 04 02", DO(FTM_PMIC_RTC_DISABLE_ALARM, 2)},
    {"00 00 00 00 00 00 05 01 B0", DO(FTM_PMIC_RTC_SET_GET_TIME_ADJUST, 1, b0), "00 00 00 00 00 00 05 01 07",
     "?b0"},
    {"00 00 00 00 00 00 05 00 B0", DO(FTM_PMIC_RTC_SET_GET_TIME_ADJUST, 0, b0), "00 00 00 00 00 00 05 00 07",
     "?"},

    // Chargers.
    {"01 00 00 00 00 00 00 01 02", DO(FTM_PMIC_CHG_SET_SWITCH_STATE, 1, 2)},
    {"01 00 00 00 00 00 01 00 01 02 03 04", DO(FTM_PMIC_CONFIG_WALL_PULSE_CHGR, 1, 2, 3, 4)},
    {"01 00 00 00 00 00 01 01 05", DO(FTM_PMIC_CONFIG_WALL_PULSE_CHGR_VBAT_DET, 5)},
    {"01 00 00 00 00 00 01 02 05 06", DO(FTM_PMIC_CONFIG_WALL_CHGR_TRANSISTOR_LIMITS, 5, 6)},
    {"01 00 00 00 00 00 01 03 07", DO(FTM_PMIC_CONFIG_TRICKLE_CHARGER, 7)},
    {"01 00 00 00 00 00 01 04 07 08", DO(FTM_PMIC_CONFIG_COIN_CELL_CHGR, 7, 8)},
    {"01 00 00 00 00 00 01 05 02 01 04 03 09", DO(FTM_PMIC_CONFIG_BATT_ALARM, 0x102, 0x304, 9)},
    {"01 00 00 00 00 00 01 06 0A", DO(FTM_PMIC_CONFIG_USB_TRANSISTOR_LIMITS, 10)},
    {"01 00 00 00 00 00 01 07 0A 0B", DO(FTM_PMIC_CONFIG_PWR_CTRL_LIMIT, 10, 11)},

    // Regulators.
    {"04 00 00 00 00 00 00 01 04 03 02 01", DO(FTM_PMIC_VREG_CONTROL, 1, 0x1020304)},
    {"04 00 00 00 00 00 01 01 03 02", DO(FTM_PMIC_VREG_SET_LEVEL, 1, 0x203)},
    {"04 00 00 00 00 00 02 01 02", DO(FTM_PMIC_VREG_CONFIG_SMPS_MODE, 1, 2)},
    {"04 00 00 00 00 00 03 01 02", DO(FTM_PMIC_VREG_CONFIG_LDO_PD_SW, 1, 2)},
    {"04 00 00 00 00 00 04 01 02", DO(FTM_PMIC_VREG_CONFIG_LP_MODE_CONTROL, 1, 2)},
    {"04 00 00 00 00 00 05 01 02", DO(FTM_PMIC_VREG_SMPS_CLK_CONFIG, 1, 2)},

    // Multiplexer, interrupts, speaker.
    {"03 00 00 00 00 00 00 02 01", DO(FTM_PMIC_AMUX_CONFIG, 2, 1)},
    {"05 00 00 00 00 00 00 B0 B1", DO(FTM_PMIC_INT_GET_RT_STATUS, b0, b1), "05 00 00 00 00 00 00 01 02",
     "?b1"},
    {"05 00 00 00 00 00 01 03", DO(FTM_PMIC_INT_IRQ_CLR, 3)},
    {"06 00 00 00 00 00 01 01 02 03", DO(FTM_PMIC_SPKR_CONFIG, 1, 2, 3)},
    {"06 00 00 00 00 00 00 01 02", DO(FTM_SET_PMIC_DRIVE_LEVEL, 1, 2)},
};

const FtmTable kBroadcast = {
    {"00 00 02 03", DO(MFLO_RST_PLP_STATS, 0, 2, 3)},
    {"00 00", DO(MFLO_RST_PLP_STATS, 1, 2, 3)},
    {"01 00 03", DO(MFLO_GET_FLO_STATE, 3, b0), "01 00 03 09", "b0"},
    {"02 00", DO(MFLO_START_FLO)},
    {"06 00", DO(MFLO_GET_FLO_VERSION_INFO, b0, b1, b2, b3, b4, b5, b6), "06 00 01 02 03 04 05 06 07",
     "b6 b5 b4 b3 b2 b1 b0"},
    {"09 00 56 34 12 02", DO(MFLO_ACTIVATE_FLOW, 0x123456, 2)},
    {"0A 00 56 34 12", DO(MFLO_DEACTIVATE_FLOW, 0x78123456)},
    {"0F 00 37", DO(MFLO_SET_RF_CHNL, 55)},
    {"10 00", DO(MFLO_GET_RF_CHNL, b0), "10 00 37", "b0", "", "MFLO_GET_RF_CHNL( piChannel = 55 )"},
    {"11 00 02 03", DO(MFLO_RST_MLC_PLP_STATS, 2, 3)},
    {"15 00 04", DO(MFLO_GET_OIS_PLP_STAT, 4, w0, w1, w2, w3),
     "15 00 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 80", "w3 w2 w1 w0"},
    {"16 00 04", DO(MFLO_RST_OIS_PLP_STAT, 4)},
    {"27 00 03", DO(MFLO_GET_FLO_SUBSTATE, 3, b0), "27 00 08", "b0"},
    {"2C 00 01", DO(MFLO_ENABLE_FTAP_PLP_DATA, 1)},
    {"2D 00 02", DO(MFLO_ENABLE_FTAP_OIS, 2)},
    {"2E 00 01", DO(MFLO_ENABLE_WIC_LIC, 1)},
};
// Values at fixed places, whole or not at all.
const FtmTable kBroadcastPlaces = {
    {"0B 00", DO(MFLO_GET_BOUND_FLOW_COUNT, b0), "0B 00 03", "b0", "",
     "QLIB_MFLO_GetBoundFlowCount( piBoundFlowCount = 3 )"},
    {"28 00", DO(MFLO_GET_ACTIVE_MLC_COUNT, b0), "28 00 04", "b0", "",
     "QLIB_MFLO_GetActiveMlcCount( piActiveMlcCount = 4 )"},
    {"2B 00 78 56 34 12", DO(MFLO_GET_FLO_PLP_DYN_PARAMS, 0x12345678, h0, h1, h2, h3),
     "2B 00 01 02 03 04 05 06 07 08", "h3 h2 h1 h0"},
};

const FtmTable kGps = {
    {"00 00 00 00 00 00 01", DO(FTM_AGPS_SET_TEST_MODE, 1), "", "",
     "QLIB_FTM_AGPS_SET_TEST_MODE( iOnOff = 1 )\nQLIB_SetSystemMode(iSystem_Mode = 10)()"},
    {"01 00 00 00 00 00 B0", DO(FTM_AGPS_SELF_TEST, b0), "01 00 00 00 00 00 01", "b0"},
    {"02 00 00 00 00 00", DO(FTM_AGPS_IDLE_MODE)},
    {"03 00 00 00 00 00", DO(FTM_AGPS_STANDALONE_TEST_MODE)},
    {"04 00 00 00 00 00 1F", DO(FTM_AGPS_SV_TRACKING, 31)},
    {"05 00 00 00 00 00 04 03 02 01 08 07 06 05 0A 09 0B 0D 0C",
     DO(FTM_AGPS_IQ_CAPTURE, 0x1020304, 0x5060708, 0x90A, 11, 0xC0D)},
    {"06 00 00 00 00 00", DO(FTM_AGPS_GET_IQ_DATA, &b0, &b1), "06 00 00 00 00 00 07 08", "b1 b0"},
};

const unsigned char kAddress[] = {1, 2, 3, 4, 5, 6};
const FtmTable kBluetooth = {
    {"00 00 06 00 00 00 01 02 03 04 05 06", DO(FTM_BT_HCI_USER_CMD, kAddress, 6), "", "",
     "QLIB_FTM_BT_HCI_USER_CMD( iLength = 6 )"},
    {"00 00 07 00 00 00 01 1E 20 03 05 25 04", DO(FTM_BT_SetCW, 5), "", "",
     "QLIB_FTM_BT_SetCW( iChannel = 5 )\nQLIB_FTM_BT_HCI_USER_CMD( iLength = 7 )"},
    {"00 00 0A 00 00 00 01 05 20 06 01 02 03 04 05 06", DO(FTM_BT_SetAddr, kAddress), "", "",
     "QLIB_FTM_BT_SetAddr( piAddress = 06:05:04:03:02:01 )\nQLIB_FTM_BT_HCI_USER_CMD( iLength = 10 )"},
};

const FtmTable kLog = {
    {"00 00 00 00 00 00 05 10 04 03 02 01 02 00 00 00", DO(FTM_LOG_ENABLE, 0x1005, 0x1020304, 2)},
    {"01 00 00 00 00 00 05 10", DO(FTM_LOG_DISABLE, 0x1005), "", "", "-"},
};

// Answered with a status, which is not handed out.
const FtmTable kAudio = {
    {"00 00 02 00 0C 00 02 01", DO(FTM_AUDIO_SET_PATH, 0x102)},
    {"01 00 01 00 0C 00 05", DO(FTM_AUDIO_SET_VOLUME, 5)},
    {"02 00 01 00 0C 00 01", DO(FTM_AUDIO_DSP_LOOPBACK, 1)},
    {"03 00 01 00 0C 00 01", DO(FTM_AUDIO_PCM_LOOPBACK, 1)},
    {"04 00 04 00 0C 00 02 01 04 03 06 05", DO(FTM_AUDIO_TONES_PLAY, 0x102, 0x304, 0x506)},
    {"05 00 00 00 0C 00", DO(FTM_AUDIO_TONES_STOP)},
    {"06 00 01 00 0C 00 01", DO(FTM_AUDIO_NS_CONTROL, 1)},
    {"07 00 02 00 0C 00 03 00", DO(FTM_AUDIO_PCM_CAPTURE, 3, 1)},
    {"09 00 00 00 0C 00", DO(FTM_AUDIO_PCM_CAPTURE_STOP)},
    {"0A 00 02 00 0C 00 02 01", DO(FTM_AUDIO_SET_CODECTXGAIN_ADJUST, 0x102)},
};

// Answered with a status, which comes out in h0, and with values in front of it.
const FtmTable kCamera = {
    {"00 00 0A 00 0C 00", DO(FTM_CAMERA_START, h0)},
    {"01 00 0A 00 0C 00", DO(FTM_CAMERA_STOP, h0)},
    {"02 00 10 00 0C 00 02 01 06 05 04 03", DO(FTM_CAMERA_SET_PARM, 0x102, 0x3040506, h0)},
    {"03 00 0E 00 0C 00 80 02 E0 01 B0 00", DO(FTM_CAMERA_SET_DIMENSIONS, 640, 480, 176, h0)},
    {"04 00 00 00 0C 00", DO(FTM_CAMERA_START_PREVIEW, h0)},
    {"05 00 00 00 0C 00", DO(FTM_CAMERA_STOP_PREVIEW, h0)},
    {"06 00 0A 00 10 00 04 03 02 01 06 05", DO(FTM_CAMERA_TAKE_PICTURE_AND_ENCODE, 0x1020304, 0x506, w0, h0),
     "06 00 0A 00 10 00 78 56 34 12 00 00", "h0 w0"},
    {"08 00 0C 00 0C 00 02 01", DO(FTM_CAMERA_GET_PARM, 0x102, w0, w1, w2, w3, w4, h1, h0),
     "08 00 0C 00 0C 00 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 05 00 00 00 06 00 00 00",
     "h0 h1 w4 w3 w2 w1 w0"},
    {"09 00 0A 00 15 00", DO(FTM_CAMERA_GET_INFO, h1, h2, b0, h3, h4, h0),
     "09 00 0A 00 15 00 01 00 02 00 03 04 00 05 00 00 00", "h0 h4 h3 b0 h2 h1"},
    {"0A 00 0B 00 0C 00 02", DO(FTM_CAMERA_SET_SENSOR_ID, 2, h0)},
};

class FtmPeripheralCommandsTest : public FtmRowsTest {
protected:
    struct Table {
        const char* sHeader;
        FtmTable rows;
    };
    /// The rows of a table with what they have in common: the status, and its log line.
    static FtmTable WithStatus(FtmTable rows, const std::string& sTakes) {
        for (FtmRow& row : rows) {
            row.sResult = "QLIB_" + row.call.sName + "(): PASS, status: 0";
            if (row.sAnswer.empty()) {
                row.sAnswer = row.sRequest.substr(0, 17) + " 00 00";
                row.sTakes = sTakes;
            }
        }
        return rows;
    }
    /// What a command makes of a status that is not 0: only the camera's hand it out.
    static std::string Refused(const FtmRow& row, unsigned iStatus) {
        FtmOuts outs;
        if (row.sTakes.starts_with("h0"))
            outs.h[0] = static_cast<unsigned short>(iStatus);
        return outs.Text(false);
    }

    // Any answer of the command type will do; what is taken from its end is all that there is.
    const std::vector<Table> m_plain = {{"4B 0B 0B 00", kPmic},
                                        {"4B 2B", kBroadcast},
                                        {"4B 0B 0A 00", kGps},
                                        {"4B 0B 04 00", kBluetooth},
                                        {"4B 0B 09 00", kLog}};
    const std::vector<Table> m_places = {{"4B 2B", kBroadcastPlaces}};
    const std::vector<Table> m_withStatus = {{"4B 0B 0E 00", WithStatus(kAudio, "x2")},
                                             {"4B 0B 0F 00", WithStatus(kCamera, "h0")}};
};

TEST_F(FtmPeripheralCommandsTest, RequestsAnswersAndLog) {
    m_diag.SetSystemMode(FTM_MODE_ID_FACTORY);
    for (const auto& tables : {m_plain, m_places, m_withStatus})
        for (const auto& [sHeader, rows] : tables)
            CheckWire(rows, sHeader);
    EXPECT_EQ(m_diag.GetSystemMode(), FTM_MODE_ID_AGPS); // GPS test mode sets it
}

TEST_F(FtmPeripheralCommandsTest, ValuesAreTakenFromTheEndOfWhatThereIs) {
    for (const auto& [sHeader, rows] : m_plain) {
        CheckShortAnswers(rows, 1, sHeader);
        CheckWrongHeaders(rows, false, sHeader);
    }
    for (const FtmRow& row : kBroadcastPlaces)
        for (Bytes answer = GoodAnswer(row, "4B 2B"); answer.size() > 1;) {
            answer.pop_back();
            EXPECT_EQ(Run(row, answer), "false") << row.call.sName << " " << answer.size();
        }
}

TEST_F(FtmPeripheralCommandsTest, StatusLiesBehindTheHeader) {
    constexpr size_t kWithStatus = 12;
    for (const auto& [sHeader, rows] : m_withStatus)
        for (const FtmRow& row : rows) {
            Bytes answer = GoodAnswer(row, sHeader);
            // A refusal need not carry the values.
            Bytes refusal(answer.begin(), answer.begin() + kWithStatus);
            refusal[kWithStatus - 2] = 7;
            refusal[kWithStatus - 1] = 1;
            EXPECT_EQ(Run(row, refusal), Refused(row, 0x107)) << row.call.sName;
            while (answer.size() > 1) {
                answer.pop_back();
                const size_t iSize = answer.size();
                const unsigned iStatus =
                    iSize < kWithStatus ? 1U : answer[iSize - 1] << 8 | answer[iSize - 2];
                EXPECT_EQ(Run(row, answer), Refused(row, iStatus)) << row.call.sName << " " << iSize;
                const std::string sFail = "(): FAIL, status: " + std::to_string(iStatus);
                EXPECT_NE(m_log.Of(LOG_RET).at(0).find(sFail), std::string::npos);
            }
        }
}

TEST_F(FtmPeripheralCommandsTest, UnansweredCommandsChangeNothing) {
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 5);
    for (const auto& tables : {m_plain, m_places, m_withStatus})
        for (const auto& [sHeader, rows] : tables)
            for (const FtmRow& row : rows)
                EXPECT_EQ(Run(row, Hex("13")), Refused(row, 1)) << row.call.sName;
}

} // namespace
