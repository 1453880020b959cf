// Who the phone is, what state it is in, and the service operations.
#include <cstring>

#include "diag_fixture.h"

namespace {

const Call ExtBuildId = [](Diag_FTM& diag) {
    DWORD iVersion = 0xE1;
    DWORD iModel = 0xE2;
    char sSoftware[Diag_FTM::kBuildTextSize] = "s";
    char sModel[Diag_FTM::kBuildTextSize] = "m";
    const bool bResult = diag.DIAG_EXT_BUILD_ID_F(iVersion, iModel, sSoftware, sModel);
    return Outcome(bResult, iVersion, iModel, sSoftware, sModel);
};
const Call Status = [](Diag_FTM& diag) {
    unsigned char iStatus = 0xEE;
    return Outcome(diag.DIAG_STATUS_F(iStatus), iStatus);
};
const Call ReadEsn = [](Diag_FTM& diag) {
    DWORD iEsn = 0xEE;
    return Outcome(diag.DIAG_READ_ESN_F(iEsn), iEsn);
};
const Call ErrRead = [](Diag_FTM& diag) {
    QLIB_DIAG_Err_Read log{};
    return Outcome(diag.DIAG_ERR_READ_F(log), log.aData[0], log.aData[263]);
};
const Call ErrClear = [](Diag_FTM& diag) { return Outcome(diag.DIAG_ERR_CLEAR_F(7)); };
const Call Control = [](Diag_FTM& diag) { return Outcome(diag.DIAG_CONTROL_F(mode_enum_type{0x105})); };
const Call Dload = [](Diag_FTM& diag) { return Outcome(diag.DIAG_DLOAD_F()); };
const Call Freeze = [](Diag_FTM& diag) { return Outcome(diag.DIAG_SECURITY_FREEZE_F()); };
const Call Spc = [](Diag_FTM& diag) {
    const unsigned char aCode[] = {'1', '2', '3', '4', '5', '6'};
    unsigned char iResult = 0xEE;
    return Outcome(diag.DIAG_SPC_F(aCode, iResult), iResult);
};
const Call GetSwitches = [](Diag_FTM& diag) {
    unsigned short iSwitches = 0x1234;
    return Outcome(diag.DIAG_GET_DIPSW_F(iSwitches), iSwitches);
};
const Call SetSwitches = [](Diag_FTM& diag) { return Outcome(diag.DIAG_SET_DIPSW_F(0xABCD)); };
const Call Key = [](Diag_FTM& diag) { return Outcome(diag.DIAG_HS_KEY_F(KeyPressID{0x50}, 1)); };
const Call Display = [](Diag_FTM& diag) {
    unsigned short iHeight = 0xE1;
    unsigned short iWidth = 0xE2;
    unsigned char iDepth = 0xE3;
    unsigned char iOrientation = 0xE4;
    const bool bResult = diag.DIAG_HS_DISPLAY_GET_PARAMS_CMD(9, iHeight, iWidth, iDepth, iOrientation);
    return Outcome(bResult, iHeight, iWidth, iDepth, iOrientation);
};
const Call GsmStatus = [](Diag_FTM& diag) {
    unsigned char aImei[5] = {0xE1};
    unsigned char aImsi[9] = {0xE2};
    unsigned char aLai[9] = {0xE3};
    unsigned short iCell = 0xE4;
    unsigned char aStates[3] = {0xE5, 0xE6, 0xE7};
    const bool bResult =
        diag.DIAG_GSM_STATUS_F(aImei, aImsi, aLai, iCell, aStates[0], aStates[1], aStates[2]);
    return Outcome(bResult, aImei[0], aImei[4], aImsi[0], aImsi[8], aLai[0], aLai[8], iCell, aStates[0],
                   aStates[1], aStates[2]);
};
const Call CallOrig = [](Diag_FTM& diag) {
    const unsigned char aDigits[32] = {'1', '1', '2'};
    return Outcome(diag.DIAG_GSM_CALL_ORIG_F(3, aDigits));
};
const Call CallEnd = [](Diag_FTM& diag) { return Outcome(diag.DIAG_GSM_CALL_END_F()); };

const std::string kGsmAnswer =
    "4B 08 01 00 01 00 00 00 05 21 00 00 00 00 00 00 00 29 31 00 00 00 00 00 00 "
    "00 39 E1 0C 41 42 43";

class DiagIdentity : public DiagTest {};

TEST_F(DiagIdentity, RequestsAnswersAndLog) {
    Check(ExtBuildId, "7C", Packet("7C 00 00 00", {0xE1, 0xFF0}, std::string("S %s\0M\0", 7)),
          "true e1 ff0 S %s M", {"QLIB_DIAG_EXT_BUILD_ID_F()"},
          {"QLIB_DIAG_EXT_BUILD_ID_F( iMSM_HW_Version = 225, iMobModel = 4080, sMobSwRev = S %s, "
           "sModelStr  = M)"});
    Check(Status, "4B 04 0E 00", Hex("4B 04 0E 00 01 02 05"), "true 5", {"QLIB_DIAG_STATUS_F()"});
    Bytes errors(265, 0x66);
    errors.front() = 0x2A;
    errors.back() = 0x77;
    Check(ErrRead, "2A", errors, "true 66 77", {"QLIB_DIAG_ERR_READ_F()"});
    Check(ErrClear, "2B 07", Hex("2B 07"), "true", {"QLIB_DIAG_ERR_CLEAR_F()"});
    Check(Control, "29 05 01", Hex("29 05 01"), "true", {"QLIB_DIAG_CONTROL_F(eMode=261)"});
    Check(Dload, "3A", Hex("3A"), "true", {"QLIB_DIAG_DLOAD_F()"});
    Check(Freeze, "FF", Hex("FF"), "true", {"QLIB_DIAG_SECURITY_FREEZE_F()"});
    Check(Spc, "41 31 32 33 34 35 36", Hex("41 01"), "true 1", {"QLIB_SPC( iSPC[6] = 123456)"});
    Check(GetSwitches, "2F 34 12", Hex("2F 78 56"), "true 5678", {"QLIB_DIAG_GET_DIPSW_F -- Start"},
          {"QLIB_DIAG_GET_DIPSW_F -- completed ( iSwitchValues = 0x5678)"});
    Check(SetSwitches, "2F CD AB", Hex("2F"), "true", {"QLIB_DIAG_SET_DIPSW_F( iSwitchValues = 0xABCD)"});
    Check(Key, "20 01 50", Hex("20 01 50"), "true", {"QLIB_DIAG_HS_KEY_F(iKey=80, iHold=1)"});
}

TEST_F(DiagIdentity, StateRequestsAnswersAndLog) {
    Check(Display, "4B 10 00 00", Hex("4B 10 00 00 07 40 01 F0 00 10 02"), "true 140 f0 10 2",
          {"QLIB_DIAG_HS_DISPLAY_GET_PARAMS_CMD( iDisplayID = 9 )"},
          {"QLIB_DIAG_HS_DISPLAY_GET_PARAMS_CMD( iDisplayID = 7, iDisplayHeight = 320, iDisplayWidth = 240, "
           "iPixelDepth = 16, iPanelOrientation = 2)"});
    const Lines gsmStatus = {"QLIB_DIAG_GSM_GSM_STATUS_F( )"};
    Check(GsmStatus, "4B 08 01 00", Hex(kGsmAnswer), "true 1 5 21 29 31 39 ce1 41 42 43", gsmStatus,
          {"QLIB_DIAG_TMC_STATE_RETRIEVAL_F(iIMEI[0] = 0x1, iIMSI[0] = 0x21, iLAI[0] = 0x31,  "
           "iCellID = 0xCE1, iCM_CallState = 0x41, iCM_OperationalMode = 0x42, iCM_SystemMode = 0x43)"});
    Check(GsmStatus, "4B 08 01 00", Hex("4B 08 01 00 E1 0C 41 42 43"), "false e1 0 e2 0 e3 0 e4 e5 e6 e7",
          gsmStatus, {"QLIB_DIAG_TMC_STATE_RETRIEVAL_F() -- response packet size is not valid"});
    Check(CallOrig, "4B 08 03 00 03 31 31 32 " + Times(29, "00"), Hex("4B 08 03 00"), "true",
          {"QLIB_DIAG_GSM_CALL_ORIG_F( iNumDigits = 3 )"});
    Check(CallEnd, "4B 08 04 00", Hex("4B 08 04 00"), "true", {"QLIB_DIAG_GSM_CALL_END_F( )"});
    m_diag.SetCommandType(FTM_COMMAND_59);
    Check(CallEnd, "3B 08 04 00", Hex("3B 08 04 00"), "true", {"QLIB_DIAG_GSM_CALL_END_F( )"});
}

TEST_F(DiagIdentity, ShortAnswersLeaveValuesAlone) {
    const struct {
        Call call;
        const char* sAnswer;
        const char* sOutcome;
    } cases[] = {
        {ExtBuildId, "7C", "true e1 e2  "},
        {ExtBuildId, "7C 00 00 00 01 00 00 00 02 00 00", "true 1 e2  "},
        {ExtBuildId, "7C 00 00 00 01 00 00 00 02 00 00 00 53 57", "true 1 2 SW "},
        {Status, "4B 04 0E 00", "true ee"},
        {ErrRead, "2A 00 00", "true 0 0"},
        {GetSwitches, "2F 05", "true 1234"},
        {Display, "4B 10 00 00 40 01 F0 00 10 02", "true e1 e2 e3 e4"},
        {GsmStatus, "4B", "false e1 0 e2 0 e3 0 e4 e5 e6 e7"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Answered(c.call, Hex(c.sAnswer)), c.sOutcome) << c.sAnswer;
}

TEST_F(DiagIdentity, WithoutAnswerNothingChanges) {
    const struct {
        Call call;
        const char* sOutcome;
    } cases[] = {
        {ExtBuildId, "false e1 e2 s m"},
        {Status, "false ee"},
        {ReadEsn, "false ee"},
        {ErrRead, "false 0 0"},
        {ErrClear, "false"},
        {Control, "false"},
        {Dload, "false"},
        {Freeze, "false"},
        {Spc, "false ee"},
        {GetSwitches, "false 1234"},
        {SetSwitches, "false"},
        {Key, "false"},
        {Display, "false e1 e2 e3 e4"},
        {CallOrig, "false"},
        {CallEnd, "false"},
        {GsmStatus, "false e1 0 e2 0 e3 0 e4 e5 e6 e7"},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(Unanswered(cases[i].call), cases[i].sOutcome) << i;
        EXPECT_EQ(m_log.Of(LOG_ERR).size(), 1u) << i;
    }
}

TEST_F(DiagIdentity, VersionNeedsAWholeRecord) {
    Bytes answer(60, 'x');
    answer[0] = 0;
    const std::pair<size_t, bool> cases[] = {{1, false}, {53, false}, {54, true}, {60, true}};
    for (const auto& [iSize, bResult] : cases) {
        QLIB_PhoneResp_Version aRecords[2];
        std::memset(aRecords, 0xEE, sizeof aRecords);
        m_phone.Answer("", {answer.begin(), answer.begin() + static_cast<ptrdiff_t>(iSize)});
        EXPECT_EQ(m_diag.DIAG_VERNO_F(aRecords), bResult) << iSize;
        EXPECT_EQ(aRecords[0].iHardwareVersion, bResult ? 'x' : 0xEE) << iSize;
        EXPECT_EQ(aRecords[1].iCmdCode, 0xEE) << iSize;
    }
    EXPECT_FALSE(m_diag.DIAG_VERNO_F(nullptr));
    EXPECT_EQ(m_phone.CountOf("00"), 5);
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_DIAG_VERNO_F()"));
}

TEST_F(DiagIdentity, SerialNumberIsAnNvItem) {
    const std::string sData = " 78 56 34 80 " + Times(124, "00");
    const Lines start = {"DIAG_READ_ESN_F() -- Start"};
    Check(ReadEsn, "26 00 00", Hex("26 00 00" + sData + " 00 00"), "true 80345678", start,
          {"DIAG_READ_ESN_F() -- completed ( iESN = 0x80345678)"});
    Check(ReadEsn, "26 00 00", Hex("26 00 00" + sData + " 05 00"), "false ee", start,
          {"DIAG_READ_ESN_F() -- failed NV Read, status 5"});
    Check(ReadEsn, "26 00 00", Hex("26 00 00"), "false ee", start, {"DIAG_READ_ESN_F() -- failed NV Read"});
}

TEST_F(DiagIdentity, TheSimulatedPhoneAnswersAll) {
    QLIB_PhoneResp_Version version{};
    EXPECT_TRUE(m_diag.DIAG_VERNO_F(&version));
    EXPECT_EQ(std::string(version.sVersionDirectory, 8), "SIMULATE");
    EXPECT_EQ(version.iFirmwareRevision, 0x0101);
    EXPECT_EQ(ExtBuildId(m_diag), "true 200e1 ff0 QSIM-1.2.3 SIM-100");
    EXPECT_EQ(Status(m_diag), "true 3");
    EXPECT_EQ(ReadEsn(m_diag), "true 80345678");
    EXPECT_EQ(Spc(m_diag), "true 0");
    EXPECT_EQ(ErrRead(m_diag), "true e0 e0");
    EXPECT_EQ(ErrClear(m_diag), "true");
    EXPECT_EQ(ErrRead(m_diag), "true 0 0");
    EXPECT_EQ(GetSwitches(m_diag), "true 1234");
    EXPECT_EQ(Display(m_diag), "true 140 f0 10 1");
    for (const Call call : {Key, CallOrig, Control, Freeze, Dload})
        EXPECT_EQ(call(m_diag), "true");
    const handset::Service service = State().service;
    EXPECT_EQ(service.calledNumber, "112");
    EXPECT_EQ(service.mode, 0x105);
    EXPECT_EQ(service.keys, (std::vector<std::pair<uint8_t, uint8_t>>{{0x50, 1}}));
    EXPECT_TRUE(service.isFrozen && service.isDownloading && !service.isUnlocked);
    EXPECT_EQ(GsmStatus(m_diag), "true 11 11 22 22 33 33 ce1 2 5 3");
    EXPECT_EQ(CallEnd(m_diag), "true");
    EXPECT_EQ(GsmStatus(m_diag), "true 11 11 22 22 33 33 ce1 0 5 3");
}

} // namespace
