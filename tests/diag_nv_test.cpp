// NV items: one by one, and in batches.
#include <algorithm>

#include "diag_fixture.h"

namespace {

const Call Read = [](Diag_FTM& diag) {
    unsigned char aData[3] = {0xE1, 0xE2, 0xE3};
    unsigned short iStatus = 0xEE;
    const bool bResult = diag.DIAG_NV_READ_F(0x105, aData, 3, iStatus);
    return Outcome(bResult, iStatus, aData[0], aData[1], aData[2]);
};
const Call ReadArray = [](Diag_FTM& diag) {
    unsigned char aData[2] = {0xE1, 0xE2};
    unsigned short iStatus = 0xEE;
    const bool bResult = diag.DIAG_NV_READ_ARRAY_F(178, 1, aData, 2, iStatus);
    return Outcome(bResult, iStatus, aData[0], aData[1]);
};
const Call Write = [](Diag_FTM& diag) {
    const unsigned char aData[] = {1, 2, 3};
    unsigned short iStatus = 0xEE;
    return Outcome(diag.DIAG_NV_WRITE_F(0x105, aData, 3, iStatus), iStatus);
};
const Call WriteArray = [](Diag_FTM& diag) {
    const unsigned char aData[] = {'9', '8'};
    unsigned short iStatus = 0xEE;
    return Outcome(diag.DIAG_NV_WRITE_ARRAY_F(178, 1, aData, 2, iStatus), iStatus);
};
const Call Flush = [](Diag_FTM& diag) {
    unsigned short iLastItem = 0xE1;
    unsigned short iBatchStatus = 0xE2;
    unsigned char iLastStatus = 0xE3;
    const bool bResult = diag.DIAG_NV_WRITE_FlushBatchQueue(iLastItem, iBatchStatus, iLastStatus);
    return Outcome(bResult, iLastItem, iBatchStatus, iLastStatus);
};

class DiagNv : public DiagTest {
protected:
    /// Queues items of that many bytes; their numbers count up from iFirst.
    void Queue(int iItems, int iLength, unsigned short iFirst = 100) {
        const Bytes data(200, 0xDA);
        unsigned short iStatus = 0xEE;
        for (int i = 0; i < iItems; ++i) {
            EXPECT_TRUE(m_diag.DIAG_NV_WRITE_F(static_cast<unsigned short>(iFirst + i), data.data(), iLength,
                                               iStatus));
            EXPECT_EQ(iStatus, 0);
        }
    }
};

TEST_F(DiagNv, RequestsAnswersAndLog) {
    const std::string sItem = "01 02 03 " + Times(125, "00");
    Check(Read, "26 05 01", Hex("26 05 01 " + sItem + " 00 00"), "true 0 1 2 3", {});
    Check(Read, "26 05 01", Hex("26 05 01 " + sItem + " 05 00"), "true 5 e1 e2 e3", {});
    Check(ReadArray, "26 B2 00 01", Hex("26 B2 00 " + sItem + " 00 00"), "true 0 2 3",
          {"QLIB_DIAG_NV_READ_ARRAY_F(iItemID = 178 , iArrayIndex = 1, pItemData[0] = 225, iLength = 2 )()"});
    Check(Write, "27 05 01 " + sItem, Hex("27 05 01 " + sItem + " 07 00"), "true 7",
          {"QLIB_DIAG_NV_WRITE_F (iItemID = 261 , pItemData[0] = 1, iLength = 3)"});
    Check(WriteArray, "27 B2 00 01 39 38 " + Times(125, "00"), Hex("27 B2 00 00 00"), "true 0",
          {"QLIB_DIAG_NV_WRITE_ARRAY_F (iItemID = 178, iArrayIndex = 1, pItemData = 57, iLength = 2)",
           "QLIB_DIAG_NV_WRITE_F (iItemID = 178 , pItemData[0] = 1, iLength = 3)"});
}

TEST_F(DiagNv, ShortAndMissingAnswers) {
    const struct {
        Call call;
        const char* sAnswer;
        const char* sOutcome;
    } cases[] = {
        {Read, "26 05", "false ee e1 e2 e3"},
        {Read, "26 05 01", "true 105 e1 e2 e3"},              // only a status where the item stands
        {Read, "26 05 01 AA BB 00 00", "false ee e1 e2 e3"},  // one byte of data is missing
        {Read, "26 05 01 AA BB CC 00 00", "true 0 aa bb cc"}, // all that were asked for
        {ReadArray, "26 B2 00", "false ee e1 e2"},
        {ReadArray, "26 B2 00 01 AA 00 00", "false ee e1 e2"},
        {Write, "27", "false ee"},
        {Write, "27 05 00", "true 5"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Answered(c.call, Hex(c.sAnswer)), c.sOutcome) << c.sAnswer;
    EXPECT_EQ(Unanswered(Read), "false ee e1 e2 e3");
    EXPECT_EQ(Unanswered(ReadArray), "false ee e1 e2");
    EXPECT_EQ(Unanswered(Write), "false ee");
    EXPECT_EQ(Unanswered(Flush), "false ffff e2 e3");
}

TEST_F(DiagNv, LengthsAreBounded) {
    unsigned short iStatus = 0;
    std::vector<unsigned char> data(300, 0x5A);
    m_phone.Answer("26", Hex("26 00 00 " + Times(128, "A5") + " 00 00"));
    EXPECT_TRUE(m_diag.DIAG_NV_READ_F(0, data.data(), 300, iStatus));
    EXPECT_EQ(std::count(data.begin(), data.end(), 0xA5), 128);
    EXPECT_TRUE(m_diag.DIAG_NV_READ_ARRAY_F(0, 0, data.data() + 150, 300, iStatus));
    EXPECT_EQ(std::count(data.begin() + 150, data.end(), 0xA5), 127);
    m_phone.phone.ClearRequests();
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_F(1, data.data(), 300, iStatus));
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_F(1, nullptr, -1, iStatus));
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_ARRAY_F(1, 2, data.data(), 300, iStatus));
    for (const Bytes& request : m_phone.phone.Requests())
        EXPECT_EQ(request.size(), 131u);
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_SetBatchMode(true));
    Queue(1, 300);
    EXPECT_EQ(Flush(m_diag), "true 64 0 0");
    EXPECT_EQ(m_phone.phone.Requests().back().size(), 10u + 4 + 129);
}

