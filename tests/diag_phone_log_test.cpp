// Unsolicited packets: log masks, queues, waiting and key presses.
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

/// Returns the response to a range query. The last item is `i` for equipment id 0 and grows by one per id.
Bytes RangesAnswer(uint32_t i) {
    return Packet("73 00 00 00", {1, 0, i, i + 1, i + 2, i + 3, i + 4, i + 5, i + 6, i + 7, i + 8, i + 9,
                                  i + 10, i + 11, i + 12, i + 13, i + 14, i + 15});
}

const std::string kRangesRequest = "73 00 00 00 01 00 00 00 " + Times(64, "00");

handset::Message Text(const std::string& sFormat) {
    return {.format = sFormat};
}

class DiagPhoneLog : public DiagTest {
protected:
    /// Returns how many packets are in the phone-log queue.
    DWORD Waiting() {
        DWORD iSize = 0;
        m_diag.DIAG_GetPhoneLogQueueSize(iSize);
        return iSize;
    }
    /// Waits until the phone-log queue holds at least that many packets.
    bool WaitFor(DWORD iPackets) {
        return Eventually([&] { return Waiting() >= iPackets; });
    }
};

// --- Masks ------------------------------------------------------------------------------------------

TEST_F(DiagPhoneLog, RequestsResponsesAndLog) {
    Check(SetCode, "73 00 00 00 03 00 00 00 01 00 00 00 11 00 00 00 00 02 00",
          "73 00 00 00 03 00 00 00 00 00 00 00 01 00 00 00 11 00 00 00", "true",
          "QLIB_DIAG_SetExtendedLogMask( iOperation = 0x3, piOperationData[0] = 0x1, iOperationDataSize=11)");
    Check(Ranges, kRangesRequest, handset::ToHex(RangesAnswer(0x100)), "true 10f", "");
    Check(Filter, "7D 04 02 01 02 01 00 00 01 00 00 80", "7D", "true",
          "QLIB_DIAG_SetMessageFilter(iSSID=258, iRT_MASK=-2147483647)");
    Check(Events, "60 01", "60 00 00", "true", "QLIB_DIAG_EventReportControl( bOperationSwitch = 1)");
    // This response looks like a debug message, so the caller does not receive it. The phone sets the level
    // nevertheless.
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 200);
    Check(Level, "1F 03 02", "1F 00 00", "false", "QLIB_DIAG_SetMessageLevel(iMessageLevel=515)");
}

TEST_F(DiagPhoneLog, AddingCodesKeepsEnabledCodes) {
    m_phone.phone.WithState([](handset::State& state) {
        state.traffic.lastItems[1] = 0x9F;
        state.traffic.logs[1] = {0x01};
    });
    EXPECT_EQ(AddCodes(m_diag), "true");
    const std::string sHead = " 00 00 00 01 00 00 00 9F 00 00 00 ";
    EXPECT_EQ(m_phone.Requests(), (Lines{kRangesRequest, "73 00 00 00 04" + sHead + Times(20, "00"),
                                         "73 00 00 00 03" + sHead + "03 " + Times(18, "00") + " 01"}));
    EXPECT_EQ(AddCodes(m_diag), "true");
    EXPECT_EQ(m_phone.CountOf("73 00 00 00 03"), 1); // an unchanged mask is not sent
    EXPECT_EQ(ClearCodes(m_diag), "true");
    EXPECT_EQ(m_phone.Requests().back(), "73 00 00 00 03" + sHead + Times(20, "00"));
}

TEST_F(DiagPhoneLog, MasksThatCannotBeRead) {
    const Bytes tooShort(71, 0x73); // by one byte
    for (const Call& call : {AddCode, ClearCodes}) {
        EXPECT_EQ(Answered(call, tooShort), "false");
        EXPECT_EQ(m_phone.Requests(), Lines{kRangesRequest});
    }
    DWORD iLastItem = 0xEE;
    EXPECT_FALSE(m_diag.DIAG_GetLogRanges(16, iLastItem));
    // After a mask of another equipment id, and after two responses without a mask, the new mask holds the
    // added code alone.
    m_phone.Answer("73 00 00 00 01", RangesAnswer(7));
    const std::pair<Bytes, bool> answers[] = {{Packet("73 00 00 00", {4, 0, 2, 8}, "\xFF\xFF"), true},
                                              {Packet("73 00 00 00", {4, 2}), false},
                                              {Hex("73 00"), false}};
    for (const auto& [answer, bOther] : answers) {
        m_log.Clear();
        m_phone.Answer("73 00 00 00 04", answer);
        EXPECT_EQ(AddCode(m_diag), "true");
        EXPECT_EQ(m_log.Has(LOG_RET, "QLIB_DIAG_AddExtendedLogCodes: Error fetching current log mask"),
                  bOther);
        EXPECT_EQ(m_phone.Requests().back(), "73 00 00 00 03 00 00 00 01 00 00 00 08 00 00 00 00 02");
    }
}

