// The radio commands, as bytes: what each sends, what it takes from an answer, what it logs.
#include "ftm_rows.h"

namespace {

using D = Diag_FTM;
using O = FtmOuts;

// Answered in the current command type and system mode only.
const FtmRow kControl[] = {
    {"00 00 02 00 04 03", "", "", "true", "SET_PDM(iPDMtype=2, iPDMvalue=772)", nullptr,
     [](D& d, O&) { return d.FTM_SET_PDM(2, 0x304); }},
    {"02 00", "", "", "true", "SET_TX_ON()", nullptr, [](D& d, O&) { return d.FTM_SET_TX_ON(); }},
    {"03 00", "", "", "true", "SET_TX_OFF()", nullptr, [](D& d, O&) { return d.FTM_SET_TX_OFF(); }},
    {"07 00 0F 00", "", "", "true", "SET_MODE(eNewMode=15)", nullptr,
     [](D& d, O&) { return d.FTM_SET_MODE(FTM_RF_Mode_Enum{15}); }},
    {"08 00 F5 03", "", "", "true", "SET_CHAN(iChannel=1013)", nullptr,
     [](D& d, O&) { return d.FTM_SET_CHAN(1013); }},
    {"10 00 B0", "10 00 01", "b0", "true b0=1", "GET_SYNTH_STATE( )", "GET_SYNTH_STATE( bLockState = 1)",
     [](D& d, O& o) { return d.FTM_GET_SYNTH_STATE(o.b[0]); }},
    {"32 00 01", "", "", "true", "CDMA_CW_WAVEFORM(bSelectCW=1)", nullptr,
     [](D& d, O&) { return d.FTM_CDMA_CW_WAVEFORM(true); }},
    {"36 00 03 02", "", "", "true", "SET_PA_RANGE(iPArange=515)", nullptr,
     [](D& d, O&) { return d.FTM_SET_PA_RANGE(0x203); }},
    {"3A 00 FE 00", "", "", "true", "SET_LNA_RANGE(iLNArange=254)", nullptr,
     [](D& d, O&) { return d.FTM_SET_LNA_RANGE(254); }},
    {"3B 00 05 00 C0 C0", "3B 00 05 00 02 01", "h0", "true h0=102", "GET_ADC_VAL( iADC_type = 5)",
     "GET_ADC_VAL( iADC_type = 5, iADC_value = 258)",
     [](D& d, O& o) { return d.FTM_GET_ADC_VAL(5, o.h[0]); }},
    {"79 00 02 01", "", "", "true", "SET_SECONDARY_CHAIN(iMode=258)", nullptr,
     [](D& d, O&) { return d.FTM_SET_SECONDARY_CHAIN(0x102); }},
    {"7B 00 07", "", "", "true", "SECOND_CHAIN_TEST_CALL(iMode=7)", nullptr,
     [](D& d, O&) { return d.FTM_SECOND_CHAIN_TEST_CALL(7); }},
    {"80 00 02", "", "", "true", "SET_RF_POWER_MODE(iMode=2)", nullptr,
     [](D& d, O&) { return d.FTM_SET_RF_POWER_MODE(2); }},
    // The receiver.
    {"35 00 00 00", "35 00 2C FF", "h0", "true h0=ff2c", "GET_RX_AGC( )", "GET_RX_AGC( iRX_AGC = 65324)",
     [](D& d, O& o) { return d.FTM_GET_RX_AGC(o.h[0]); }},
    {"51 00 02 00 FF FF", "", "", "true", "SET_LNA_OFFSET(iLNAindex=2, iLNAoffset=65535)", nullptr,
     [](D& d, O&) { return d.FTM_SET_LNA_OFFSET(2, 0xFFFF); }},
    {"6F 00 C8 00", "", "", "true", "SET_DVGA_OFFSET(iDVGAoffset=200)", nullptr,
     [](D& d, O&) { return d.FTM_SET_DVGA_OFFSET(200); }},
    {"72 00 B0 B1 B2", "72 00 01 02 03", "b2 b1 b0", "true b0=1 b1=2 b2=3", "GET_CDMA_IM2( )",
     "GET_CDMA_IM2( iIValue = 1, iQValue = 2, iTransconductance = 3)",
     [](D& d, O& o) { return d.FTM_GET_CDMA_IM2(o.b[0], o.b[1], o.b[2]); }},
    {"73 00 09", "", "", "true", "SET_FREQ_SENSE_GAIN(iModulationIndex=9)", nullptr,
     [](D& d, O&) { return d.FTM_SET_FREQ_SENSE_GAIN(9); }},
    {"75 00 FE FF", "75 00 FE FF FD FF", "s0", "true s0=fffd", "GET_DVGA_OFFSET( iExpectedRX_AGC = -2)",
     "GET_DVGA_OFFSET( iExpectedRX_AGC = -2, iDVGAoffsetValue = -3)",
     [](D& d, O& o) { return d.FTM_GET_DVGA_OFFSET(-2, o.s[0]); }},
    {"76 00 04 00 FE FF", "76 00 04 00 FE FF 05 80", "s0", "true s0=8005",
     "GET_LNA_OFFSET( iLNAindex = 4, iExpectedRX_AGC = -2)",
     "GET_LNA_OFFSET( iLNAindex = 4, iExpectedRX_AGC = -2, iLNAoffsetValue = -32763)",
     [](D& d, O& o) { return d.FTM_GET_LNA_OFFSET(4, -2, o.s[0]); }},
    {"78 00 E0 E0 E0 E0", "78 00 01 02 03 04", "w0", "true w0=4030201", "GET_FM_IQ( )",
     "GET_FM_IQ( iFmIQValue = 67305985)", [](D& d, O& o) { return d.FTM_GET_FM_IQ(o.w[0]); }},
    {"7A 00 E0 E0 E0 E0", "7A 00 FF FF FF FF", "w0", "true w0=ffffffff", "GET_CTON(iCtoN=-522133280)",
     "GET_CTON(iCtoN=-1)", [](D& d, O& o) { return d.FTM_GET_CTON(o.w[0]); }},
    {"7E 00 B0 B1 B2 C0 C0", "7E 00 01 02 03 04 05", "h0 b2 b1 b0", "true b0=1 b1=2 b2=3 h0=504",
     "GET_CDMA_IM2_WITH_SUPPRESSSION( )",
     "GET_CDMA_IM2_WITH_SUPPRESSSION( iIValue = 1, iQValue = 2, iTransconductance = 3, iSuppression = 1284)",
     [](D& d, O& o) { return d.FTM_GET_CDMA_IM2_WITH_SUPPRESSSION(o.b[0], o.b[1], o.b[2], o.h[0]); }},
    // Sweep and detector.
    {"74 00 01", "", "", "true", "TX_SWEEP_CAL(bOnOff=1)", nullptr,
     [](D& d, O&) { return d.FTM_TX_SWEEP_CAL(1); }},
    {"77 00 03 00 C0 C0", "77 00 03 00 34 12", "h0", "true h0=1234",
     "GET_HDET_FROM_TX_SWEEP_CAL( iIndex = 3)", "GET_HDET_FROM_TX_SWEEP_CAL( iIndex = 3, iHDETvalue = 4660)",
     [](D& d, O& o) { return d.FTM_GET_HDET_FROM_TX_SWEEP_CAL(3, o.h[0]); }},
    {"7C 00 01 00 02 01", "", "", "true", "SET_HDET_TRACKING(iOnOff=1, iHDETvalue=258)", nullptr,
     [](D& d, O&) { return d.FTM_SET_HDET_TRACKING(1, 0x102); }},
    {"7D 00 E8 03 10 00", "", "", "true",
     "CONFIGURE_TX_SWEEP_CAL(iTimeInterval=1000, iNumofHDETReadingsPerStep=16)", nullptr,
     [](D& d, O&) { return d.FTM_CONFIGURE_TX_SWEEP_CAL(1000, 16); }},
    // Calibration of the GSM transmit path.
    {"ED 00 00 00 C0 C0 FF FF", "ED 00 00 00 FE FF 01 00", "d0", "true s0=fffe",
     "SET_PATH_DELAY-start( *ipDelay=-16192)", "SET_PATH_DELAY-finish( *piDelay=-2)",
     [](D& d, O& o) { return d.FTM_SET_PATH_DELAY(&o.s[0]); }},
    {"F2 00 00 00 01 00", "", "", "true", "ENABLE_POLAR_REF_CAL(iEnable=1)", nullptr,
     [](D& d, O&) { return d.FTM_ENABLE_POLAR_REF_CAL(1); }},
    {"F2 00 00 00 02 01", "", "", "true", "SET_TWOTONE_FREQ_OFFSET(iFreqOffsetSecTone=258)", nullptr,
     [](D& d, O&) { return d.FTM_SET_TWOTONE_FREQ_OFFSET(0x102); }},
    {"F3 00 00 00 01 02 C0 C0 C1 C0", "F3 00 00 00 01 02 03 04 05 06", "h1 h0", "true h0=403 h1=605",
     "DO_CALPATH_RSB(iRSB_Subcmd_ID=1, iDone_RSG=2, iRSB_A=49344, iRSB_B=49345)",
     "DO_CALPATH_RSB( iRSB_A = 1027, iRSB_B = 1541)",
     [](D& d, O& o) { return d.FTM_DO_CALPATH_RSB(1, 2, &o.h[0], &o.h[1]); }},
    {"F5 00 00 00 04", "", "", "true", "SET_OPLL_BW(iBandwidth_Num=4)", nullptr,
     [](D& d, O&) { return d.FTM_SET_OPLL_BW(4); }},
    {"FA 00 00 00 05", "", "", "true", "BASEBAND_BW_CAL(iBandwidth_Num=5)", nullptr,
     [](D& d, O&) { return d.FTM_BASEBAND_BW_CAL(5); }},
    // The broadcast receiver.
    {"90 01 03 00 B0 FF", "90 01 03 00 34 12", "h0 x2", "true h0=1234",
     "MF_GET_RSSI_CAL_POINT( iGainState = 3, iInputPower = 65456 )",
     "MF_GET_RSSI_CAL_POINT( iCalPoint = 4660 )",
     [](D& d, O& o) { return d.FTM_MF_GET_RSSI_CAL_POINT(3, 0xFFB0, o.h[0]); }},
    {"91 01 00 00", "91 01 02 01", "h0", "true h0=102", "MF_GET_RX_RSSI( )",
     "MF_GET_RX_RSSI( iRssiValue = 258 )", [](D& d, O& o) { return d.FTM_MF_GET_RX_RSSI(o.h[0]); }},
    {"92 01 00 00 00 00", "92 01 01 00 02 00", "h1 h0", "true h0=1 h1=2", "MF_GET_AGC_STATE( )",
     "MF_GET_AGC_STATE( iGainState = 1, iDvga = 2 )",
     [](D& d, O& o) { return d.FTM_MF_GET_AGC_STATE(o.h[0], o.h[1]); }},
    {"93 01 06 00", "93 01 06 00 07", "x1", "true", "MF_WRITE_CAL_DATA( iBand = 6 )",
     "MF_WRITE_CAL_DATA( iBand = 6 ) _iWriteStatus = 7", [](D& d, O&) { return d.FTM_MF_WRITE_CAL_DATA(6); }},
    {"96 01 02 01", "", "", "true", "MF_LNA_SELECT( iWhichLna = 258 )", nullptr,
     [](D& d, O&) { return d.FTM_MF_LNA_SELECT(0x102); }},
    {"97 01 02 01", "", "", "true", "MF_RF_SWITCH_CONFIG( iState = 258 )", nullptr,
     [](D& d, O&) { return d.FTM_MF_RF_SWITCH_CONFIG(0x102); }},
    {"98 01 00", "98 01 01", "b0", "true b0=1", "MF_SYNTH_LOCK( )", "MF_SYNTH_LOCK( bLockState = 1 )",
     [](D& d, O& o) { return d.FTM_MF_SYNTH_LOCK(o.b[0]); }},
    {"9B 01 04 00", "", "", "true", "MF_SET_GAIN_STATE( iGainState = 4 )", nullptr,
     [](D& d, O&) { return d.FTM_MF_SET_GAIN_STATE(4); }},
    {"9D 01 37 00", "", "", "true", "MF_TUNE_PLL( iChannel = 55 )", nullptr,
     [](D& d, O&) { return d.FTM_MF_TUNE_PLL(55); }},
    {"9F 01 C0 C0 B0 B1 B2", "9F 01 01 02 03 04 05", "b2 b1 b0 h0", "true b0=3 b1=4 b2=5 h0=201",
     "MF_GET_IM2( )", "MF_GET_IM2( iSuppression = 513, iIValue = 3, iQValue = 4, iTransconductance = 5 )",
     [](D& d, O& o) { return d.FTM_MF_GET_IM2(o.h[0], o.b[0], o.b[1], o.b[2]); }},
};

// Any answer of the command type will do.
const FtmRow kGsm[] = {
    {"D8 00 00 00 02 FF FF 03 04 03 02 01 01", "", "", "true",
     "SET_TRANSMIT_CONT(iSlotNum=2, iDataSource=-1, iTSCindex=3, iNumBursts=16909060, bIsInfiniteDuration=1)",
     nullptr, [](D& d, O&) { return d.FTM_SET_TRANSMIT_CONT(2, -1, 3, 0x1020304, true); }},
    {"D9 00 00 00 02 01 00 03 04 00 00 00 00", "", "", "true",
     "SET_TRANSMIT_BURST(iSlotNum=2, iDataSource=1, iTSCindex=3, iNumBursts=4, bIsInfiniteDuration=0)",
     nullptr, [](D& d, O&) { return d.FTM_SET_TRANSMIT_BURST(2, 1, 3, 4, false); }},
    {"E1 00 00 00 02 FE FF", "", "", "true", "SET_RX_BURST(iSlotNum=2, iRxFunction=-2)", nullptr,
     [](D& d, O&) { return d.FTM_SET_RX_BURST(2, -2); }},
    {"E3 00 00 00 0F 00", "", "", "true", "SET_TX_POWER_LEVEL(iPowerLevelID=15)", nullptr,
     [](D& d, O&) { return d.FTM_SET_TX_POWER_LEVEL(15); }},
    {"E6 00 00 00 00 00 00 00", "E6 00 00 00 01 02 03 04", "w0", "true w0=4030201", "GET_RSSI( )",
     "GET_RSSI( iRssiValue = 67305985)", [](D& d, O& o) { return d.FTM_GET_RSSI(o.w[0]); }},
    {"E9 00 00 00 02 01", "", "", "true", "SET_PA_DAC_INPUT(iDACinput=258)", nullptr,
     [](D& d, O&) { return d.FTM_SET_PA_DAC_INPUT(0x102); }},
    {"EA 00 00 00 02 03 00", "", "", "true", "SET_RX_CONTINUOUS(iSlotNum=2, iRxFunction=3)", nullptr,
     [](D& d, O&) { return d.FTM_SET_RX_CONTINUOUS(2, 3); }},
    {"EB 00 00 00 01 00 02 00 03 00", "", "", "true",
     "SET_TX_CAL_SWEEP(iDAC_Start=1, iDAC_Stop=2, iDAC_Step=3)", nullptr,
     [](D& d, O&) { return d.FTM_SET_TX_CAL_SWEEP(1, 2, 3); }},
    {"F0 00 00 00 01 02 03 00 04", "", "", "true",
     "SET_TX_FRAME_MATRIX(iSlotNum=1, iTurnSlotOn=2, iPwrLevel=3, iModScheme=4)", nullptr,
     [](D& d, O&) { return d.FTM_SET_TX_FRAME_MATRIX(1, 2, 3, 4); }},
    {"01 03 00 07 00 C0 C0 C1 C0 C2 C0 C3 C0 C4 C0", "01 03 00 07 00 01 00 02 00 03 00 04 00 05 00",
     "?h4 h3 h2 h1 h0", "true h0=1 h1=2 h2=3 h3=4 h4=5", "TEST_GET_DVGA_LNA( bGetDVGA = 1, iLNAMask = 3",
     "TEST_GET_DVGA_LNA( bGetDVGA = 1, iLNAMask = 3, iRxAGC = 7, iDVGAoffset = 1, iLNA0offset = 2, "
     "iLNA1offset = 3, iLNA2offset = 4, iLNA3offset = 5)",
     [](D& d, O& o) { return d.FTM_TEST_GET_DVGA_LNA(true, 3, 7, o.h[0], o.h[1], o.h[2], o.h[3], o.h[4]); }},
};

using FtmRfCommandsTest = FtmRowsTest;

TEST_F(FtmRfCommandsTest, RequestsAnswersAndLog) {
    CheckWire(kControl);
    CheckWire(kGsm);
}

TEST_F(FtmRfCommandsTest, AnswersThatEndEarly) {
    CheckShortAnswers(kControl, 3);
    CheckShortAnswers(kGsm, 1);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 20);
    for (const FtmRow& row : kControl)
        EXPECT_EQ(Run(row, {}), "false") << row.sEntry;
}