TEST_F(DiagNv, BatchOnTheWire) {
    m_log.Clear();
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_SetBatchMode(true));
    Queue(2, 2);
    EXPECT_TRUE(m_phone.Requests().empty());
    EXPECT_EQ(Flush(m_diag), "true 65 0 0");
    EXPECT_EQ(m_phone.Requests(), Lines{"4B 30 00 00 02 00 0C 00 00 00 02 64 00 00 DA DA 02 65 00 00 DA DA"});
    EXPECT_EQ(m_log.Of(LOG_FN),
              (Lines{"QLIB_DIAG_NV_WRITE_SetBatchMode( bStartBatchMode = 1)",
                     "QLIB_DIAG_NV_WRITE_F (iItemID = 100 , pItemData[0] = 218, iLength = 2)",
                     "DIAG_NV_Add_WRITE_QueueItem(iItemID = 100, iLength = 2)",
                     "QLIB_DIAG_NV_WRITE_F (iItemID = 101 , pItemData[0] = 218, iLength = 2)",
                     "DIAG_NV_Add_WRITE_QueueItem(iItemID = 101, iLength = 2)",
                     "QLIB_DIAG_NV_WRITE_FlushBatchQueue( ) -- Queue size = 2",
                     "QLIB_DIAG_NV_WRITE_SetBatchMode( bStartBatchMode = 0)"}));
    EXPECT_EQ(
        m_log.Of(LOG_RET),
        (Lines{"DIAG_NV_Add_WRITE_QueueItem() -- Queue Size = 1",
               "DIAG_NV_Add_WRITE_QueueItem() -- Queue Size = 2",
               "     _iCurrentNumActiveItems = 2(0x2), _iCurrentPayloadSize = 12(0xC)",
               "     iItemID = 100 (0x64), iLength  = 2(0x2)", "     iItemID = 101 (0x65), iLength  = 2(0x2)",
               "QLIB_DIAG_NV_WRITE_FlushBatchQueue( ) -- Number Items Written = 2"}));
    // Batch mode is over: the next write is a request of its own.
    Queue(1, 1);
    EXPECT_EQ(m_phone.CountOf("27 64 00 DA"), 1);
    EXPECT_EQ(State().nv.items.at(101).values.at(0), Hex("DA DA"));
    EXPECT_EQ(Flush(m_diag), "true ffff 0 e3"); // nothing queued still asks once
}

TEST_F(DiagNv, BatchesStayBelowTheirLimit) {
    m_diag.DIAG_NV_WRITE_SetBatchMode(true);
    Queue(20, 100);
    EXPECT_EQ(Flush(m_diag), "true 77 0 0");
    EXPECT_EQ(m_phone.CountOf("4B 30 00 00 0D 00 48 05"), 1); // 13 items, 1352 bytes
    EXPECT_EQ(m_phone.CountOf("4B 30 00 00 07 00 D8 02"), 1);
    EXPECT_EQ(m_phone.phone.Requests().size(), 2u);
}

