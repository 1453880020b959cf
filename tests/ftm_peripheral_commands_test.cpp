// The commands for power management, broadcast receiver, GPS, Bluetooth, audio and camera, as bytes: what
// each one sends, reads from a response and logs.
#include "ftm_rows.h"

namespace {

const FtmRows kPmic = {
    {"00 00 00 00 00 00 00 01 B0 B1 B2 C0 C0 B3 B4 B5",
     DO(FTM_PMIC_RTC_SET_GET_TIME, 1, b0, b1, b2, h0, b3, b4, b5),
     "00 00 00 00 00 00 00 01 01 02 03 04 05 06 07 08", "b0=1 b1=2 b2=3 b3=6 b4=7 b5=8 h0=504",
     "QLIB_FTM_PMIC_RTC_SET_GET_TIME-start( iReadWrite = 0x1, iTimeMode = 0xB0, iMonth = 0xB1, iDay = 0xB2, "
     "iYear = 0xC0C0, iHour = 0xB3, iMinute = 0xB4, iSecond = 0xB5)\nQLIB_FTM_PMIC_RTC_SET_GET_TIME-finish( "
     "iReadWrite = 0x1, iTimeMode = 0x1, iMonth = 0x2, iDay = 0x3, iYear = 0x504, iHour = 0x6, iMinute = "
     "0x7, iSecond = 0x8)",
     "-"},
    {"00 00 00 00 00 00 00 00 B0 B1 B2 C0 C0 B3 B4 B5",
     DO(FTM_PMIC_RTC_SET_GET_TIME, 0, b0, b1, b2, h0, b3, b4, b5),
     "00 00 00 00 00 00 00 00 01 02 03 04 05 06 07 08", "", "*"},
    {"00 00 00 00 00 00 01 01 B6 B0 B1 B2 C0 C0 B3 B4 B5",
     DO(FTM_PMIC_RTC_SET_GET_ALARM_TIME, 1, b6, b0, b1, b2, h0, b3, b4, b5),
     "00 00 00 00 00 00 01 01 09 01 02 03 04 05 06 07 08", "b0=1 b1=2 b2=3 b3=6 b4=7 b5=8 h0=504", "*", "-"},
    {"00 00 00 00 00 00 02", DO(FTM_PMIC_RTC_STOP)},
    {"00 00 00 00 00 00 03 B0", DO(FTM_PMIC_RTC_GET_ALARM_STATUS, b0), "00 00 00 00 00 00 03 01", "b0=1"},
    {"00 00 00 00 00 00 04 02", DO(FTM_PMIC_RTC_DISABLE_ALARM, 2)},
    {"00 00 00 00 00 00 05 01 B0", DO(FTM_PMIC_RTC_SET_GET_TIME_ADJUST, 1, b0), "00 00 00 00 00 00 05 01 07",
     "b0=7"},

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
     "b1=2"},
    {"05 00 00 00 00 00 01 03", DO(FTM_PMIC_INT_IRQ_CLR, 3)},
    {"06 00 00 00 00 00 01 01 02 03", DO(FTM_PMIC_SPKR_CONFIG, 1, 2, 3)},
    {"06 00 00 00 00 00 00 01 02", DO(FTM_SET_PMIC_DRIVE_LEVEL, 1, 2)},
};

