// What the phone sends unasked: masks, queues, waiting, key presses.
#include <thread>

#include "diag_fixture.h"

namespace {

const Call AddCodes = [](Diag_FTM& d) {
    const unsigned short aCodes[] = {0x1098, 0x1001, 0x2001, 0x0FFF};
    return Outcome(d.DIAG_AddExtendedLogCodes(1, aCodes, 4));
};
const Call AddCode = [](Diag_FTM& d) { return Outcome(d.DIAG_AddExtendedLogCode(1, 0x1009)); };
const Call ClearCodes = [](Diag_FTM& d) { return Outcome(d.DIAG_ClearAllLogCodes(1)); };
const Call SetCode = [](Diag_FTM& d) { return Outcome(d.DIAG_SetExtendedLogCode(1, 0x1009, 17)); };
const Call Ranges = [](Diag_FTM& d, DWORD i = 0xEE) { return Outcome(d.DIAG_GetLogRanges(15, i), i); };
const Call Level = [](Diag_FTM& d) { return Outcome(d.DIAG_SetMessageLevel(0x203)); };
const Call Filter = [](Diag_FTM& d) { return Outcome(d.DIAG_SetMessageFilter(0x102, 0x80000001)); };
const Call Events = [](Diag_FTM& d) { return Outcome(d.DIAG_EventReportControl(true)); };
const Call FindMessage = [](Diag_FTM& d, bool bFound = true, DWORD i = 0xE1, DWORD j = 0xE2, DWORD k = 0xE3) {
    return Outcome(d.DIAG_FindDebugMessage("look %d", bFound, i, j, k), bFound, i, j, k);
};
const Call NextKey = [](Diag_FTM& d, unsigned short iKey = 0xEE, unsigned char iType = 0xEE) {
    return Outcome(d.DIAG_KeyPress_GetNextKeyEvent(iKey, iType), iKey, iType);
};
const Call NextLog = [](Diag_FTM& d, unsigned short iSize = 0xEE, QueueItem item = {.data = {0xEE}}) {
    return Outcome(d.DIAG_GetNextPhoneLog(&iSize, item.data, 0), iSize, item.data[0]);
};
const Call NextResponse = [](Diag_FTM& d, unsigned short iSize = 0xEE, QueueItem item = {.data = {0xEE}}) {
    return Outcome(d.DIAG_GetNextCommandResponse(&iSize, item.data, 7), iSize, item.data[0]);
};

/// The answer of a range query with one last item for all equipment.
Bytes RangesAnswer(uint32_t i) {
    return Packet("73 00 00 00", {1, 0, i, i + 1, i + 2, i + 3, i + 4, i + 5, i + 6, i + 7, i + 8, i + 9,
                                  i + 10, i + 11, i + 12, i + 13, i + 14, i + 15});
}

const std::string kRangesRequest = "73 00 00 00 01 00 00 00 " + Times(64, "00");

handset::Message Text(const std::string& sFormat) {
    return {.format = sFormat};
}

class DiagPhoneLog : public DiagTest {};

// --- Masks ------------------------------------------------------------------------------------------

TEST_F(DiagPhoneLog, RequestsAnswersAndLog) {
    const std::string sMask = "QLIB_DIAG_SetExtendedLogMask( iOperation = ";
    Check(SetCode, "73 00 00 00 03 00 00 00 01 00 00 00 11 00 00 00 00 02 00",
          Packet("73 00 00 00", {3, 0, 1, 17}), "true", "false",
          {sMask + "0x3, piOperationData[0] = 0x1, iOperationDataSize=11)"},
          {"QLIB_DIAG_SetExtendedLogCode(0x1,0x1009)"});
    Check(Ranges, kRangesRequest, RangesAnswer(0x100), "true 10f", "false ee",
          {sMask + "0x1, piOperationData[0] = 0x0, iOperationDataSize=64)"});
    Check(Filter, "7D 04 02 01 02 01 00 00 01 00 00 80", Hex("7D"), "true", "false",
          {"QLIB_DIAG_SetMessageFilter(iSSID=258, iRT_MASK=-2147483647)"});
    Check(Events, "60 01", Hex("60 00 00"), "true", "false",
          {"QLIB_DIAG_EventReportControl( bOperationSwitch = 1)"});
    // This answer looks like a message of the phone, so nobody gets it; the phone takes the level all the
    // same.
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 200);
    Check(Level, "1F 03 02", Hex("1F 00 00"), "false", "false",
          {"QLIB_DIAG_SetMessageLevel(iMessageLevel=515)"});
}