TEST_F(DiagNv, ReadOnlyItemsInBatches) {
    const unsigned short aReadOnly[] = {5, 0};
    m_log.Clear();
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_BatchQueue_SetRO_List(aReadOnly, 2));
    EXPECT_EQ(m_log.Of(LOG_FN), (Lines{"QLIB_DIAG_NV_WRITE_BatchQueue_SetRO_List( ) -- Adding NV ID #5",
                                       "QLIB_DIAG_NV_WRITE_BatchQueue_SetRO_List( ) -- Adding NV ID #0"}));
    m_diag.DIAG_NV_WRITE_SetBatchMode(true);
    Queue(1, 4, 0);
    EXPECT_EQ(Flush(m_diag), "true 0 0 0");
    EXPECT_TRUE(m_log.Has(LOG_RET, "     Found item in the read-only list so no failure: iNvId = 0 "));

    m_diag.DIAG_NV_WRITE_BatchQueue_SetRO_List(aReadOnly, 1); // replaced: item 0 is not on it any more
    m_diag.DIAG_NV_WRITE_SetBatchMode(true);
    Queue(13, 100, 0);
    Queue(1, 100, 50);
    m_phone.phone.ClearRequests();
    EXPECT_EQ(Flush(m_diag), "false 0 0 7");
    EXPECT_TRUE(m_log.Has(LOG_RET, "     Error Detected: iLastErrorNvId = 0, iLastItemStatus = 7 )"));
    EXPECT_EQ(m_phone.phone.Requests().size(), 1u); // the second batch is dropped
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_DIAG_NV_ClearWriteQueue()"));
}

TEST_F(DiagNv, BatchAnswersThatPromiseMoreThanTheyHold) {
    const struct {
        const char* sAnswer;
        const char* sOutcome;
    } cases[] = {
        {"4B 30", "false ffff e2 e3"},
        {"4B 30 00 00 01 00 00 00 09", "false ffff e2 e3"},
        {"4B 30 00 00 01 00 00 00 09 00", "false ffff 9 e3"},
        {"4B 30 00 00 01 00 00 00 09 00 00 64 00", "false ffff 9 e3"},
        {"4B 30 00 00 01 00 00 00 09 00 02 64 00 00 DA", "false ffff 9 e3"},
        {"4B 30 00 00 FF FF 00 00 09 00 01 64 00 00 DA", "false 64 9 0"},
        {"4B 30 00 00 01 00 00 00 09 00 FF 64 00 00 DA", "false ffff 9 e3"},
        {"4B 30 00 00 01 00 00 00 09 00 01 64 00 06 DA", "false 64 9 6"},
        {"4B 30 00 00 01 00 00 00 09 00 01 64 00 00 DA", "true 64 9 0"},
    };
    for (const auto& c : cases) {
        m_diag.DIAG_NV_WRITE_SetBatchMode(true);
        Queue(1, 1);
        EXPECT_EQ(Answered(Flush, Hex(c.sAnswer)), c.sOutcome) << c.sAnswer;
    }
}

TEST_F(DiagNv, OpeningThePortEndsABatch) {
    m_diag.DIAG_NV_WRITE_SetBatchMode(true);
    Queue(1, 1);
    m_log.Clear();
    EXPECT_TRUE(m_diag.OpenPort());
    EXPECT_EQ(m_log.Of(LOG_FN), (Lines{"QLIB_OpenPort()", "QLIB_DIAG_NV_ClearWriteQueue()"}));
    Queue(1, 1);
    EXPECT_EQ(m_phone.CountOf("27"), 1);
    m_diag.DIAG_NV_WRITE_SetBatchMode(true);
    Queue(1, 1);
    m_diag.DIAG_NV_WRITE_SetBatchMode(false);
    EXPECT_EQ(m_phone.CountOf("4B 30"), 0);
}

TEST_F(DiagNv, TheSimulatedPhoneKeepsItems) {
    EXPECT_EQ(Read(m_diag), "true 5 e1 e2 e3");
    EXPECT_EQ(Write(m_diag), "true 0");
    EXPECT_EQ(Read(m_diag), "true 0 1 2 3");
    EXPECT_EQ(ReadArray(m_diag), "true 0 34 34");
    EXPECT_EQ(WriteArray(m_diag), "true 0");
    EXPECT_EQ(ReadArray(m_diag), "true 0 39 38");
    unsigned short iStatus = 0;
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_F(0, nullptr, 0, iStatus));
    EXPECT_EQ(iStatus, 7);
}

} // namespace