const FtmRows kBroadcast = {
    {"00 00 02 03", DO(MFLO_RST_PLP_STATS, 0, 2, 3)},
    {"00 00", DO(MFLO_RST_PLP_STATS, 1, 2, 3)},
    {"01 00 03", DO(MFLO_GET_FLO_STATE, 3, b0), "01 00 03 09", "b0=9"},
    {"02 00", DO(MFLO_START_FLO)},
    {"06 00", DO(MFLO_GET_FLO_VERSION_INFO, b0, b1, b2, b3, b4, b5, b6), "06 00 01 02 03 04 05 06 07",
     "b0=1 b1=2 b2=3 b3=4 b4=5 b5=6 b6=7"},
    {"09 00 56 34 12 02", DO(MFLO_ACTIVATE_FLOW, 0x123456, 2)},
    {"0A 00 56 34 12", DO(MFLO_DEACTIVATE_FLOW, 0x78123456)},
    {"0F 00 37", DO(MFLO_SET_RF_CHNL, 55)},
    {"10 00", DO(MFLO_GET_RF_CHNL, b0), "10 00 37", "b0=37", "", "MFLO_GET_RF_CHNL( piChannel = 55 )"},
    {"11 00 02 03", DO(MFLO_RST_MLC_PLP_STATS, 2, 3)},
    {"15 00 04", DO(MFLO_GET_OIS_PLP_STAT, 4, w0, w1, w2, w3),
     "15 00 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 80", "w0=1 w1=2 w2=3 w3=80000004"},
    {"16 00 04", DO(MFLO_RST_OIS_PLP_STAT, 4)},
    {"27 00 03", DO(MFLO_GET_FLO_SUBSTATE, 3, b0), "27 00 08", "b0=8"},
    {"2C 00 01", DO(MFLO_ENABLE_FTAP_PLP_DATA, 1)},
    {"2D 00 02", DO(MFLO_ENABLE_FTAP_OIS, 2)},
    {"2E 00 01", DO(MFLO_ENABLE_WIC_LIC, 1)},

    // Values at fixed offsets.
    {"0B 00", DO(MFLO_GET_BOUND_FLOW_COUNT, b0), "0B 00 03", "b0=3", "",
     "QLIB_MFLO_GetBoundFlowCount( piBoundFlowCount = 3 )"},
    {"28 00", DO(MFLO_GET_ACTIVE_MLC_COUNT, b0), "28 00 04", "b0=4", "",
     "QLIB_MFLO_GetActiveMlcCount( piActiveMlcCount = 4 )"},
    {"2B 00 78 56 34 12", DO(MFLO_GET_FLO_PLP_DYN_PARAMS, 0x12345678, h0, h1, h2, h3),
     "2B 00 01 02 03 04 05 06 07 08", "h0=201 h1=403 h2=605 h3=807"},
};
const FtmRows kGps = {
    {"00 00 00 00 00 00 01", DO(FTM_AGPS_SET_TEST_MODE, 1), "", "",
     "QLIB_FTM_AGPS_SET_TEST_MODE( iOnOff = 1 )\nQLIB_SetSystemMode(iSystem_Mode = 10)()"},
    {"01 00 00 00 00 00 B0", DO(FTM_AGPS_SELF_TEST, b0), "01 00 00 00 00 00 01", "b0=1"},
    {"02 00 00 00 00 00", DO(FTM_AGPS_IDLE_MODE)},
    {"03 00 00 00 00 00", DO(FTM_AGPS_STANDALONE_TEST_MODE)},
    {"04 00 00 00 00 00 1F", DO(FTM_AGPS_SV_TRACKING, 31)},
    {"05 00 00 00 00 00 04 03 02 01 08 07 06 05 0A 09 0B 0D 0C",
     DO(FTM_AGPS_IQ_CAPTURE, 0x1020304, 0x5060708, 0x90A, 11, 0xC0D)},
    {"06 00 00 00 00 00", DO(FTM_AGPS_GET_IQ_DATA, &b0, &b1), "06 00 00 00 00 00 07 08", "b0=7 b1=8"},
};

const unsigned char kAddress[] = {1, 2, 3, 4, 5, 6};
const FtmRows kBluetooth = {
    {"00 00 06 00 00 00 01 02 03 04 05 06", DO(FTM_BT_HCI_USER_CMD, kAddress, 6), "", "",
     "QLIB_FTM_BT_HCI_USER_CMD( iLength = 6 )"},
    {"00 00 07 00 00 00 01 1E 20 03 05 25 04", DO(FTM_BT_SetCW, 5), "", "",
     "QLIB_FTM_BT_SetCW( iChannel = 5 )\nQLIB_FTM_BT_HCI_USER_CMD( iLength = 7 )"},
    {"00 00 0A 00 00 00 01 05 20 06 01 02 03 04 05 06", DO(FTM_BT_SetAddr, kAddress), "", "",
     "QLIB_FTM_BT_SetAddr( piAddress = 06:05:04:03:02:01 )\nQLIB_FTM_BT_HCI_USER_CMD( iLength = 10 )"},
};

const FtmRows kLog = {
    {"00 00 00 00 00 00 05 10 04 03 02 01 02 00 00 00", DO(FTM_LOG_ENABLE, 0x1005, 0x1020304, 2)},
    {"01 00 00 00 00 00 05 10", DO(FTM_LOG_DISABLE, 0x1005), "", "", "-"},
};

