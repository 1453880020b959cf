// NV items, singly and in batches.
#include "diag_fixture.h"

namespace {

/// The caller's buffer for the first bytes of an item, preset.
struct Data {
    unsigned char a[3] = {0xE1, 0xE2, 0xE3};
};

const Call Read = [](Diag_FTM& d, Data data = {}, unsigned short i = 0xEE) {
    return Outcome(d.DIAG_NV_READ_F(0x105, data.a, 3, i), i, data.a[0], data.a[1], data.a[2]);
};
const Call ReadArray = [](Diag_FTM& d, Data data = {}, unsigned short i = 0xEE) {
    return Outcome(d.DIAG_NV_READ_ARRAY_F(178, 1, data.a, 2, i), i, data.a[0], data.a[1], data.a[2]);
};
const Call Write = [](Diag_FTM& d, unsigned short i = 0xEE) {
    const unsigned char aData[] = {1, 2, 3};
    return Outcome(d.DIAG_NV_WRITE_F(0x105, aData, 3, i), i);
};
const Call WriteArray = [](Diag_FTM& d, unsigned short i = 0xEE) {
    const unsigned char aData[] = {'9', '8'};
    return Outcome(d.DIAG_NV_WRITE_ARRAY_F(178, 1, aData, 2, i), i);
};
const Call Flush = [](Diag_FTM& d, unsigned short iItem = 0xE1, unsigned short iBatch = 0xE2,
                      unsigned char iLast = 0xE3) {
    const bool bResult = d.DIAG_NV_WRITE_FlushBatchQueue(iItem, iBatch, iLast);
    return Outcome(bResult, iItem, iBatch, iLast);
};

class DiagNv : public DiagTest {
protected:
    /// Queues `iItems` items of `iLength` bytes. Their numbers count up from `iFirst`.
    void Queue(int iItems, int iLength, unsigned short iFirst = 100) {
        const Bytes data(200, 0xDA);
        unsigned short iStatus = 0;
        for (int i = 0; i < iItems; ++i)
            EXPECT_TRUE(m_diag.DIAG_NV_WRITE_F(static_cast<unsigned short>(iFirst + i), data.data(), iLength,
                                               iStatus));
    }
};

TEST_F(DiagNv, RequestsResponsesAndLog) {
    const std::string sItem = "01 02 03 " + Times(125, "00");
    Check(Read, "26 05 01", "26 05 01 " + sItem + " 00 00", "true 0 1 2 3", "");
    Check(Read, "26 05 01", "26 05 01 " + sItem + " 05 00", "true 5 e1 e2 e3", "");
    Check(ReadArray, "26 B2 00 01", "26 B2 00 " + sItem + " 00 00", "true 0 2 3 e3",
          "QLIB_DIAG_NV_READ_ARRAY_F(iItemID = 178 , iArrayIndex = 1, pItemData[0] = 225, iLength = 2 )()");
    Check(Write, "27 05 01 " + sItem, "27 05 01 " + sItem + " 07 00", "true 7",
          "QLIB_DIAG_NV_WRITE_F (iItemID = 261 , pItemData[0] = 1, iLength = 3)");
    Check(WriteArray, "27 B2 00 01 39 38 " + Times(125, "00"), "27 B2 00 00 00", "true 0",
          "QLIB_DIAG_NV_WRITE_ARRAY_F (iItemID = 178, iArrayIndex = 1, pItemData = 57, iLength = 2)");
    CheckAnswers({
        {Read, "26 05 01 AA BB 00 00", "true 0 aa bb e3"}, // shorter than asked for
        {Read, "26 05 01 AA BB CC DD 00 00", "true 0 aa bb cc"},
        {Read, "26 05 01 00 00", "true 0 e1 e2 e3"},
        {Read, "26 05 01 00", "false ee e1 e2 e3"}, // no status
        {Read, "26 05 01", "false ee e1 e2 e3"},
        {ReadArray, "26 B2 00 01 AA 00 00", "true 0 aa e2 e3"},
        {ReadArray, "26 B2 00 05 00", "true 5 e1 e2 e3"},
        {Write, "27 05 01 07", "false ee"},
        {Write, "27", "false ee"},
    });
}

TEST_F(DiagNv, LengthsAreLimited) {
    unsigned short iStatus = 0;
    const Bytes data(300, 0x5A);
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_F(1, data.data(), 300, iStatus));
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_ARRAY_F(1, 2, data.data(), 300, iStatus));
    for (const Bytes& request : m_phone.phone.Requests())
        EXPECT_EQ(request.size(), 131u);
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_SetBatchMode(true));
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_F(1, data.data(), 300, iStatus));
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_F(2, nullptr, -1, iStatus));
    EXPECT_EQ(Flush(m_diag), "true 2 0 0");
    EXPECT_EQ(m_phone.phone.Requests().back().size(), 10u + 4 + 129 + 4);
}