TEST_F(DiagPhoneLog, MaskResponsesAreCopiedBackWhenComplete) {
    unsigned char aData[4] = {1, 2, 3, 4};
    unsigned short iSize = sizeof aData;
    for (const auto& [sAnswer, sData] : {std::pair("73 00 00 00 09 00 00 00 01 A1 A2 A3 A4", "A1 A2 A3 A4"),
                                         {"73 00 00 00 09 00 00 00 02 00 00", "A1 A2 A3 A4"},
                                         {"73 B2", "A1 A2 A3 A4"}}) {
        m_phone.Answer("73", Hex(sAnswer));
        EXPECT_TRUE(m_diag.DIAG_SetExtendedLogMask(9, aData, iSize));
        EXPECT_EQ(Bytes(aData, aData + 4), Hex(sData));
    }
}

// --- Queues -----------------------------------------------------------------------------------------

TEST_F(DiagPhoneLog, Queues) {
    DWORD iSize = 0xEE;
    EXPECT_EQ(NextResponse(m_diag), "false ee ee");
    m_phone.phone.Send(Hex("42 01"));
    ASSERT_TRUE(Eventually([&] { return m_diag.DIAG_GetCommandResponseQueueSize(iSize); }));
    EXPECT_EQ(NextResponse(m_diag), "true 4 42");
    m_diag.DIAG_SetPhoneLoggingState(true);
    m_phone.phone.Send(Bytes(4094, 0x10)); // with its FCS the longest possible packet
    m_phone.phone.Send(Hex("42"));
    ASSERT_TRUE(WaitFor(1) && Eventually([&] { return m_diag.DIAG_GetCommandResponseQueueSize(iSize); }));
    EXPECT_EQ(NextLog(m_diag), "true 1000 10");
    EXPECT_TRUE(m_diag.DIAG_ClearPhoneLogQueue() && m_diag.DIAG_ClearCommandResponseQueue());
    EXPECT_FALSE(m_diag.DIAG_GetCommandResponseQueueSize(iSize));
}

// --- Waiting ----------------------------------------------------------------------------------------

TEST_F(DiagPhoneLog, FloodKeepsTheNewestRecordsAndTheResponse) {
    constexpr uint32_t kRecords = 100000;
    constexpr uint32_t kKept = 4096;
    m_diag.DIAG_SetPhoneLoggingState(true);
    m_diag.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 120000);
    m_phone.phone.Script(Hex("2B"), [](const Bytes& request) {
        std::vector<Bytes> packets;
        for (uint32_t i = 0; i < kRecords; ++i)
            packets.push_back(handset::LogPacket(0x1009, i, {}));
        packets.push_back(request);
        return packets;
    });
    EXPECT_TRUE(m_diag.DIAG_ERR_CLEAR_F(1));
    unsigned short iSize = 0;
    unsigned char aBuffer[4096];
    for (uint32_t i = kRecords - kKept; i < kRecords; ++i) {
        ASSERT_TRUE(m_diag.DIAG_GetNextPhoneLog(&iSize, aBuffer, 0));
        ASSERT_EQ(aBuffer[8] | aBuffer[9] << 8 | aBuffer[10] << 16, static_cast<int>(i));
    }
    EXPECT_FALSE(m_diag.DIAG_GetNextPhoneLog(&iSize, aBuffer, 0));
}