// The response holds a status, which is not passed to the caller.
const FtmRows kAudio = {
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

// The response holds values and then a status, which is returned in h0.
const FtmRows kCamera = {
    {"00 00 0A 00 0C 00", DO(FTM_CAMERA_START, h0)},
    {"01 00 0A 00 0C 00", DO(FTM_CAMERA_STOP, h0)},
    {"02 00 10 00 0C 00 02 01 06 05 04 03", DO(FTM_CAMERA_SET_PARM, 0x102, 0x3040506, h0)},
    {"03 00 0E 00 0C 00 80 02 E0 01 B0 00", DO(FTM_CAMERA_SET_DIMENSIONS, 640, 480, 176, h0)},
    {"04 00 00 00 0C 00", DO(FTM_CAMERA_START_PREVIEW, h0)},
    {"05 00 00 00 0C 00", DO(FTM_CAMERA_STOP_PREVIEW, h0)},
    {"06 00 0A 00 10 00 04 03 02 01 06 05", DO(FTM_CAMERA_TAKE_PICTURE_AND_ENCODE, 0x1020304, 0x506, w0, h0),
     "06 00 0A 00 10 00 78 56 34 12 00 00", "h0=0 w0=12345678"},
    {"08 00 0C 00 0C 00 02 01", DO(FTM_CAMERA_GET_PARM, 0x102, w0, w1, w2, w3, w4, h1, h0),
     "08 00 0C 00 0C 00 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 05 00 00 00 06 00 00 00",
     "h0=0 h1=6 w0=1 w1=2 w2=3 w3=4 w4=5"},
    {"09 00 0A 00 15 00", DO(FTM_CAMERA_GET_INFO, h1, h2, b0, h3, h4, h0),
     "09 00 0A 00 15 00 01 00 02 00 03 04 00 05 00 00 00", "b0=3 h0=0 h1=1 h2=2 h3=4 h4=5"},
    {"0A 00 0B 00 0C 00 02", DO(FTM_CAMERA_SET_SENSOR_ID, 2, h0)},
};

using FtmPeripheralCommandsTest = FtmRowsTest;

/// Adds what the rows have in common: a response that holds a status, and its log line.
FtmRows WithStatus(FtmRows rows, const std::string& sOuts) {
    for (FtmRow& row : rows) {
        row.sResult = "QLIB_" + row.call.sName + "(): PASS, status: 0";
        if (row.sAnswer.empty()) {
            row.sAnswer = row.sRequest.substr(0, 17) + " 00 00";
            row.sOuts = sOuts;
        }
    }
    return rows;
}

TEST_F(FtmPeripheralCommandsTest, RequestsResponsesAndLog) {
    m_diag.SetSystemMode(FTM_MODE_ID_FACTORY);
    Check({{"4B 0B 0B 00", kPmic},
           {"4B 2B", kBroadcast},
           {"4B 0B 0A 00", kGps},
           {"4B 0B 04 00", kBluetooth},
           {"4B 0B 09 00", kLog},
           {"4B 0B 0E 00", WithStatus(kAudio, "")},
           {"4B 0B 0F 00", WithStatus(kCamera, "h0=0"), "false h0=1"}});
    EXPECT_EQ(m_diag.GetSystemMode(), FTM_MODE_ID_AGPS); // set by GPS test mode
}

TEST_F(FtmPeripheralCommandsTest, RefusalsMayLackTheValues) {
    for (const FtmRows* pRows : {&kAudio, &kCamera})
        for (const FtmRow& row : *pRows) {
            const bool bStatusOut = pRows == &kCamera;
            const std::string sBegin = "4B 0B 0F 00 " + row.sRequest.substr(0, 17);
            EXPECT_EQ(Run(row.call, Hex(sBegin + " 07 01")), bStatusOut ? "false h0=107" : "false");
            EXPECT_EQ(m_log.Of(LOG_RET), Lines{"QLIB_" + row.call.sName + "(): FAIL, status: 263"});
            EXPECT_EQ(Run(row.call, Hex(sBegin + " 07")), bStatusOut ? "false h0=1" : "false");
        }
}

TEST_F(FtmPeripheralCommandsTest, ShortResponses) {
    const FtmCall clock = DO(FTM_PMIC_RTC_SET_GET_TIME, 1, b0, b1, b2, h0, b3, b4, b5);
    EXPECT_EQ(Run(clock, Hex("4B 0B 0B 00 00 00 00 00 00 00 00 03")),
              "true b0=0 b1=0 b2=0 b3=0 b4=0 b5=3 h0=0"); // a missing value is not a failure here
    EXPECT_EQ(Run(clock, Hex("4B 0B 0B 00 00 00 00 00 00 00 00")), "false"); // all values are missing
    EXPECT_EQ(Run(DO(FTM_PMIC_INT_GET_RT_STATUS, b0, b1), Hex("4B 0B 0B 00")), "false");
    const FtmCall place = DO(MFLO_GET_FLO_PLP_DYN_PARAMS, 0x12345678, h0, h1, h2, h3);
    EXPECT_EQ(Run(place, Hex("4B 2B 2B 00 01 02 03 04 05 06 07")), "false");
    const FtmCall counters = DO(MFLO_GET_OIS_PLP_STAT, 4, w0, w1, w2, w3);
    EXPECT_EQ(Run(counters, Hex("4B 2B 15 00 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00")), "false");
    EXPECT_EQ(Run(counters, Hex("4B 2B 15 00")), "false");
}

} // namespace