TEST_F(DiagPhoneLog, AddingCodesKeepsThoseThatAreOn) {
    m_phone.phone.WithState([](handset::State& state) {
        state.traffic.lastItems[1] = 0x9F;
        state.traffic.logs[1] = {0x01};
    });
    EXPECT_EQ(AddCodes(m_diag), "true");
    const std::string sHead = " 00 00 00 01 00 00 00 9F 00 00 00 ";
    EXPECT_EQ(m_phone.Requests(), (Lines{kRangesRequest, "73 00 00 00 04" + sHead + Times(20, "00"),
                                         "73 00 00 00 03" + sHead + "03 " + Times(18, "00") + " 01"}));
    const Lines operation = m_log.Of(LOG_FN);
    ASSERT_EQ(operation.size(), 5u);
    EXPECT_EQ(operation.front(), "QLIB_DIAG_AddExtendedLogCodes( iEquipmentID = 1,iLogCodeListSize = 4)");
    EXPECT_EQ(operation.back(), "QLIB_DIAG_SetPhoneLoggingState(bEnableLogging=1)");
    const std::string sAdding = "QLIB_DIAG_AddExtendedLogCodes() -- adding log code 0x";
    EXPECT_EQ(m_log.Of(LOG_RET),
              (Lines{sAdding + "1098", sAdding + "1001", sAdding + "2001", sAdding + "FFF"}));
    EXPECT_EQ(AddCodes(m_diag), "true");
    EXPECT_EQ(m_phone.CountOf("73 00 00 00 03"), 1); // nothing new, nothing sent
    EXPECT_EQ(ClearCodes(m_diag), "true");
    EXPECT_EQ(m_phone.Requests().back(), "73 00 00 00 03" + sHead + Times(20, "00"));
}

TEST_F(DiagPhoneLog, MasksThatCannotBeAsked) {
    const Bytes tooShort(71, 0x73); // by one byte
    for (const Call& call : {AddCode, ClearCodes}) {
        EXPECT_EQ(Answered(call, tooShort), "false");
        EXPECT_EQ(m_phone.Requests(), Lines{kRangesRequest});
        EXPECT_EQ(m_log.Of(LOG_RET), Lines{"QLIB_DIAG_AddExtendedLogCodes() -- failed to get log range"});
    }
    EXPECT_EQ(Answered(Ranges, tooShort), "false ee");
    DWORD iLastItem = 0xEE;
    EXPECT_FALSE(m_diag.DIAG_GetLogRanges(16, iLastItem));

    // A mask of another equipment, and none: the wanted code becomes the whole mask.
    m_phone.Answer("73 00 00 00 01", RangesAnswer(7));
    for (const Bytes& answer : {Packet("73 00 00 00", {4, 0, 2, 8}, "\xFF\xFF"), Hex("73 00")}) {
        m_phone.Answer("73 00 00 00 04", answer);
        m_log.Clear();
        EXPECT_EQ(AddCode(m_diag), "true");
        EXPECT_EQ(m_phone.Requests().back(), "73 00 00 00 03 00 00 00 01 00 00 00 08 00 00 00 00 02");
        EXPECT_TRUE(m_log.Has(LOG_RET, "QLIB_DIAG_AddExtendedLogCodes: Error fetching current log mask"));
    }
}

