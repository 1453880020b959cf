// The phone's non-volatile items: reading and writing them one by one or in batches.
#pragma once

#include <array>
#include <deque>
#include <vector>

#include "platform/export.h"

class CommandFrame;

/// NvItems: an NV item is up to 128 bytes, identified by a number, that the phone keeps without power.
/// Lengths are in bytes. Each request waits up to QMSL_TimeOut_SyncRequest. Caller's thread. The frame must
/// outlive it.
///
/// A status is the phone's result: 0 done, 7 read-only (when writing), others as the phone's software defines
/// them. True with a status other than 0 means that the phone answered and refused.
class QUILLET_API NvItems {
public:
    /// The largest item, in bytes.
    static constexpr size_t kItemSize = 128;
    /// In a batch an item may be one byte longer.
    static constexpr size_t kBatchItemSize = 129;

    explicit NvItems(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_NV_READ_F reads an item's first iLength bytes (at most kItemSize). pItemData is written only when
    /// the status is 0; a shorter response fills only the start of it. False, with both out-values unchanged,
    /// without a response and for one without a status.
    bool DIAG_NV_READ_F(unsigned short iItemID, unsigned char* pItemData, int iLength,
                        unsigned short& iStatus);
    /// DIAG_NV_READ_ARRAY_F does the same for one element of an array item (at most 127 bytes). The first
    /// byte of pItemData is logged on entry.
    bool DIAG_NV_READ_ARRAY_F(unsigned short iItemID, unsigned char iArrayIndex, unsigned char* pItemData,
                              int iLength, unsigned short& iStatus);

    /// DIAG_NV_WRITE_F writes an item: iLength bytes (at most kItemSize), padded with zeros to kItemSize.
    /// False, with iStatus unchanged, without a response and for one without a status. In batch mode it only
    /// queues the item, of up to kBatchItemSize bytes, and sets iStatus to 0. A length out of range is
    /// clamped, so at most iLength bytes are read.
    bool DIAG_NV_WRITE_F(unsigned short iItemID, const unsigned char* pItemData, int iLength,
                         unsigned short& iStatus);
    /// DIAG_NV_WRITE_ARRAY_F writes one element of an array (at most 127 bytes).
    bool DIAG_NV_WRITE_ARRAY_F(unsigned short iItemID, unsigned char iArrayIndex,
                               const unsigned char* pItemData, int iLength, unsigned short& iStatus);

    // --- Batches: off -> on -> items queue up as they are written -> flushed, off again ---------------

    /// DIAG_NV_WRITE_SetBatchMode switches batch mode on or off, and drops the queued items in either case.
    /// Opening the port switches it off. Always true.
    bool DIAG_NV_WRITE_SetBatchMode(bool bStartBatchMode);

    /// DIAG_NV_WRITE_BatchQueue_SetRO_List replaces the list of items for which status 7 in a batch is no
    /// error. The list stays until replaced. Always true.
    bool DIAG_NV_WRITE_BatchQueue_SetRO_List(const unsigned short* pNvIds, unsigned short iCount);

    /// DIAG_NV_WRITE_FlushBatchQueue sends the queue with as many items per request as fit, and at least one
    /// request. Afterwards batch mode is off and the queue is empty, whatever the result. iLastItemID and
    /// iLastItemStatus belong to the last item that a response reported (iLastItemID 0xFFFF: none),
    /// iBatchStatus to the last batch.
    ///
    /// False without a response, at the first item with an error, and for a response that is too short for
    /// the items it counts. Later items were then not sent, or their status is unknown.
    bool DIAG_NV_WRITE_FlushBatchQueue(unsigned short& iLastItemID, unsigned short& iBatchStatus,
                                       unsigned char& iLastItemStatus);

protected:
    /// ResetBatch switches batch mode off and drops the queued items.
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
    bool ReadBatchResponse(BatchResult result);
    bool IsItemWritten(BatchResult result);

    CommandFrame& m_frame;
    bool m_bBatchMode = false;
    std::deque<NV_WriteQueueItem> m_writeQueue;
    std::vector<unsigned short> m_readOnlyItems;
};
