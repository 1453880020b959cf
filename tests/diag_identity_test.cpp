// Who the phone is, what state it is in, and the service operations.
#include <cstring>

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

TEST_F(DiagIdentity, RequestsAnswersAndLog) {
    Check(ExtBuildId, "7C", Packet("7C 00 00 00", {0xE1, 0xFF0}, std::string("S %s\0M\0", 7)),
          "true e1 ff0 S %s M", "false e1 e2 s m", {"QLIB_DIAG_EXT_BUILD_ID_F()"},
          {"QLIB_DIAG_EXT_BUILD_ID_F( iMSM_HW_Version = 225, iMobModel = 4080, sMobSwRev = S %s, "
           "sModelStr  = M)"});
    Check(Status, "4B 04 0E 00", Hex("4B 04 0E 00 01 02 05"), "true 5", "false ee", {"QLIB_DIAG_STATUS_F()"});
    const Bytes errors = Hex("2A 66 " + Times(262, "55") + " 77");
    Check(ErrRead, "2A", errors, "true 66 77", "false 0 0", {"QLIB_DIAG_ERR_READ_F()"});
    Check(ErrClear, "2B 07", Hex("2B 07"), "true", "false", {"QLIB_DIAG_ERR_CLEAR_F()"});
    Check(Control, "29 05 01", Hex("29 05 01"), "true", "false", {"QLIB_DIAG_CONTROL_F(eMode=261)"});
    Check(Dload, "3A", Hex("3A"), "true", "false", {"QLIB_DIAG_DLOAD_F()"});
    Check(Freeze, "FF", Hex("FF"), "true", "false", {"QLIB_DIAG_SECURITY_FREEZE_F()"});
    Check(Spc, "41 31 32 33 34 35 36", Hex("41 01"), "true 1", "false ee", {"QLIB_SPC( iSPC[6] = 123456)"});
    Check(GetDip, "2F 34 12", Hex("2F 78 56"), "true 5678", "false 1234", {"QLIB_DIAG_GET_DIPSW_F -- Start"},
          {"QLIB_DIAG_GET_DIPSW_F -- completed ( iSwitchValues = 0x5678)"});
    Check(SetDip, "2F CD AB", Hex("2F"), "true", "false", {"QLIB_DIAG_SET_DIPSW_F( iSwitchValues = 0xABCD)"});
    Check(Key, "20 01 50", Hex("20 01 50"), "true", "false", {"QLIB_DIAG_HS_KEY_F(iKey=80, iHold=1)"});
}

TEST_F(DiagIdentity, StateRequestsAnswersAndLog) {
    Check(Display, "4B 10 00 00", Hex("4B 10 00 00 07 40 01 F0 00 10 02"), "true 140 f0 10 2",
          "false e1 e2 e3 e4", {"QLIB_DIAG_HS_DISPLAY_GET_PARAMS_CMD( iDisplayID = 9 )"},
          {"QLIB_DIAG_HS_DISPLAY_GET_PARAMS_CMD( iDisplayID = 7, iDisplayHeight = 320, iDisplayWidth = 240, "
           "iPixelDepth = 16, iPanelOrientation = 2)"});
    const Lines gsmStatus = {"QLIB_DIAG_GSM_GSM_STATUS_F( )"};
    const std::string sNothing = "false e1 0 0 e2 0 e3 0 e4 e5 e6 e7";
    Check(GsmStatus, "4B 08 01 00",
          Hex("4B 08 01 00 01 00 00 00 05 21 00 00 00 00 00 00 00 29 31 00 00 00 00 00 00 00 39 E1 0C 41 42 "
              "43"),
          "true 1 5 0 21 29 31 39 ce1 41 42 43", sNothing, gsmStatus,
          {"QLIB_DIAG_TMC_STATE_RETRIEVAL_F(iIMEI[0] = 0x1, iIMSI[0] = 0x21, iLAI[0] = 0x31,  "
           "iCellID = 0xCE1, iCM_CallState = 0x41, iCM_OperationalMode = 0x42, iCM_SystemMode = 0x43)"});
    Check(GsmStatus, "4B 08 01 00", Hex("4B 08 01 00 E1 0C 41 42 43"), sNothing, sNothing, gsmStatus,
          {"QLIB_DIAG_TMC_STATE_RETRIEVAL_F() -- response packet size is not valid"});
    Check(CallOrig, "4B 08 03 00 03 31 31 32 " + Times(29, "00"), Hex("4B 08 03 00"), "true", "false",
          {"QLIB_DIAG_GSM_CALL_ORIG_F( iNumDigits = 3 )"});
    const Lines callEnd = {"QLIB_DIAG_GSM_CALL_END_F( )"};
    Check(CallEnd, "4B 08 04 00", Hex("4B 08 04 00"), "true", "false", callEnd);
    m_diag.SetCommandType(FTM_COMMAND_59);
    Check(CallEnd, "3B 08 04 00", Hex("3B 08 04 00"), "true", "false", callEnd);
}

TEST_F(DiagIdentity, ShortAnswersLeaveValuesAlone) {
    CheckAnswers({
        {ExtBuildId, "7C", "true e1 e2  "},
        {ExtBuildId, "7C 00 00 00 01 00 00 00 02 00 00", "true 1 e2  "},
        {ExtBuildId, "7C 00 00 00 01 00 00 00 02 00 00 00 53 57", "true 1 2 SW "},
        {Status, "4B 04 0E 00", "true ee"},
        {ErrRead, "2A 00 00", "true 0 0"},
        {GetDip, "2F 05", "true 1234"},
        {Display, "4B 10 00 00 40 01 F0 00 10 02", "true e1 e2 e3 e4"},
        {GsmStatus, "4B", "false e1 0 0 e2 0 e3 0 e4 e5 e6 e7"},
    });
}

TEST_F(DiagIdentity, VersionNeedsAWholeRecord) {
    Bytes answer(60, 'x');
    answer[0] = 0;
    for (const size_t iSize : {1u, 53u, 54u, 60u}) {
        const bool bWhole = iSize >= 54;
        QLIB_PhoneResp_Version aRecords[2];
        std::memset(aRecords, 0xEE, sizeof aRecords);
        m_phone.Answer("", {answer.begin(), answer.begin() + static_cast<ptrdiff_t>(iSize)});
        EXPECT_EQ(m_diag.DIAG_VERNO_F(aRecords), bWhole) << iSize;
        EXPECT_EQ(aRecords[0].iHardwareVersion, bWhole ? 'x' : 0xEE) << iSize;
        EXPECT_EQ(aRecords[1].iCmdCode, 0xEE) << iSize;
    }
    EXPECT_FALSE(m_diag.DIAG_VERNO_F(nullptr));
    EXPECT_EQ(m_phone.CountOf("00"), 5);
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_DIAG_VERNO_F()"));
}

TEST_F(DiagIdentity, SerialNumberIsAnNvItem) {
    const std::string sItem = "26 00 00 78 56 34 80 " + Times(124, "00");
    const Lines start = {"DIAG_READ_ESN_F() -- Start"};
    Check(ReadEsn, "26 00 00", Hex(sItem + " 00 00"), "true 80345678", "false ee", start,
          {"DIAG_READ_ESN_F() -- completed ( iESN = 0x80345678)"});
    Check(ReadEsn, "26 00 00", Hex(sItem + " 05 00"), "false ee", "false ee", start,
          {"DIAG_READ_ESN_F() -- failed NV Read, status 5"});
    EXPECT_EQ(m_log.Of(LOG_RET), Lines{"DIAG_READ_ESN_F() -- failed NV Read"}); // unanswered
}

} // namespace
