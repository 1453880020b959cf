// The radio commands, as bytes: what each one sends, reads from a response and logs.
#include "ftm_rows.h"

namespace {

const std::string kHeader = "4B 0B 01 00";

// These accept only responses with the current command type and system mode.
const FtmRows kControl = {
    {"00 00 02 00 04 03", DO(FTM_SET_PDM, 2, 0x304)},
    {"02 00", DO(FTM_SET_TX_ON)},
    {"03 00", DO(FTM_SET_TX_OFF)},
    {"07 00 0F 00", DO(FTM_SET_MODE, FTM_RF_Mode_Enum{15})},
    {"08 00 F5 03", DO(FTM_SET_CHAN, 1013)},
    {"10 00 B0", DO(FTM_GET_SYNTH_STATE, b0), "10 00 01", "b0=1"},
    {"32 00 01", DO(FTM_CDMA_CW_WAVEFORM, true)},
    {"36 00 03 02", DO(FTM_SET_PA_RANGE, 0x203)},
    {"3A 00 FE 00", DO(FTM_SET_LNA_RANGE, 254)},
    {"3B 00 05 00 C0 C0", DO(FTM_GET_ADC_VAL, 5, h0), "3B 00 05 00 02 01", "h0=102"},
    {"79 00 02 01", DO(FTM_SET_SECONDARY_CHAIN, 0x102)},
    {"7B 00 07", DO(FTM_SECOND_CHAIN_TEST_CALL, 7)},
    {"80 00 02", DO(FTM_SET_RF_POWER_MODE, 2)},

    // The receiver.
    {"35 00 00 00", DO(FTM_GET_RX_AGC, h0), "35 00 2C FF", "h0=ff2c"},
    {"51 00 02 00 FF FF", DO(FTM_SET_LNA_OFFSET, 2, 0xFFFF)},
    {"6F 00 C8 00", DO(FTM_SET_DVGA_OFFSET, 200)},
    {"72 00 B0 B1 B2", DO(FTM_GET_CDMA_IM2, b0, b1, b2), "72 00 01 02 03", "b0=1 b1=2 b2=3"},
    {"73 00 09", DO(FTM_SET_FREQ_SENSE_GAIN, 9)},
    {"75 00 FE FF", DO(FTM_GET_DVGA_OFFSET, -2, s0), "75 00 FE FF FD FF", "s0=fffffffd"},
    {"76 00 04 00 FE FF", DO(FTM_GET_LNA_OFFSET, 4, -2, s0), "76 00 04 00 FE FF 05 80", "s0=ffff8005"},
    {"78 00 E0 E0 E0 E0", DO(FTM_GET_FM_IQ, w0), "78 00 01 02 03 04", "w0=4030201"},
    {"7A 00 E0 E0 E0 E0", DO(FTM_GET_CTON, w0), "7A 00 FF FF FF FF", "w0=ffffffff"},
    {"7E 00 B0 B1 B2 C0 C0", DO(FTM_GET_CDMA_IM2_WITH_SUPPRESSSION, b0, b1, b2, h0), "7E 00 01 02 03 04 05",
     "b0=1 b1=2 b2=3 h0=504"},

    // Sweep and detector.
    {"74 00 01", DO(FTM_TX_SWEEP_CAL, 1)},
    {"77 00 03 00 C0 C0", DO(FTM_GET_HDET_FROM_TX_SWEEP_CAL, 3, h0), "77 00 03 00 34 12", "h0=1234"},
    {"7C 00 01 00 02 01", DO(FTM_SET_HDET_TRACKING, 1, 0x102)},
    {"7D 00 E8 03 10 00", DO(FTM_CONFIGURE_TX_SWEEP_CAL, 1000, 16)},

    // Calibration of the GSM transmit path.
    {"ED 00 00 00 C0 C0 FF FF", DO(FTM_SET_PATH_DELAY, &s0), "ED 00 00 00 FE FF 01 00", "s0=fffffffe",
     "QLIB_FTM_SET_PATH_DELAY-start( *ipDelay=-16192)", "QLIB_FTM_SET_PATH_DELAY-finish( *piDelay=-2)"},
    {"F2 00 00 00 01 00", DO(FTM_ENABLE_POLAR_REF_CAL, 1)},
    {"F2 00 00 00 02 01", DO(FTM_SET_TWOTONE_FREQ_OFFSET, 0x102)},
    {"F3 00 00 00 01 02 C0 C0 C1 C0", DO(FTM_DO_CALPATH_RSB, 1, 2, &h0, &h1), "F3 00 00 00 01 02 03 04 05 06",
     "h0=403 h1=605"},
    {"F5 00 00 00 04", DO(FTM_SET_OPLL_BW, 4)},
    {"FA 00 00 00 05", DO(FTM_BASEBAND_BW_CAL, 5)},

    // The broadcast receiver.
    {"90 01 03 00 B0 FF", DO(FTM_MF_GET_RSSI_CAL_POINT, 3, 0xFFB0, h0), "90 01 03 00 34 12", "h0=1234"},
    {"91 01 00 00", DO(FTM_MF_GET_RX_RSSI, h0), "91 01 02 01", "h0=102"},
    {"92 01 00 00 00 00", DO(FTM_MF_GET_AGC_STATE, h0, h1), "92 01 01 00 02 00", "h0=1 h1=2"},
    {"93 01 06 00", DO(FTM_MF_WRITE_CAL_DATA, 6), "93 01 06 00 07", "", "",
     "QLIB_FTM_MF_WRITE_CAL_DATA( iBand = 6 ) _iWriteStatus = 7"},
    {"96 01 02 01", DO(FTM_MF_LNA_SELECT, 0x102)},
    {"97 01 02 01", DO(FTM_MF_RF_SWITCH_CONFIG, 0x102)},
    {"98 01 00", DO(FTM_MF_SYNTH_LOCK, b0), "98 01 01", "b0=1"},
    {"9B 01 04 00", DO(FTM_MF_SET_GAIN_STATE, 4)},
    {"9D 01 37 00", DO(FTM_MF_TUNE_PLL, 55)},
    {"9F 01 C0 C0 B0 B1 B2", DO(FTM_MF_GET_IM2, h0, b0, b1, b2), "9F 01 01 02 03 04 05",
     "b0=3 b1=4 b2=5 h0=201"},
};

// These accept any response with the command type.
const FtmRows kGsm = {
    {"D8 00 00 00 02 FF FF 03 04 03 02 01 01", DO(FTM_SET_TRANSMIT_CONT, 2, -1, 3, 0x1020304, true)},
    {"D9 00 00 00 02 01 00 03 04 00 00 00 00", DO(FTM_SET_TRANSMIT_BURST, 2, 1, 3, 4, false)},
    {"E1 00 00 00 02 FE FF", DO(FTM_SET_RX_BURST, 2, -2)},
    {"E3 00 00 00 0F 00", DO(FTM_SET_TX_POWER_LEVEL, 15)},
    {"E6 00 00 00 00 00 00 00", DO(FTM_GET_RSSI, w0), "E6 00 00 00 01 02 03 04", "w0=4030201"},
    {"E9 00 00 00 02 01", DO(FTM_SET_PA_DAC_INPUT, 0x102)},
    {"EA 00 00 00 02 03 00", DO(FTM_SET_RX_CONTINUOUS, 2, 3)},
    {"EB 00 00 00 01 00 02 00 03 00", DO(FTM_SET_TX_CAL_SWEEP, 1, 2, 3)},
    {"F0 00 00 00 01 02 03 00 04", DO(FTM_SET_TX_FRAME_MATRIX, 1, 2, 3, 4)},
    {"01 03 00 07 00 C0 C0 C1 C0 C2 C0 C3 C0 C4 C0",
     DO(FTM_TEST_GET_DVGA_LNA, true, 3, 7, h0, h1, h2, h3, h4),
     "01 03 00 07 00 01 00 02 00 03 00 04 00 05 00", "h0=1 h1=2 h2=3 h3=4 h4=5",
     "QLIB_FTM_TEST_GET_DVGA_LNA( bGetDVGA = 1, iLNAMask = 3"},
};

using FtmRfCommandsTest = FtmRowsTest;

TEST_F(FtmRfCommandsTest, RequestsResponsesAndLog) {
    Check({{kHeader, kControl}, {kHeader, kGsm}});
}

TEST_F(FtmRfCommandsTest, ResponsesOfAnotherSubsystemOrModeAreRefused) {
    for (const FtmRow& row : kControl)
        for (const size_t iWrong : {1, 2}) {
            Bytes answer = GoodAnswer(row, kHeader);
            answer[iWrong] ^= 0x40;
            EXPECT_EQ(Run(row.call, answer), "false") << row.call.sName;
        }
}

TEST_F(FtmRfCommandsTest, ValuesAreReadBackwardsFromTheEnd) {
    const FtmCall im2 = DO(FTM_GET_CDMA_IM2_WITH_SUPPRESSSION, b0, b1, b2, h0);
    EXPECT_EQ(Run(im2, Hex("4B 0B 01 00 7E 00 09")), "true b0=1 b1=0 b2=7e h0=900");
    for (const char* sHeader : {"4B 0B", "4B 0B 01 00 7E", "4B 0B 01 00 7E 00"})
        EXPECT_EQ(Run(im2, Hex(sHeader)), "false");
    EXPECT_EQ(Run(DO(FTM_GET_RSSI, w0), Hex("4B 0B 01 00 E6 00 00 00")), "false");
    const FtmCall gains = DO(FTM_TEST_GET_DVGA_LNA, true, 3, 7, h0, h1, h2, h3, h4);
    EXPECT_EQ(Run(gains, Hex("4B 0B 01 00 09")), "true h3=10b h4=900"); // a missing value is not a failure
    EXPECT_EQ(Run(gains, Hex("4B 0B 01 00")), "false");
}

TEST_F(FtmRfCommandsTest, OlderFormatReadsFieldsUpToTheRequestsLength) {
    m_diag.SetCommandType(FTM_COMMAND_59);
    for (const FtmRow& row : kControl) {
        if (row.sAnswer.size() > row.sRequest.size())
            continue;
        const size_t iPayload = Hex(row.sRequest).size();
        const std::string sHeader = handset::ToHex({59, 0x77, 0, static_cast<uint8_t>(iPayload), 0});
        Bytes answer = GoodAnswer(row, sHeader);
        answer.insert(answer.end(), 3, 0x91);
        EXPECT_EQ(Run(row.call, answer), Good(row)) << row.call.sName;
        EXPECT_EQ(m_phone.Requests(), Lines{sHeader + " " + row.sRequest});
    }
    const FtmCall offset = DO(FTM_GET_DVGA_OFFSET, -2, s0);
    EXPECT_EQ(Run(offset, Hex("3B 77 00 04 00 75 00 FE FF FD FF")), "true s0=fffffffe");
}

} // namespace