TEST_F(DiagPhoneLog, RangesAreBounded) {
    const Call manyItems = [](Diag_FTM& d) { return Outcome(d.DIAG_SetExtendedLogCode(1, 0x1FFF, 0xFFFF)); };
    for (const uint32_t iLastItem : {0x1000u, 0xFFFFFFF0u}) {
        m_phone.Answer("73 00 00 00 01", RangesAnswer(iLastItem));
        for (const Call& call : {AddCode, ClearCodes, manyItems}) {
            EXPECT_EQ(call(m_diag), "true");
            EXPECT_EQ(m_phone.phone.Requests().back().size(), 8u + 8 + 512);
        }
    }
}

TEST_F(DiagPhoneLog, MaskAnswersAreCopiedBackAsFarAsTheyGo) {
    unsigned char aData[4] = {1, 2, 3, 4};
    unsigned short iSize = sizeof aData;
    m_phone.Answer("73", Hex("73 01 00 00 A1 A2 A3 A4"));
    EXPECT_TRUE(m_diag.DIAG_SetExtendedLogMask(9, aData, iSize));
    EXPECT_EQ(Bytes(aData, aData + 4), Hex("A1 A2 A3 A4"));
    m_phone.Answer("73", Hex("73 B2"));
    EXPECT_TRUE(m_diag.DIAG_SetExtendedLogMask(9, aData, iSize));
    EXPECT_EQ(Bytes(aData, aData + 4), Hex("73 B2 A3 A4"));
    EXPECT_EQ(m_phone.Requests().back(), "73 00 00 00 09 00 00 00 A1 A2 A3 A4");
}

// --- Queues -----------------------------------------------------------------------------------------

TEST_F(DiagPhoneLog, Queues) {
    DWORD iSize = 0xEE;
    EXPECT_FALSE(m_diag.DIAG_GetPhoneLogQueueSize(iSize));
    EXPECT_EQ(iSize, 0u);
    EXPECT_EQ(NextResponse(m_diag), "false ee ee");
    m_phone.phone.Send(Hex("42 01"));
    ASSERT_TRUE(Eventually([&] { return m_diag.DIAG_GetCommandResponseQueueSize(iSize); }));
    m_log.Clear();
    EXPECT_EQ(NextResponse(m_diag), "true 4 42");
    EXPECT_EQ(m_log.Of(LOG_FN), Lines{"QLIB_DIAG_GetNextCommandResponse(iTimeout=7)"});
    EXPECT_TRUE(m_log.Of(LOG_RET).at(0).starts_with("SYNC_RESPONSE DATA: 42 01 "));
    m_diag.DIAG_SetPhoneLoggingState(true);
    m_phone.phone.Send(Bytes(4094, 0x10)); // with its FCS as long as a packet can be
    m_phone.phone.Send(Hex("42"));
    ASSERT_TRUE(WaitFor(1) && Eventually([&] { return m_diag.DIAG_GetCommandResponseQueueSize(iSize); }));
    EXPECT_EQ(NextLog(m_diag), "true 1000 10");
    EXPECT_TRUE(m_diag.DIAG_ClearPhoneLogQueue() && m_diag.DIAG_ClearCommandResponseQueue());
    EXPECT_FALSE(m_diag.DIAG_GetCommandResponseQueueSize(iSize));
}

// --- Waiting ----------------------------------------------------------------------------------------