TEST_F(DiagNv, BatchOnTheWire) {
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_SetBatchMode(true));
    m_log.Clear();
    Queue(2, 2);
    EXPECT_EQ(m_log.Lines()[1], "0x0002 DIAG_NV_Add_WRITE_QueueItem(iItemID = 100, iLength = 2)");
    EXPECT_EQ(m_log.Lines()[2], "0x0004 DIAG_NV_Add_WRITE_QueueItem() -- Queue Size = 1");
    EXPECT_TRUE(m_phone.Requests().empty());
    m_log.Clear();
    EXPECT_EQ(Flush(m_diag), "true 65 0 0");
    EXPECT_EQ(m_log.Lines(),
              (Lines{"0x0002 QLIB_DIAG_NV_WRITE_FlushBatchQueue( ) -- Queue size = 2",
                     "0x0004      _iCurrentNumActiveItems = 2(0x2), _iCurrentPayloadSize = 12(0xC)",
                     "0x0004      iItemID = 100 (0x64), iLength  = 2(0x2)",
                     "0x0004      iItemID = 101 (0x65), iLength  = 2(0x2)",
                     "0x0002 QLIB_DIAG_NV_WRITE_SetBatchMode( bStartBatchMode = 0)",
                     "0x0004 QLIB_DIAG_NV_WRITE_FlushBatchQueue( ) -- Number Items Written = 2"}));
    EXPECT_EQ(m_phone.Requests(), Lines{"4B 30 00 00 02 00 0C 00 00 00 02 64 00 00 DA DA 02 65 00 00 DA DA"});
    // Batch mode has ended, so the next write is a request of its own.
    Queue(1, 1);
    EXPECT_EQ(m_phone.CountOf("27 64 00 DA"), 1);
    EXPECT_EQ(Flush(m_diag), "true ffff 0 e3"); // an empty queue still sends one request
}

TEST_F(DiagNv, BatchesStayWithinTheirSizeLimit) {
    m_diag.ClosePort(); // the first batch reopens it
    m_diag.DIAG_NV_WRITE_SetBatchMode(true);
    Queue(20, 100);
    EXPECT_EQ(Flush(m_diag), "true 77 0 0");
    const std::vector<Bytes> requests = m_phone.phone.Requests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_EQ(ValueAt(requests[0], 4), 0x0548000Du); // 13 items, 1352 bytes
    EXPECT_EQ(ValueAt(requests[1], 4), 0x02D80007u);
}

TEST_F(DiagNv, ReadOnlyItemsInBatches) {
    const unsigned short aReadOnly[] = {5, 0};
    EXPECT_TRUE(m_diag.DIAG_NV_WRITE_BatchQueue_SetRO_List(aReadOnly, 2));
    m_diag.DIAG_NV_WRITE_SetBatchMode(true);
    Queue(1, 4, 0);
    EXPECT_EQ(Flush(m_diag), "true 0 0 0");
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_DIAG_NV_WRITE_BatchQueue_SetRO_List( ) -- Adding NV ID #5"));
    EXPECT_TRUE(m_log.Has(LOG_RET, "     Found item in the read-only list so no failure: iNvId = 0 "));

    m_diag.DIAG_NV_WRITE_BatchQueue_SetRO_List(aReadOnly, 1); // replaces the list, which then lacks item 0
    m_diag.DIAG_NV_WRITE_SetBatchMode(true);
    Queue(13, 100, 0);
    Queue(1, 100, 50);
    m_phone.phone.ClearRequests();
    EXPECT_EQ(Flush(m_diag), "false 0 0 7");
    EXPECT_TRUE(m_log.Has(LOG_RET, "     Error Detected: iLastErrorNvId = 0, iLastItemStatus = 7 )"));
    EXPECT_EQ(m_phone.phone.Requests().size(), 1u); // the second batch is dropped
}

TEST_F(DiagNv, BatchResponsesShorterThanTheirCounts) {
    const Call FlushOne = [this](Diag_FTM& diag) {
        diag.DIAG_NV_WRITE_SetBatchMode(true);
        Queue(1, 1);
        return Flush(diag);
    };
    CheckAnswers({
        {FlushOne, "4B 30 00 00 01 00 00 00 09", "false ffff e2 e3"},
        {FlushOne, "4B 30 00 00 01 00 00 00 09 00 00 64 00", "false ffff 9 e3"},
        {FlushOne, "4B 30 00 00 FF FF 00 00 09 00 01 64 00 00 DA", "false 64 9 0"},
        {FlushOne, "4B 30 00 00 01 00 00 00 09 00 FF 64 00 00 DA", "false ffff 9 e3"},
        {FlushOne, "4B 30 00 00 01 00 00 00 09 00 01 64 00 06 DA", "false 64 9 6"},
        {FlushOne, "4B 30 00 00 01 00 00 00 09 00 01 64 00 00 DA", "true 64 9 0"},
    });
    EXPECT_EQ(Unanswered(FlushOne), "false ffff e2 e3");
}

TEST_F(DiagNv, OpeningThePortEndsABatch) {
    m_diag.DIAG_NV_WRITE_SetBatchMode(true);
    Queue(1, 1);
    EXPECT_TRUE(m_diag.OpenPort());
    Queue(1, 1);
    EXPECT_EQ(m_phone.CountOf("27"), 1);
    EXPECT_EQ(m_phone.CountOf("4B 30"), 0);
}

} // namespace