TEST_F(DiagPhoneLog, WaitingForLogs) {
    unsigned char aBuffers[3][4096];
    unsigned char* apBuffers[] = {aBuffers[0], aBuffers[1], aBuffers[2]};
    unsigned short aSizes[3] = {};
    unsigned short iNumLogs = 3;
    // The phone's mask is set before the wait itself enables logging, so logging must be on already.
    m_diag.DIAG_SetPhoneLoggingState(true);
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
    ASSERT_TRUE(WaitFor(1)); // the fourth record stays in the queue

    const Call single = [&](Diag_FTM& diag, unsigned short iSize = 0) {
        return Outcome(diag.DIAG_GetSingleLog(1, 0x1009, 0, aBuffers[0], iSize), aBuffers[0][16]);
    };
    EXPECT_EQ(single(m_diag), "true 5");
    EXPECT_EQ(single(m_diag), "false 5");
    const Call two = [&](Diag_FTM& diag, unsigned short iLogs = 2) {
        return Outcome(diag.DIAG_GetMultipleLogs(1, 0x1009, iLogs, 5, apBuffers, aSizes), iLogs);
    };
    EXPECT_EQ(two(m_diag), "true 0"); // no record arrives
    EXPECT_EQ(Answered(two, Hex("73")), "false 2");
}

TEST_F(DiagPhoneLog, FindsDebugMessagesByTheirFormat) {
    m_diag.DIAG_SetPhoneLoggingState(true);
    for (const Bytes& packet :
         {Hex("79 00"), handset::LogPacket(1, 0, {}), handset::MessagePacket(Text("look %d more")),
          handset::MessagePacket({.arguments = {1, 0xFFFFFFFF, 3}, .format = "look %d"}),
          handset::MessagePacket(Text("last"))})
        m_phone.phone.Send(packet);
    ASSERT_TRUE(WaitFor(5));
    EXPECT_EQ(FindMessage(m_diag), "true 1 1 ffffffff 3");
    EXPECT_EQ(Waiting(), 1u);
    EXPECT_EQ(FindMessage(m_diag), "true 0 e1 e2 e3");
    EXPECT_EQ(Waiting(), 0u);
}

// --- Key presses ------------------------------------------------------------------------------------

TEST_F(DiagPhoneLog, KeyMessagesBecomeKeyEvents) {
    EXPECT_TRUE(m_diag.DIAG_KeyPress_StartCapture());
    EXPECT_EQ(m_phone.Requests(), Lines{"7D 04 00 00 00 00 00 00 08 00 00 00"});
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
    for (const char* const sEvent : {"true 30 1", "true 30 2", "true 9 1", "true ee ee"})
        EXPECT_EQ(NextKey(m_diag), sEvent);
    EXPECT_TRUE(m_diag.DIAG_KeyPress_StopCapture());
    EXPECT_EQ(m_phone.Requests().back(), "7D 04 00 00 00 00 00 00 00 00 00 00");
    EXPECT_FALSE(m_phone.phone.EmitMessage(Text("AEEKey_AddPressed: 0xE021")));
}

TEST_F(DiagPhoneLog, ConfiguringKeyDetection) {
    EXPECT_TRUE(m_diag.DIAG_KeyPress_ConfigureKeyDetect(std::string(300, 'r').c_str(), "down ", 5, 0x10));
    EXPECT_TRUE(m_diag.DIAG_KeyPress_ClearMap());
    EXPECT_TRUE(m_diag.DIAG_KeyPress_AddMapEntry(0x21, 7));
    EXPECT_TRUE(m_diag.DIAG_KeyPress_AddMapEntry(0x21, 8)); // the first entry takes precedence
    EXPECT_TRUE(m_diag.DIAG_KeyPress_StartCapture());
    EXPECT_EQ(m_phone.Requests().back(), "7D 04 05 00 05 00 00 00 10 00 00 00");
    // Only the low 16 bits of a code matter. Eight characters are read, and non-hex characters count as
    // zeros: g21zz123 is read as 02100123.
    for (const char* const sText :
         {"down 0x21", "down 0x20021", "down 0xg21zz123", "AEEKey_AddPressed: 0x21"})
        m_phone.phone.Send(handset::MessagePacket(Text(sText)));
    ASSERT_TRUE(WaitFor(4));
    for (const char* const sEvent : {"true 7 1", "true 7 1", "true ee ee"})
        EXPECT_EQ(NextKey(m_diag), sEvent);
}

} // namespace