TEST_F(DiagPhoneLog, LogsAreWaitedFor) {
    unsigned char aBuffers[3][4096];
    unsigned char* apBuffers[] = {aBuffers[0], aBuffers[1], aBuffers[2]};
    unsigned short aSizes[3] = {};
    unsigned short iNumLogs = 3;
    // The mask is set in the phone before the wait itself switches logging on: nothing may slip through.
    m_diag.DIAG_SetPhoneLoggingState(true);
    m_log.Clear();
    std::thread phone([&] {
        EXPECT_TRUE(Eventually([&] { return m_phone.phone.EmitLog(0x1009, Hex("01")); }));
        m_phone.phone.Send(handset::LogPacket(0x100A, 0, {}));
        m_phone.phone.Send(Hex("10 00 00 00 09"));
        m_phone.phone.Send(handset::MessagePacket(Text("m")));
        for (const char* sPayload : {"02 03", "04", "05"})
            m_phone.phone.EmitLog(0x1009, Hex(sPayload));
    });
    EXPECT_TRUE(m_diag.DIAG_GetMultipleLogs(1, 0x1009, iNumLogs, 60000, apBuffers, aSizes));
    phone.join();
    EXPECT_EQ(iNumLogs, 3);
    EXPECT_EQ(aBuffers[1][16], 2);
    EXPECT_EQ(aBuffers[2][16], 4);
    EXPECT_EQ(aSizes[1], 16 + 2 + 2);
    EXPECT_EQ(m_log.Of(LOG_FN).front(),
              "QLIB_DIAG_GetMultipleLogs( iEquipmentID = 1, iLogCode = 0x1009, iNumLogs = 3, "
              "iTimeOut_ms = 60000 )");
    EXPECT_TRUE(m_log.Has(LOG_RET, "QLIB_DIAG_GetMultipleLogs() -- Found log code 0x1009"));
    ASSERT_TRUE(WaitFor(1)); // the fourth stays

    const Call single = [&](Diag_FTM& diag, unsigned short iSize = 0) {
        return Outcome(diag.DIAG_GetSingleLog(1, 0x1009, 0, aBuffers[0], iSize), aBuffers[0][16]);
    };
    CheckCalls({{single, "true 5"}, {single, "false 5"}});
    EXPECT_TRUE(
        m_log.Has(LOG_FN, "QLIB_DIAG_GetSingleLog( iEquipmentID = 1, iLogCode = 0x1009, iTimeOut_ms = 0 )"));
    const Call two = [&](Diag_FTM& diag, unsigned short iLogs = 2) {
        return Outcome(diag.DIAG_GetMultipleLogs(1, 0x1009, iLogs, 5, apBuffers, aSizes), iLogs);
    };
    EXPECT_EQ(two(m_diag), "true 0"); // in vain
    EXPECT_TRUE(m_log.Of(LOG_RET).back().starts_with("Wait for Multiple Logs took (ms):"));
    EXPECT_EQ(Answered(two, Hex("73")), "false 2");
}

TEST_F(DiagPhoneLog, DebugMessagesAreFoundByTheirFormat) {
    m_diag.DIAG_SetPhoneLoggingState(true);
    for (const Bytes& packet :
         {Hex("79 00"), handset::LogPacket(1, 0, {}), handset::MessagePacket(Text("look %d more")),
          handset::MessagePacket({.arguments = {1, 0xFFFFFFFF, 3}, .format = "look %d"}),
          handset::MessagePacket(Text("last"))})
        m_phone.phone.Send(packet);
    ASSERT_TRUE(WaitFor(5));
    m_log.Clear();
    EXPECT_EQ(FindMessage(m_diag), "true 1 1 ffffffff 3");
    EXPECT_EQ(m_log.Of(LOG_FN), Lines{"QLIB_DIAG_FindDebugMessage(sSearchString=look %d )"});
    EXPECT_EQ(m_log.Of(LOG_RET), Lines{"QLIB_DIAG_FindDebugMessage() found match with arguments: 1, -1, 3"});
    EXPECT_EQ(Waiting(), 1u);
    EXPECT_EQ(FindMessage(m_diag), "true 0 e1 e2 e3");
    EXPECT_EQ(Waiting(), 0u);
}

// --- Key presses ------------------------------------------------------------------------------------

