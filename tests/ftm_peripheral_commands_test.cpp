// The commands of power management, broadcast receiver, GPS, Bluetooth, audio and camera, as bytes: what each
// sends, what it takes from an answer, what it logs.
#include "ftm_rows.h"

namespace {

using D = Diag_FTM;
using O = FtmOuts;

const FtmRow kPmic[] = {
    {"00 00 00 00 00 00 00 01 B0 B1 B2 C0 C0 B3 B4 B5", "00 00 00 00 00 00 00 01 01 02 03 04 05 06 07 08",
     "?b5 b4 b3 h0 b2 b1 b0", "true b0=1 b1=2 b2=3 b3=6 b4=7 b5=8 h0=504",
     "RTC_SET_GET_TIME-start( iReadWrite = 0x1, iTimeMode = 0xB0, iMonth = 0xB1, iDay = 0xB2, iYear = "
     "0xC0C0, iHour = 0xB3, iMinute = 0xB4, iSecond = 0xB5)\n"
     "RTC_SET_GET_TIME-finish( iReadWrite = 0x1, iTimeMode = 0x1, iMonth = 0x2, iDay = 0x3, iYear = 0x504, "
     "iHour = 0x6, iMinute = 0x7, iSecond = 0x8)",
     nullptr,
     [](D& d, O& o) {
         return d.FTM_PMIC_RTC_SET_GET_TIME(1, o.b[0], o.b[1], o.b[2], o.h[0], o.b[3], o.b[4], o.b[5]);
     }},
    {"00 00 00 00 00 00 00 00 B0 B1 B2 C0 C0 B3 B4 B5", "00 00 00 00 00 00 00 00 01 02 03 04 05 06 07 08",
     "?", "true",
     "RTC_SET_GET_TIME-start( iReadWrite = 0x0, iTimeMode = 0xB0, iMonth = 0xB1, iDay = 0xB2, iYear = "
     "0xC0C0, iHour = 0xB3, iMinute = 0xB4, iSecond = 0xB5)\n"
     "RTC_SET_GET_TIME-finish( iReadWrite = 0x0, iTimeMode = 0xB0, iMonth = 0xB1, iDay = 0xB2, iYear = "
     "0xC0C0, iHour = 0xB3, iMinute = 0xB4, iSecond = 0xB5)",
     nullptr,
     [](D& d, O& o) {
         return d.FTM_PMIC_RTC_SET_GET_TIME(0, o.b[0], o.b[1], o.b[2], o.h[0], o.b[3], o.b[4], o.b[5]);
     }},
    {"00 00 00 00 00 00 01 01 B6 B0 B1 B2 C0 C0 B3 B4 B5",
     "00 00 00 00 00 00 01 01 09 01 02 03 04 05 06 07 08", "?b5 b4 b3 h0 b2 b1 b0",
     "true b0=1 b1=2 b2=3 b3=6 b4=7 b5=8 h0=504",
     "RTC_SET_GET_ALARM_TIME-start( iReadWrite = 0x1, iAlarmId = 0xB6, iTimeMode = 0xB0, iMonth = 0xB1, iDay "
     "= 0xB2, iYear = 0xC0C0, iHour = 0xB3, iMinute = 0xB4, iSecond = 0xB5)\n"
     "RTC_SET_GET_ALARM_TIME-finish( iReadWrite = 0x1, iAlarmId = 0xB6, iTimeMode = 0x1, iMonth = 0x2, iDay "
     "= 0x3, iYear = 0x504, iHour = 0x6, iMinute = 0x7, iSecond = 0x8)",
     nullptr,
     [](D& d, O& o) {
         return d.FTM_PMIC_RTC_SET_GET_ALARM_TIME(1, o.b[6], o.b[0], o.b[1], o.b[2], o.h[0], o.b[3], o.b[4],
                                                  o.b[5]);
     }},
    {"00 00 00 00 00 00 02", "", "", "true", "RTC_STOP( )", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_RTC_STOP(); }},
    {"00 00 00 00 00 00 03 B0", "00 00 00 00 00 00 03 01", "?b0", "true b0=1", "RTC_GET_ALARM_STATUS( )",
     "RTC_GET_ALARM_STATUS( iAlarmStatus = 1)",
     [](D& d, O& o) { return d.FTM_PMIC_RTC_GET_ALARM_STATUS(o.b[0]); }},
    {"00 00 00 00 00 00 04 02", "", "", "true", "RTC_DISABLE_ALARM( iAlarmId = 2)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_RTC_DISABLE_ALARM(2); }},
    {"00 00 00 00 00 00 05 01 B0", "00 00 00 00 00 00 05 01 07", "?b0", "true b0=7",
     "RTC_SET_GET_TIME_ADJUST( iReadWrite = 1 , iTimeAdjust = 176)",
     "RTC_SET_GET_TIME_ADJUST( iReadWrite = 1 , iTimeAdjust = 7)",
     [](D& d, O& o) { return d.FTM_PMIC_RTC_SET_GET_TIME_ADJUST(1, o.b[0]); }},
    {"00 00 00 00 00 00 05 00 B0", "00 00 00 00 00 00 05 00 07", "?", "true",
     "RTC_SET_GET_TIME_ADJUST( iReadWrite = 0 , iTimeAdjust = 176)", nullptr,
     [](D& d, O& o) { return d.FTM_PMIC_RTC_SET_GET_TIME_ADJUST(0, o.b[0]); }},
    // Chargers.
    {"01 00 00 00 00 00 00 01 02", "", "", "true",
     "CHG_SET_SWITCH_STATE( iChargerSwitchType = 1, iChargerSwitchCommand = 2)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_CHG_SET_SWITCH_STATE(1, 2); }},
    {"01 00 00 00 00 00 01 00 01 02 03 04", "", "", "true",
     "CONFIG_WALL_PULSE_CHGR( iChargerType = 1, iTimeOn = 2, iTimeOff = 3, iTimeDone = 4)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_CONFIG_WALL_PULSE_CHGR(1, 2, 3, 4); }},
    {"01 00 00 00 00 00 01 01 05", "", "", "true",
     "CONFIG_WALL_PULSE_CHGR_VBAT_DET( iVbattDetectVoltage = 5)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_CONFIG_WALL_PULSE_CHGR_VBAT_DET(5); }},
    {"01 00 00 00 00 00 01 02 05 06", "", "", "true",
     "CONFIG_WALL_CHGR_TRANSISTOR_LIMITS( iChargerMaxCurrent = 5, iChargerMaxVoltage = 6)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_CONFIG_WALL_CHGR_TRANSISTOR_LIMITS(5, 6); }},
    {"01 00 00 00 00 00 01 03 07", "", "", "true", "CONFIG_TRICKLE_CHARGER( iChargerMaxCurrent = 7)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_CONFIG_TRICKLE_CHARGER(7); }},
    {"01 00 00 00 00 00 01 04 07 08", "", "", "true",
     "CONFIG_COIN_CELL_CHGR( iVoltageSetting = 7, iResistorSetting = 8)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_CONFIG_COIN_CELL_CHGR(7, 8); }},
    {"01 00 00 00 00 00 01 05 02 01 04 03 09", "", "", "true",
     "CONFIG_BATT_ALARM( iUpperLimit = 258, iLowerLimit = 772, iHysteresisSetting = 9)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_CONFIG_BATT_ALARM(0x102, 0x304, 9); }},
    {"01 00 00 00 00 00 01 06 0A", "", "", "true", "CONFIG_USB_TRANSISTOR_LIMITS( iChargerMaxCurrent = 10)",
     nullptr, [](D& d, O&) { return d.FTM_PMIC_CONFIG_USB_TRANSISTOR_LIMITS(10); }},
    {"01 00 00 00 00 00 01 07 0A 0B", "", "", "true",
     "CONFIG_PWR_CTRL_LIMIT( iChargerType = 10, iMaxPower = 11)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_CONFIG_PWR_CTRL_LIMIT(10, 11); }},
    // Regulators.
    {"04 00 00 00 00 00 00 01 04 03 02 01", "", "", "true",
     "VREG_CONTROL( iVRegCmd = 1, iVRegSelect = 16909060)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_VREG_CONTROL(1, 0x1020304); }},
    {"04 00 00 00 00 00 01 01 03 02", "", "", "true", "VREG_SET_LEVEL( iVRegSelect = 1, iVoltageLevel = 515)",
     nullptr, [](D& d, O&) { return d.FTM_PMIC_VREG_SET_LEVEL(1, 0x203); }},
    {"04 00 00 00 00 00 02 01 02", "", "", "true", "VREG_CONFIG_SMPS_MODE( iVRegSelect = 1, iSmpsMode = 2)",
     nullptr, [](D& d, O&) { return d.FTM_PMIC_VREG_CONFIG_SMPS_MODE(1, 2); }},
    {"04 00 00 00 00 00 03 01 02", "", "", "true", "VREG_CONFIG_LDO_PD_SW( iVRegCmd = 1, iVRegSelect = 2)",
     nullptr, [](D& d, O&) { return d.FTM_PMIC_VREG_CONFIG_LDO_PD_SW(1, 2); }},
    {"04 00 00 00 00 00 04 01 02", "", "", "true",
     "VREG_CONFIG_LP_MODE_CONTROL( iVRegCmd = 1, iVRegSelect = 2)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_VREG_CONFIG_LP_MODE_CONTROL(1, 2); }},
    {"04 00 00 00 00 00 05 01 02", "", "", "true",
     "VREG_SMPS_CLK_CONFIG( iSmpsClockCmd = 1, iSmpsClockConfig = 2)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_VREG_SMPS_CLK_CONFIG(1, 2); }},
    // Multiplexer, interrupts, speaker.
    {"03 00 00 00 00 00 00 02 01", "", "", "true", "AMUX_CONFIG( iMuxSelect =2, iMuxScale = 1)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_AMUX_CONFIG(2, 1); }},
    {"05 00 00 00 00 00 00 B0 B1", "05 00 00 00 00 00 00 01 02", "?b1", "true b1=2",
     "INT_GET_RT_STATUS( iInterruptStatusId = 176, iInterruptStatus = 177)",
     "INT_GET_RT_STATUS( iInterruptStatusId = 176, iInterruptStatus = 2)",
     [](D& d, O& o) { return d.FTM_PMIC_INT_GET_RT_STATUS(o.b[0], o.b[1]); }},
    {"05 00 00 00 00 00 01 03", "", "", "true", "INT_IRQ_CLR( iInterruptHandler = 3)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_INT_IRQ_CLR(3); }},
    {"06 00 00 00 00 00 01 01 02 03", "", "", "true",
     "SPKR_CONFIG( iSpeakerCMD = 1, iSpeakerGain = 2, iSpeakerDelay = 3)", nullptr,
     [](D& d, O&) { return d.FTM_PMIC_SPKR_CONFIG(1, 2, 3); }},
};
const FtmRow kDriveLevel[] = {
    {"06 00 00 00 00 00 00 01 02", "", "", "true",
     "SET_PMIC_DRIVE_LEVEL( iHighDrivePinID = 1, iDriveLevel = 2)", nullptr,
     [](D& d, O&) { return d.FTM_SET_PMIC_DRIVE_LEVEL(1, 2); }},
};

// Whole lines: one of them begins otherwise.
const FtmRow kBroadcast[] = {
    {"00 00 02 03", "", "", "true", "QLIB_MFLO_RST_PLP_STATS( bResetAll = 0, iMlcId = 2, eSystem = 3 )",
     nullptr, [](D& d, O&) { return d.MFLO_RST_PLP_STATS(0, 2, 3); }},
    {"00 00", "", "", "true", "QLIB_MFLO_RST_PLP_STATS( bResetAll = 1, iMlcId = 2, eSystem = 3 )", nullptr,
     [](D& d, O&) { return d.MFLO_RST_PLP_STATS(1, 2, 3); }},
    {"01 00 03", "01 00 03 09", "b0", "true b0=9", "QLIB_MFLO_GET_FLO_STATE( eSystem = 3 )",
     "QLIB_MFLO_GET_FLO_STATE( peSystemState = 9 )",
     [](D& d, O& o) { return d.MFLO_GET_FLO_STATE(3, o.b[0]); }},
    {"02 00", "", "", "true", "QLIB_MFLO_START_FLO( )", nullptr, [](D& d, O&) { return d.MFLO_START_FLO(); }},
    {"06 00", "06 00 01 02 03 04 05 06 07", "b6 b5 b4 b3 b2 b1 b0", "true b0=1 b1=2 b2=3 b3=4 b4=5 b5=6 b6=7",
     "QLIB_MFLO_GET_FLO_VERSION_INFO( )",
     "QLIB_MFLO_GET_FLO_VERSION_INFO( pHWmajor = 1, pHWminor = 2, pHWpatch = 3, pSWmajor = 4, pSWminor = 5, "
     "pSWpatch = 6, pSWbuild = 7 )",
     [](D& d, O& o) {
         return d.MFLO_GET_FLO_VERSION_INFO(o.b[0], o.b[1], o.b[2], o.b[3], o.b[4], o.b[5], o.b[6]);
     }},
    {"09 00 56 34 12 02", "", "", "true", "QLIB_MFLO_ACTIVATE_FLOW( iFlowID = 1193046, eBinding = 2 )",
     nullptr, [](D& d, O&) { return d.MFLO_ACTIVATE_FLOW(0x123456, 2); }},
    {"0A 00 56 34 12", "", "", "true", "QLIB_MFLO_DEACTIVATE_FLOW( iFlowID = 2014458966 )", nullptr,
     [](D& d, O&) { return d.MFLO_DEACTIVATE_FLOW(0x78123456); }},
    {"0F 00 37", "", "", "true", "QLIB_MFLO_SET_RF_CHNL( iChannel = 55 )", nullptr,
     [](D& d, O&) { return d.MFLO_SET_RF_CHNL(55); }},
    {"10 00", "10 00 37", "b0", "true b0=37", "QLIB_MFLO_GET_RF_CHNL( )",
     "MFLO_GET_RF_CHNL( piChannel = 55 )", [](D& d, O& o) { return d.MFLO_GET_RF_CHNL(o.b[0]); }},
    {"11 00 02 03", "", "", "true", "QLIB_MFLO_RST_MLC_PLP_STATS( iMlcID = 2, eSystem = 3 )", nullptr,
     [](D& d, O&) { return d.MFLO_RST_MLC_PLP_STATS(2, 3); }},
    {"15 00 04", "15 00 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 80", "w3 w2 w1 w0",
     "true w0=1 w1=2 w2=3 w3=80000004", "QLIB_MFLO_GET_OIS_PLP_STAT( eOIStype = 4 )",
     "QLIB_MFLO_GET_OIS_PLP_STAT( iFirst = 1, iSecond = 2, iThird = 3, iFourth = -2147483644 )",
     [](D& d, O& o) { return d.MFLO_GET_OIS_PLP_STAT(4, o.w[0], o.w[1], o.w[2], o.w[3]); }},
    {"16 00 04", "", "", "true", "QLIB_MFLO_RST_OIS_PLP_STAT( eOIStype = 4 )", nullptr,
     [](D& d, O&) { return d.MFLO_RST_OIS_PLP_STAT(4); }},
    {"27 00 03", "27 00 08", "b0", "true b0=8", "QLIB_MFLO_GET_FLO_SUBSTATE( eSystem = 3 )",
     "QLIB_MFLO_GET_FLO_SUBSTATE(eSubstate = 8)",
     [](D& d, O& o) { return d.MFLO_GET_FLO_SUBSTATE(3, o.b[0]); }},
    {"2C 00 01", "", "", "true", "QLIB_MFLO_ENABLE_FTAP_PLP_DATA( bEnable = 1 )", nullptr,
     [](D& d, O&) { return d.MFLO_ENABLE_FTAP_PLP_DATA(1); }},
    {"2D 00 02", "", "", "true", "QLIB_MFLO_ENABLE_FTAP_OIS( eOIS_ReceptionMode = 2 )", nullptr,
     [](D& d, O&) { return d.MFLO_ENABLE_FTAP_OIS(2); }},
    {"2E 00 01", "", "", "true", "QLIB_MFLO_ENABLE_WIC_LIC( bEnable = 1 )", nullptr,
     [](D& d, O&) { return d.MFLO_ENABLE_WIC_LIC(1); }},
};
// Values at fixed places, whole or not at all.
const FtmRow kBroadcastPlaces[] = {
    {"0B 00", "0B 00 03", "b0", "true b0=3", "QLIB_MFLO_GET_BOUND_FLOW_COUNT( )",
     "QLIB_MFLO_GetBoundFlowCount( piBoundFlowCount = 3 )",
     [](D& d, O& o) { return d.MFLO_GET_BOUND_FLOW_COUNT(o.b[0]); }},
    {"28 00", "28 00 04", "b0", "true b0=4", "QLIB_MFLO_GET_ACTIVE_MLC_COUNT( )",
     "QLIB_MFLO_GetActiveMlcCount( piActiveMlcCount = 4 )",
     [](D& d, O& o) { return d.MFLO_GET_ACTIVE_MLC_COUNT(o.b[0]); }},
    {"2B 00 78 56 34 12", "2B 00 01 02 03 04 05 06 07 08", "", "true h0=201 h1=403 h2=605 h3=807",
     "QLIB_MFLO_GET_FLO_PLP_DYN_PARAMS( iFlowID = 305419896 )",
     "QLIB_MFLO_GET_FLO_PLP_DYN_PARAMS( iTotalGoodPlps = 513, iTotalErasures = 1027, iSuperFrameGoodPlps = "
     "1541, iSuperFrameErasures = 2055 )",
     [](D& d, O& o) { return d.MFLO_GET_FLO_PLP_DYN_PARAMS(0x12345678, o.h[0], o.h[1], o.h[2], o.h[3]); }},
};

const FtmRow kGps[] = {
    {"00 00 00 00 00 00 01", "", "", "true",
     "FTM_AGPS_SET_TEST_MODE( iOnOff = 1 )\nSetSystemMode(iSystem_Mode = 10)()", nullptr,
     [](D& d, O&) { return d.FTM_AGPS_SET_TEST_MODE(1); }},
    {"01 00 00 00 00 00 B0", "01 00 00 00 00 00 01", "b0", "true b0=1", "FTM_AGPS_SELF_TEST( )",
     "FTM_AGPS_SELF_TEST( iPassFail = 1)", [](D& d, O& o) { return d.FTM_AGPS_SELF_TEST(o.b[0]); }},
    {"02 00 00 00 00 00", "", "", "true", "FTM_AGPS_IDLE_MODE( )", nullptr,
     [](D& d, O&) { return d.FTM_AGPS_IDLE_MODE(); }},
    {"03 00 00 00 00 00", "", "", "true", "FTM_AGPS_STANDALONE_TEST_MODE( )", nullptr,
     [](D& d, O&) { return d.FTM_AGPS_STANDALONE_TEST_MODE(); }},
    {"04 00 00 00 00 00 1F", "", "", "true", "FTM_AGPS_SV_TRACKING( iSatelliteVehicleId = 31 )", nullptr,
     [](D& d, O&) { return d.FTM_AGPS_SV_TRACKING(31); }},
    {"05 00 00 00 00 00 04 03 02 01 08 07 06 05 0A 09 0B 0D 0C", "", "", "true",
     "FTM_AGPS_IQ_CAPTURE( iCenterFreq_Hz = 16909060, iSampleFreq_Hz = 84281096, iStartDelay = 2314, "
     "iCaptureType = 11, iCaptureSize = 3085 )",
     nullptr, [](D& d, O&) { return d.FTM_AGPS_IQ_CAPTURE(0x1020304, 0x5060708, 0x90A, 11, 0xC0D); }},
    {"06 00 00 00 00 00", "06 00 00 00 00 00 07 08", "b1 b0", "true b0=7 b1=8", "FTM_AGPS_GET_IQ_DATA( )",
     "FTM_AGPS_GET_IQ_DATA( *piIData = 7, *piQData = 8)",
     [](D& d, O& o) { return d.FTM_AGPS_GET_IQ_DATA(&o.b[0], &o.b[1]); }},
};

const unsigned char kAddress[] = {1, 2, 3, 4, 5, 6};
const FtmRow kBluetooth[] = {
    {"00 00 06 00 00 00 01 02 03 04 05 06", "", "", "true", "HCI_USER_CMD( iLength = 6 )", nullptr,
     [](D& d, O&) { return d.FTM_BT_HCI_USER_CMD(kAddress, 6); }},
    {"00 00 07 00 00 00 01 1E 20 03 05 25 04", "", "", "true",
     "SetCW( iChannel = 5 )\nHCI_USER_CMD( iLength = 7 )", nullptr,
     [](D& d, O&) { return d.FTM_BT_SetCW(5); }},
    {"00 00 0A 00 00 00 01 05 20 06 01 02 03 04 05 06", "", "", "true",
     "SetAddr( piAddress = 06:05:04:03:02:01 )\nHCI_USER_CMD( iLength = 10 )", nullptr,
     [](D& d, O&) { return d.FTM_BT_SetAddr(kAddress); }},
};

const FtmRow kLog[] = {
    {"00 00 00 00 00 00 05 10 04 03 02 01 02 00 00 00", "", "", "true",
     "LOG_ENABLE( iLogCode = 4101, iInterval = 16909060, iNumBuffers = 2 )", nullptr,
     [](D& d, O&) { return d.FTM_LOG_ENABLE(0x1005, 0x1020304, 2); }},
    {"01 00 00 00 00 00 05 10", "", "", "true", nullptr, nullptr,
     [](D& d, O&) { return d.FTM_LOG_DISABLE(0x1005); }},
};

// The status stands at the end and is not handed out.
const FtmRow kAudio[] = {
    {"00 00 02 00 0C 00 02 01", "00 00 02 00 0C 00 00 00", "", "true", "SET_PATH( iAudioDevice = 258 )",
     "SET_PATH(): PASS, status: 0", [](D& d, O&) { return d.FTM_AUDIO_SET_PATH(0x102); }},
    {"01 00 01 00 0C 00 05", "01 00 01 00 0C 00 00 00", "", "true", "SET_VOLUME( iVolume = 5 )",
     "SET_VOLUME(): PASS, status: 0", [](D& d, O&) { return d.FTM_AUDIO_SET_VOLUME(5); }},
    {"02 00 01 00 0C 00 01", "02 00 01 00 0C 00 00 00", "", "true", "DSP_LOOPBACK( bLoopbackOn = 1 )",
     "DSP_LOOPBACK(): PASS, status: 0", [](D& d, O&) { return d.FTM_AUDIO_DSP_LOOPBACK(1); }},
    {"03 00 01 00 0C 00 01", "03 00 01 00 0C 00 00 00", "", "true", "PCM_LOOPBACK( bLoopbackOn = 1 )",
     "PCM_LOOPBACK(): PASS, status: 0", [](D& d, O&) { return d.FTM_AUDIO_PCM_LOOPBACK(1); }},
    {"04 00 04 00 0C 00 02 01 04 03 06 05", "04 00 04 00 0C 00 00 00", "", "true",
     "TONES_PLAY( iHiFreq = 258, iLoFreq = 772, iMethod = 1286 )", "TONES_PLAY(): PASS, status: 0",
     [](D& d, O&) { return d.FTM_AUDIO_TONES_PLAY(0x102, 0x304, 0x506); }},
    {"05 00 00 00 0C 00", "05 00 00 00 0C 00 00 00", "", "true", "TONES_STOP( )",
     "TONES_STOP(): PASS, status: 0", [](D& d, O&) { return d.FTM_AUDIO_TONES_STOP(); }},
    {"06 00 01 00 0C 00 01", "06 00 01 00 0C 00 00 00", "", "true", "NS_CONTROL( iNoiseSuppressorOn = 1 )",
     "NS_CONTROL(): PASS, status: 0", [](D& d, O&) { return d.FTM_AUDIO_NS_CONTROL(1); }},
    {"07 00 02 00 0C 00 03 00", "07 00 02 00 0C 00 00 00", "", "true",
     "PCM_CAPTURE( iNumBuffers = 3, iDelay_ms = 1 )", "PCM_CAPTURE(): PASS, status: 0",
     [](D& d, O&) { return d.FTM_AUDIO_PCM_CAPTURE(3, 1); }},
    {"09 00 00 00 0C 00", "09 00 00 00 0C 00 00 00", "", "true", "PCM_CAPTURE_STOP( )",
     "PCM_CAPTURE_STOP(): PASS, status: 0", [](D& d, O&) { return d.FTM_AUDIO_PCM_CAPTURE_STOP(); }},
    {"0A 00 02 00 0C 00 02 01", "0A 00 02 00 0C 00 00 00", "", "true",
     "SET_CODECTXGAIN_ADJUST( iCodecTxGainAdjust = 258 )", "SET_CODECTXGAIN_ADJUST(): PASS, status: 0",
     [](D& d, O&) { return d.FTM_AUDIO_SET_CODECTXGAIN_ADJUST(0x102); }},
};

// The status comes out in h0.
const FtmRow kCamera[] = {
    {"00 00 0A 00 0C 00", "00 00 0A 00 0C 00 00 00", "", "true h0=0", "START( )", "START(): PASS, status: 0",
     [](D& d, O& o) { return d.FTM_CAMERA_START(o.h[0]); }},
    {"01 00 0A 00 0C 00", "01 00 0A 00 0C 00 00 00", "", "true h0=0", "STOP( )", "STOP(): PASS, status: 0",
     [](D& d, O& o) { return d.FTM_CAMERA_STOP(o.h[0]); }},
    {"02 00 10 00 0C 00 02 01 06 05 04 03", "02 00 10 00 0C 00 00 00", "", "true h0=0",
     "SET_PARM( iParmId = 258, iParmValue = 50595078 )", "SET_PARM(): PASS, status: 0",
     [](D& d, O& o) { return d.FTM_CAMERA_SET_PARM(0x102, 0x3040506, o.h[0]); }},
    {"03 00 0E 00 0C 00 80 02 E0 01 B0 00", "03 00 0E 00 0C 00 00 00", "", "true h0=0",
     "SET_DIMENSIONS( iPictureWidth = 640, iPictureHeight = 480, iLCDWidth = 176 )",
     "SET_DIMENSIONS(): PASS, status: 0",
     [](D& d, O& o) { return d.FTM_CAMERA_SET_DIMENSIONS(640, 480, 176, o.h[0]); }},
    {"04 00 00 00 0C 00", "04 00 00 00 0C 00 00 00", "", "true h0=0", "START_PREVIEW( )",
     "START_PREVIEW(): PASS, status: 0", [](D& d, O& o) { return d.FTM_CAMERA_START_PREVIEW(o.h[0]); }},
    {"05 00 00 00 0C 00", "05 00 00 00 0C 00 00 00", "", "true h0=0", "STOP_PREVIEW( )",
     "STOP_PREVIEW(): PASS, status: 0", [](D& d, O& o) { return d.FTM_CAMERA_STOP_PREVIEW(o.h[0]); }},
    {"06 00 0A 00 10 00 04 03 02 01 06 05", "06 00 0A 00 10 00 78 56 34 12 00 00", "",
     "true h0=0 w0=12345678", "TAKE_PICTURE_AND_ENCODE( iQuality = 16909060, iFormat = 1286 )",
     "TAKE_PICTURE_AND_ENCODE(): PASS, status: 0",
     [](D& d, O& o) { return d.FTM_CAMERA_TAKE_PICTURE_AND_ENCODE(0x1020304, 0x506, o.w[0], o.h[0]); }},
    {"08 00 0C 00 0C 00 02 01",
     "08 00 0C 00 0C 00 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 05 00 00 00 06 00 00 00", "",
     "true h0=0 h1=6 w0=1 w1=2 w2=3 w3=4 w4=5", "GET_PARM( iParmId = 258 )", "GET_PARM(): PASS, status: 0",
     [](D& d, O& o) {
         return d.FTM_CAMERA_GET_PARM(0x102, o.w[0], o.w[1], o.w[2], o.w[3], o.w[4], o.h[1], o.h[0]);
     }},
    {"09 00 0A 00 15 00", "09 00 0A 00 15 00 01 00 02 00 03 04 00 05 00 00 00", "",
     "true b0=3 h0=0 h1=1 h2=2 h3=4 h4=5", "GET_INFO( )", "GET_INFO(): PASS, status: 0",
     [](D& d, O& o) { return d.FTM_CAMERA_GET_INFO(o.h[1], o.h[2], o.b[0], o.h[3], o.h[4], o.h[0]); }},
    {"0A 00 0B 00 0C 00 02", "0A 00 0B 00 0C 00 00 00", "", "true h0=0", "SET_SENSOR_ID( iSensorID = 2 )",
     "SET_SENSOR_ID(): PASS, status: 0", [](D& d, O& o) { return d.FTM_CAMERA_SET_SENSOR_ID(2, o.h[0]); }},
};

class FtmPeripheralCommandsTest : public FtmRowsTest {
protected:
    struct Table {
        const char* sHeader;
        const char* sLogBegin;
        std::span<const FtmRow> rows;
    };
    void ForEach(const std::vector<Table>& tables, const std::function<void(const Table&)>& check) {
        for (const Table& table : tables) {
            m_sLogBegin = table.sLogBegin;
            check(table);
        }
    }
    static constexpr const char* kAudioHeader = "4B 0B 0E 00";
    static constexpr const char* kCameraHeader = "4B 0B 0F 00";

    // Any answer of the command type will do; what is taken from its end is all that there is.
    const std::vector<Table> m_plain = {{"4B 0B 0B 00", "QLIB_FTM_PMIC_", kPmic},
                                        {"4B 0B 0B 00", "QLIB_FTM_", kDriveLevel},
                                        {"4B 2B", "", kBroadcast},
                                        {"4B 0B 0A 00", "QLIB_", kGps},
                                        {"4B 0B 04 00", "QLIB_FTM_BT_", kBluetooth},
                                        {"4B 0B 09 00", "QLIB_FTM_", kLog}};
    const Table m_audio = {kAudioHeader, "QLIB_FTM_AUDIO_", kAudio};
    const Table m_camera = {kCameraHeader, "QLIB_FTM_CAMERA_", kCamera};

    /// What a command with a status makes of an answer; only the camera's hand it out.
    static std::string Refused(const Table& table, unsigned iStatus) {
        FtmOuts outs;
        if (std::string(table.sHeader) == kCameraHeader)
            outs.h[0] = static_cast<unsigned short>(iStatus);
        return outs.Text(false);
    }
};

TEST_F(FtmPeripheralCommandsTest, RequestsAnswersAndLog) {
    const auto check = [this](const Table& table) { CheckWire(table.rows, table.sHeader); };
    ForEach(m_plain, check);
    ForEach({{"4B 2B", "", kBroadcastPlaces}, m_audio, m_camera}, check);
    EXPECT_EQ(m_diag.GetSystemMode(), FTM_MODE_ID_AGPS); // GPS test mode sets it
}

TEST_F(FtmPeripheralCommandsTest, ValuesAreTakenFromTheEndOfWhatThereIs) {
    ForEach(m_plain, [this](const Table& table) {
        CheckShortAnswers(table.rows, 1, table.sHeader);
        CheckWrongHeaders(table.rows, false, table.sHeader);
    });
    for (const FtmRow& row : kBroadcastPlaces)
        for (Bytes answer = GoodAnswer(row, "4B 2B"); answer.size() > 1;) {
            answer.pop_back();
            EXPECT_EQ(Run(row, answer), "false") << row.sEntry << " " << answer.size();
        }
}

TEST_F(FtmPeripheralCommandsTest, StatusLiesBehindTheHeader) {
    constexpr size_t kWithStatus = 12;
    ForEach({m_audio, m_camera}, [&](const Table& table) {
        for (const FtmRow& row : table.rows) {
            const Bytes good = GoodAnswer(row, table.sHeader);
            for (Bytes answer = good; answer.size() > 1;) {
                answer.pop_back();
                const size_t iSize = answer.size();
                const unsigned iStatus =
                    iSize < kWithStatus ? 1U : answer[iSize - 1] << 8 | answer[iSize - 2];
                EXPECT_EQ(Run(row, answer), Refused(table, iStatus)) << row.sEntry << " " << answer.size();
                const std::string sLine = m_log.Of(LOG_RET).at(0);
                EXPECT_NE(sLine.find("(): FAIL, status: " + std::to_string(iStatus)), std::string::npos);
            }
            // A refusal need not carry the values.
            Bytes refusal(good.begin(), good.begin() + kWithStatus);
            refusal[kWithStatus - 2] = 7;
            refusal[kWithStatus - 1] = 1;
            EXPECT_EQ(Run(row, refusal), Refused(table, 0x107)) << row.sEntry;
        }
    });
}

TEST_F(FtmPeripheralCommandsTest, UnansweredCommandsChangeNothing) {
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 5);
    const auto check = [&](const Table& table) {
        for (const FtmRow& row : table.rows) {
            EXPECT_EQ(Run(row, Hex("13")), Refused(table, 1)) << row.sRequest;
        }
    };
    ForEach(m_plain, check);
    ForEach({{"4B 2B", "", kBroadcastPlaces}, m_audio, m_camera}, check);
}

} // namespace
