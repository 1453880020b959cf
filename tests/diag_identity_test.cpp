// The phone's identity and state, and the service operations.
#include "diag_fixture.h"

namespace {

const Call ExtBuildId = [](Diag_FTM& d, DWORD iVersion = 0xE1, DWORD iModel = 0xE2) {
    char sSoftware[Diag_FTM::kBuildTextSize] = "s";
    char sModel[Diag_FTM::kBuildTextSize] = "m";
    const bool bResult = d.DIAG_EXT_BUILD_ID_F(iVersion, iModel, sSoftware, sModel);
    return Outcome(bResult, iVersion, iModel, sSoftware, sModel);
};
const Call Status = [](Diag_FTM& d, unsigned char i = 0xEE) { return Outcome(d.DIAG_STATUS_F(i), i); };
const Call ReadEsn = [](Diag_FTM& d, DWORD i = 0xEE) { return Outcome(d.DIAG_READ_ESN_F(i), i); };
const Call ErrRead = [](Diag_FTM& d, QLIB_DIAG_Err_Read log = {}) {
    return Outcome(d.DIAG_ERR_READ_F(log), log.aData[0], log.aData[263]);
};
const Call ErrClear = [](Diag_FTM& d) { return Outcome(d.DIAG_ERR_CLEAR_F(7)); };
const Call Control = [](Diag_FTM& d) { return Outcome(d.DIAG_CONTROL_F(mode_enum_type{0x105})); };
const Call Dload = [](Diag_FTM& d) { return Outcome(d.DIAG_DLOAD_F()); };
const Call Freeze = [](Diag_FTM& d) { return Outcome(d.DIAG_SECURITY_FREEZE_F()); };
const Call Spc = [](Diag_FTM& d, unsigned char iResult = 0xEE) {
    const unsigned char aCode[] = {'1', '2', '3', '4', '5', '6'};
    return Outcome(d.DIAG_SPC_F(aCode, iResult), iResult);
};
const Call GetDip = [](Diag_FTM& d, unsigned short i = 0x1234) { return Outcome(d.DIAG_GET_DIPSW_F(i), i); };
const Call SetDip = [](Diag_FTM& d) { return Outcome(d.DIAG_SET_DIPSW_F(0xABCD)); };
const Call Key = [](Diag_FTM& d) { return Outcome(d.DIAG_HS_KEY_F(KeyPressID{0x50}, 1)); };
const Call Display = [](Diag_FTM& d, unsigned short iHeight = 0xE1, unsigned short iWidth = 0xE2,
                        unsigned char iDepth = 0xE3, unsigned char iOrientation = 0xE4) {
    const bool bResult = d.DIAG_HS_DISPLAY_GET_PARAMS_CMD(9, iHeight, iWidth, iDepth, iOrientation);
    return Outcome(bResult, iHeight, iWidth, iDepth, iOrientation);
};
const Call GsmStatus = [](Diag_FTM& d, unsigned short iCell = 0xE4) {
    unsigned char aIds[3][9] = {{0xE1}, {0xE2}, {0xE3}};
    unsigned char s[3] = {0xE5, 0xE6, 0xE7};
    const bool bResult = d.DIAG_GSM_STATUS_F(aIds[0], aIds[1], aIds[2], iCell, s[0], s[1], s[2]);
    return Outcome(bResult, aIds[0][0], aIds[0][4], aIds[0][5], aIds[1][0], aIds[1][8], aIds[2][0],
                   aIds[2][8], iCell, s[0], s[1], s[2]);
};
const Call CallOrig = [](Diag_FTM& d) {
    const unsigned char aDigits[32] = {'1', '1', '2'};
    return Outcome(d.DIAG_GSM_CALL_ORIG_F(3, aDigits));
};
const Call CallEnd = [](Diag_FTM& d) { return Outcome(d.DIAG_GSM_CALL_END_F()); };

class DiagIdentity : public DiagTest {};

TEST_F(DiagIdentity, RequestsResponsesAndLog) {
    Check(ExtBuildId, "7C", "7C 00 00 00 E1 00 00 00 F0 0F 00 00 53 20 25 73 00 4D 00", "true e1 ff0 S %s M",
          "QLIB_DIAG_EXT_BUILD_ID_F()");
    Check(Status, "4B 04 0E 00", "4B 04 0E 00 01 02 05", "true 5", "QLIB_DIAG_STATUS_F()");
    Check(ErrRead, "2A", "2A 66 " + Times(262, "55") + " 77", "true 66 77", "QLIB_DIAG_ERR_READ_F()");
    Check(ErrClear, "2B 07", "2B 07", "true", "QLIB_DIAG_ERR_CLEAR_F()");
    Check(Control, "29 05 01", "29 05 01", "true", "QLIB_DIAG_CONTROL_F(eMode=261)");
    Check(Dload, "3A", "3A", "true", "QLIB_DIAG_DLOAD_F()");
    Check(Freeze, "FF", "FF", "true", "QLIB_DIAG_SECURITY_FREEZE_F()");
    Check(Spc, "41 31 32 33 34 35 36", "41 01", "true 1", "QLIB_SPC( iSPC[6] = 123456)");
    Check(GetDip, "2F 34 12", "2F 78 56", "true 5678", "QLIB_DIAG_GET_DIPSW_F -- Start");
    Check(SetDip, "2F CD AB", "2F", "true", "QLIB_DIAG_SET_DIPSW_F( iSwitchValues = 0xABCD)");
    Check(Key, "20 01 50", "20 01 50", "true", "QLIB_DIAG_HS_KEY_F(iKey=80, iHold=1)");
    Check(Display, "4B 10 00 00", "4B 10 00 00 07 40 01 F0 00 10 02", "true 140 f0 10 2",
          "QLIB_DIAG_HS_DISPLAY_GET_PARAMS_CMD( iDisplayID = 9 )");
    Check(GsmStatus, "4B 08 01 00",
          "4B 08 01 00 01 00 00 00 05 21 00 00 00 00 00 00 00 29 31 00 00 00 00 00 00 00 39 E1 0C 41 42 43",
          "true 1 5 0 21 29 31 39 ce1 41 42 43", "QLIB_DIAG_GSM_GSM_STATUS_F( )");
    Check(CallOrig, "4B 08 03 00 03 31 31 32 " + Times(29, "00"), "4B 08 03 00", "true",
          "QLIB_DIAG_GSM_CALL_ORIG_F( iNumDigits = 3 )");
    Check(CallEnd, "4B 08 04 00", "4B 08 04 00", "true", "QLIB_DIAG_GSM_CALL_END_F( )");
    Check(ReadEsn, "26 00 00", "26 00 00 78 56 34 80 " + Times(124, "00") + " 00 00", "true 80345678",
          "DIAG_READ_ESN_F() -- Start");
}

TEST_F(DiagIdentity, ShortAndRefusingResponsesLeaveValuesUnchanged) {
    CheckAnswers({
        {ExtBuildId, "7C 00 00 00 01 00 00 00 02 00 00", "true 1 e2  "},
        {ExtBuildId, "7C 00 00 00 01 00 00 00 02 00 00 00 53 57", "true 1 2 SW "},
        {ExtBuildId, "7C 00 00 00", "false e1 e2 s m"},
        {Status, "4B 04 0E 00", "false ee"},
        {ErrRead, "2A 66", "true 0 0"},
        {ErrRead, "2A", "false 0 0"},
        {Spc, "41", "false ee"},
        {GetDip, "2F 05", "true 1234"},
        {GetDip, "2F", "false 1234"},
        {Display, "4B 10 00 00 F0 00 40 01 10 02", "true f0 140 10 2"},
        {Display, "4B 10 00 00 00 40 01 10 02", "true e1 e2 e3 e4"},
        {Display, "4B 10 00 00", "false e1 e2 e3 e4"},
        {ReadEsn, "26 00 00 78 56 34 00 00", "false ee"},
    });
    EXPECT_EQ(Answered(GsmStatus, Hex("4B 08 01 00 " + Times(27, "41"))),
              "false e1 0 0 e2 0 e3 0 e4 e5 e6 e7");
    const std::string sNoSuchItem = "26 00 00 78 56 34 80 " + Times(124, "00") + " 05 00";
    EXPECT_EQ(Answered(ReadEsn, Hex(sNoSuchItem)), "false ee");
}

TEST_F(DiagIdentity, VersionRequiresACompleteRecord) {
    const Call version = [](Diag_FTM& d) {
        QLIB_PhoneResp_Version aRecords[2] = {};
        return Outcome(d.DIAG_VERNO_F(aRecords), aRecords[0].iHardwareVersion, aRecords[1].iCmdCode);
    };
    for (const size_t iSize : {1u, 53u, 54u, 60u})
        EXPECT_EQ(Answered(version, Hex("00 " + Times(iSize - 1, "78"))),
                  iSize < 54 ? "false 0 0" : "true 78 0");
    EXPECT_FALSE(m_diag.DIAG_VERNO_F(nullptr));
}

} // namespace