TEST_F(DiagPhoneLog, KeyMessagesBecomeEvents) {
    m_log.Clear();
    EXPECT_TRUE(m_diag.DIAG_KeyPress_StartCapture());
    EXPECT_EQ(m_phone.Requests(), Lines{"7D 04 00 00 00 00 00 00 08 00 00 00"});
    EXPECT_EQ(m_log.Of(LOG_FN),
              (Lines{"QLIB_DIAG_KeyPress_StartCapture()", "QLIB_DIAG_SetMessageFilter(iSSID=0, iRT_MASK=8)",
                     "QLIB_DIAG_SetPhoneLoggingState(bEnableLogging=1)"}));
    for (const char* sText :
         {"AEEKey_AddPressed: 0xE021", "AEEKey_RemovePressed: 0xe021",
          "AEEKey_AddPressed: ", "AEEKey_AddPressed: 0xDEAD", "other", "", "AEEKey_AddPressed: 0x04BA"})
        EXPECT_TRUE(m_phone.phone.EmitMessage(Text(sText)));
    m_phone.phone.Send(Hex("10 00"));
    ASSERT_TRUE(WaitFor(8));
    DWORD iSize = 0;
    EXPECT_TRUE(m_diag.DIAG_KeyPress_GetQueueSize(iSize));
    EXPECT_EQ(iSize, 3u);
    EXPECT_EQ(Waiting(), 0u);
    CheckCalls(
        {{NextKey, "true 30 1"}, {NextKey, "true 30 2"}, {NextKey, "true 9 1"}, {NextKey, "true ee ee"}});
    EXPECT_TRUE(m_diag.DIAG_KeyPress_StopCapture());
    EXPECT_EQ(m_phone.Requests().back(), "7D 04 00 00 00 00 00 00 00 00 00 00");
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_DIAG_KeyPress_StopCapture()"));
    EXPECT_FALSE(m_phone.phone.EmitMessage(Text("AEEKey_AddPressed: 0xE021")));
}

TEST_F(DiagPhoneLog, KeyDetectionIsConfigured) {
    m_log.Clear();
    EXPECT_TRUE(m_diag.DIAG_KeyPress_ConfigureKeyDetect(std::string(300, 'r').c_str(), "down ", 5, 0x10));
    EXPECT_TRUE(m_diag.DIAG_KeyPress_ClearMap());
    EXPECT_TRUE(m_diag.DIAG_KeyPress_AddMapEntry(0x21, 7));
    EXPECT_TRUE(m_diag.DIAG_KeyPress_AddMapEntry(0x21, 8)); // the first entry counts
    EXPECT_EQ(m_log.Of(LOG_FN), (Lines{"QLIB_DIAG_KeyPress_ClearMap( )",
                                       "QLIB_DIAG_KeyPress_AddMapEntry( iHW_ID = 33, iKeyPressSW_ID = 7 )",
                                       "QLIB_DIAG_KeyPress_AddMapEntry( iHW_ID = 33, iKeyPressSW_ID = 8 )"}));
    EXPECT_TRUE(m_diag.DIAG_KeyPress_StartCapture());
    EXPECT_EQ(m_phone.Requests().back(), "7D 04 05 00 05 00 00 00 10 00 00 00");
    const auto press = [&](const std::string& sText) {
        m_phone.phone.Send(handset::MessagePacket(Text(sText)));
    };
    press("down 0x21");
    press("down 0x20021");    // only the low 16 bits of a code count
    press("down 0xg21zz123"); // other characters are zeros, eight are read: 02100123
    press("down 0x");
    press("AEEKey_AddPressed: 0x21");
    ASSERT_TRUE(WaitFor(5));
    CheckCalls({{NextKey, "true 7 1"}, {NextKey, "true 7 1"}, {NextKey, "true ee ee"}});
    press("down 0x21");
    ASSERT_TRUE(WaitFor(1));
    EXPECT_TRUE(m_diag.DIAG_KeyPress_ClearQueue());
    EXPECT_EQ(NextKey(m_diag), "true ee ee");
    EXPECT_TRUE(m_diag.DIAG_KeyPress_ConfigureKeyDetect(nullptr, nullptr, 0, 0));
}

} // namespace