TEST_F(FtmRfCommandsTest, AnswersOfAnotherSubsystemOrMode) {
    CheckWrongHeaders(kControl, true);
    CheckWrongHeaders(kGsm, false);
}

TEST_F(FtmRfCommandsTest, OlderFormReadsTheFieldsThatEndAtTheRequestsLength) {
    m_diag.SetCommandType(FTM_COMMAND_59);
    const auto check = [this](std::span<const FtmRow> rows, bool bLengthSent) {
        for (const FtmRow& row : rows) {
            const size_t iPayload = Hex(row.sRequest).size();
            const Bytes header = {59, 0x77, 0, static_cast<uint8_t>(bLengthSent ? iPayload : 0), 0};
            const size_t iEnd = header.size() + iPayload;
            for (const char* sTail : {"", " 91 92 93"}) {
                const Bytes answer = GoodAnswer(row, handset::ToHex(header));
                const Bytes longer = Hex(handset::ToHex(answer) + sTail);
                EXPECT_EQ(Run(row, longer), Taken(row, longer, bLengthSent ? iEnd : 0)) << row.sEntry;
                EXPECT_EQ(m_phone.Requests(), std::vector{handset::ToHex(header) + " " + row.sRequest});
            }
        }
    };
    check(kControl, true);
    check(kGsm, false);
    EXPECT_EQ(Run(kControl[4], Hex("3B 76 00 06 00 08 00 F5 03")), "false");
}

} // namespace
