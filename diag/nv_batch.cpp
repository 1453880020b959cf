// Writing NV items in batches: several items per request, each with its own status in the response.
#include <algorithm>
#include <utility>

#include "diag/command.h"
#include "diag/command_codes.h"
#include "diag/nv_items.h"

namespace {

constexpr unsigned kPayloadLimit = 1420;
constexpr unsigned kItemHead = 4; // length, item id, status
constexpr unsigned char kWriteStatusReadOnly = 7;
constexpr unsigned short kNoItem = 0xFFFF;

} // namespace

bool NvItems::DIAG_NV_WRITE_SetBatchMode(bool bStartBatchMode) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_NV_WRITE_SetBatchMode( bStartBatchMode = %d)",
            bStartBatchMode ? 1 : 0);
    ResetBatch();
    m_bBatchMode = bStartBatchMode;
    return true;
}

void NvItems::ResetBatch() {
    m_bBatchMode = false;
    DIAG_NV_ClearWriteQueue();
}

bool NvItems::DIAG_NV_WRITE_BatchQueue_SetRO_List(const unsigned short* pNvIds, unsigned short iCount) {
    m_readOnlyItems.assign(pNvIds, pNvIds + iCount);
    for (const unsigned short iItemID : m_readOnlyItems)
        LogLine(m_frame, LOG_FN, "QLIB_DIAG_NV_WRITE_BatchQueue_SetRO_List( ) -- Adding NV ID #%d", iItemID);
    return true;
}

bool NvItems::DIAG_NV_Add_WRITE_QueueItem(unsigned short iItemID, const unsigned char* pItemData,
                                          int iLength) {
    LogLine(m_frame, LOG_FN, "DIAG_NV_Add_WRITE_QueueItem(iItemID = %d, iLength = %d)", iItemID, iLength);
    NV_WriteQueueItem item{iItemID, 0, {}};
    const int iCount = std::clamp<int>(iLength, 0, static_cast<int>(item.aItemData.size()));
    item.iItemLength = static_cast<unsigned char>(iCount);
    std::copy_n(pItemData, iCount, item.aItemData.begin());
    m_writeQueue.push_back(item);
    LogLine(m_frame, LOG_RET, "DIAG_NV_Add_WRITE_QueueItem() -- Queue Size = %d",
            static_cast<int>(m_writeQueue.size()));
    return true;
}

void NvItems::DIAG_NV_ClearWriteQueue() {
    if (m_writeQueue.empty())
        return;
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_NV_ClearWriteQueue()");
    m_writeQueue.clear();
}

std::vector<NvItems::NV_WriteQueueItem> NvItems::TakeBatch(std::deque<NV_WriteQueueItem>& queue,
                                                           unsigned& iPayloadSize) {
    std::vector<NV_WriteQueueItem> batch;
    iPayloadSize = 0;
    while (!queue.empty() && iPayloadSize + queue.front().iItemLength + kItemHead < kPayloadLimit) {
        batch.push_back(queue.front());
        queue.pop_front();
        iPayloadSize += batch.back().iItemLength + kItemHead;
    }
    return batch;
}

bool NvItems::SendBatch(const std::vector<NV_WriteQueueItem>& batch, unsigned iPayloadSize) {
    const int iCount = static_cast<int>(batch.size());
    const int iPayload = static_cast<int>(iPayloadSize);
    RequestBuilder& request = m_frame.BeginRequest()
                                  .U8(DIAG_SUBSYSTEM)
                                  .U8(DIAG_SUBSYSTEM_NV_BATCH)
                                  .U16(0)
                                  .S16(iCount)
                                  .U16(iPayloadSize)
                                  .U16(0);
    LogLine(m_frame, LOG_RET, "     _iCurrentNumActiveItems = %d(0x%X), _iCurrentPayloadSize = %d(0x%X)",
            iCount, iCount, iPayload, iPayload);
    for (const NV_WriteQueueItem& item : batch) {
        LogLine(m_frame, LOG_RET, "     iItemID = %d (0x%X), iLength  = %d(0x%X)", item.iItemID, item.iItemID,
                item.iItemLength, item.iItemLength);
        request.U8(item.iItemLength)
            .U16(item.iItemID)
            .U8(0)
            .Bytes(std::span(item.aItemData).first(item.iItemLength));
    }
    return m_frame.Send(0);
}

bool NvItems::IsItemWritten(BatchResult result) {
    if (result.iLastItemStatus == kWriteStatusReadOnly &&
        std::find(m_readOnlyItems.begin(), m_readOnlyItems.end(), result.iLastItemID) !=
            m_readOnlyItems.end()) {
        LogLine(m_frame, LOG_RET, "     Found item in the read-only list so no failure: iNvId = %d ",
                result.iLastItemID);
        result.iLastItemStatus = 0;
    }
    if (result.iLastItemStatus == 0)
        return true;
    LogLine(m_frame, LOG_RET, "     Error Detected: iLastErrorNvId = %d, iLastItemStatus = %d )",
            result.iLastItemID, result.iLastItemStatus);
    return false;
}

bool NvItems::ReadBatchResponse(BatchResult result) {
    const ResponseReader response = m_frame.Response();
    unsigned short iCount = 0;
    if (!response.U16At(4, iCount) || !response.U16At(8, result.iBatchStatus))
        return false;
    size_t iOffset = 10;
    for (; iCount > 0; --iCount) {
        unsigned char iLength = 0;
        response.U8At(iOffset, iLength);
        if (response.Size() < iOffset + kItemHead + iLength)
            return false;
        response.U16At(iOffset + 1, result.iLastItemID);
        response.U8At(iOffset + 3, result.iLastItemStatus);
        if (!IsItemWritten(result))
            return false;
        iOffset += kItemHead + iLength;
    }
    return true;
}

bool NvItems::DIAG_NV_WRITE_FlushBatchQueue(unsigned short& iLastItemID, unsigned short& iBatchStatus,
                                            unsigned char& iLastItemStatus) {
    iLastItemID = kNoItem;
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_NV_WRITE_FlushBatchQueue( ) -- Queue size = %d",
            static_cast<int>(m_writeQueue.size()));
    // The first request may open the port, which clears the member.
    std::deque<NV_WriteQueueItem> queue = std::exchange(m_writeQueue, {});
    size_t iWritten = 0;
    bool bDone = false;
    do {
        unsigned iPayloadSize = 0;
        const std::vector<NV_WriteQueueItem> batch = TakeBatch(queue, iPayloadSize);
        iWritten += batch.size();
        bDone =
            SendBatch(batch, iPayloadSize) && ReadBatchResponse({iLastItemID, iBatchStatus, iLastItemStatus});
    } while (bDone && !queue.empty());
    m_writeQueue = std::move(queue);
    DIAG_NV_WRITE_SetBatchMode(false);
    LogLine(m_frame, LOG_RET, "QLIB_DIAG_NV_WRITE_FlushBatchQueue( ) -- Number Items Written = %d",
            static_cast<int>(iWritten));
    return bDone;
}
