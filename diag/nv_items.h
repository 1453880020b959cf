// The phone's non-volatile items: reading and writing them one by one or in batches.
#pragma once

#include <array>
#include <deque>
#include <vector>

#include "platform/export.h"

class CommandFrame;

/// NvItems: an NV item is up to 128 bytes that the phone keeps without power, known by its number. Lengths
/// are bytes. Each request waits within QMSL_TimeOut_SyncRequest. Caller's thread. The frame must outlive it.
///
/// A status is the phone's verdict: 0 done, 7 read-only on writing, others as the phone's software defines
/// them. True with another status than 0 means that the phone answered and refused.
class QUILLET_API NvItems {
public:
    static constexpr size_t kItemSize = 128;
    /// In a batch an item may have one byte more.
    static constexpr size_t kBatchItemSize = 129;

    explicit NvItems(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_NV_READ_F reads an item's first iLength bytes (at most kItemSize). pItemData is written only when
    /// the status is 0; of an answer with fewer bytes it gets those that are there. False, with both
    /// out-values as they were, without an answer and for an answer without a status.
    bool DIAG_NV_READ_F(unsigned short iItemID, unsigned char* pItemData, int iLength,
                        unsigned short& iStatus);
    /// DIAG_NV_READ_ARRAY_F is the same for one element of an item that is an array (at most 127 bytes). The
    /// first byte of pItemData is logged on entry.
    bool DIAG_NV_READ_ARRAY_F(unsigned short iItemID, unsigned char iArrayIndex, unsigned char* pItemData,
                              int iLength, unsigned short& iStatus);

    /// DIAG_NV_WRITE_F writes an item: iLength bytes (at most kItemSize), zeros up to kItemSize. False,
    /// with iStatus as it was, without an answer and for an answer without a status. In batch mode it only
    /// queues the item, with up to kBatchItemSize bytes, and reports status 0. A length outside its range is
    /// brought into it, so no more bytes are read than iLength says.
    bool DIAG_NV_WRITE_F(unsigned short iItemID, const unsigned char* pItemData, int iLength,
                         unsigned short& iStatus);
    /// DIAG_NV_WRITE_ARRAY_F writes one element of an array (at most 127 bytes).
    bool DIAG_NV_WRITE_ARRAY_F(unsigned short iItemID, unsigned char iArrayIndex,
                               const unsigned char* pItemData, int iLength, unsigned short& iStatus);

    // --- Batches: off -> on -> items queue up as they are written -> flushed, off again ---------------

    /// DIAG_NV_WRITE_SetBatchMode switches batch mode; either way what was queued is dropped. Opening the
    /// port switches it off. Always true.
    bool DIAG_NV_WRITE_SetBatchMode(bool bStartBatchMode);

    /// DIAG_NV_WRITE_BatchQueue_SetRO_List replaces the list of items whose status 7 in a batch is no error.
    /// It stays until replaced. Always true.
    bool DIAG_NV_WRITE_BatchQueue_SetRO_List(const unsigned short* pNvIds, unsigned short iCount);

    /// DIAG_NV_WRITE_FlushBatchQueue sends the queue, as many items per request as fit, at least one request;
    /// then batch mode is off and the queue is empty, whatever happened. iLastItemID and iLastItemStatus are
    /// those of the last item that the phone told about (iLastItemID 0xFFFF: none), iBatchStatus is the last
    /// batch's.
    /// False without an answer, at the first item with an error, and for an answer that ends before the items
    /// that it counts; items behind it were not sent then, or their fate is not known.
    bool DIAG_NV_WRITE_FlushBatchQueue(unsigned short& iLastItemID, unsigned short& iBatchStatus,
                                       unsigned char& iLastItemStatus);

protected:
protected:
    /// ResetBatch switches batch mode off and drops what was queued.
    void ResetBatch();

private:
    struct NV_WriteQueueItem {
        unsigned short iItemID;
        unsigned char iItemLength;
        std::array<unsigned char, kBatchItemSize> aItemData;
    };
    static_assert(sizeof(NV_WriteQueueItem) == 132);

    struct BatchResult {
        unsigned short& iLastItemID;
        unsigned short& iBatchStatus;
        unsigned char& iLastItemStatus;
    };

    bool Read(size_t iDataOffset, unsigned char* pItemData, int iLength, unsigned short& iStatus);
    bool DIAG_NV_Add_WRITE_QueueItem(unsigned short iItemID, const unsigned char* pItemData, int iLength);
    void DIAG_NV_ClearWriteQueue();
    static std::vector<NV_WriteQueueItem> TakeBatch(std::deque<NV_WriteQueueItem>& queue,
                                                    unsigned& iPayloadSize);
    bool SendBatch(const std::vector<NV_WriteQueueItem>& batch, unsigned iPayloadSize);
    bool ReadBatchAnswer(BatchResult result);
    bool IsItemWritten(BatchResult result);

    CommandFrame& m_frame;
    bool m_bBatchMode = false;
    std::deque<NV_WriteQueueItem> m_writeQueue;
    std::vector<unsigned short> m_readOnlyItems;
};
