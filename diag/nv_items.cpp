#include "diag/nv_items.h"

#include <algorithm>

#include "diag/command.h"
#include "diag/command_codes.h"
#include "diag/simple_command.h"

namespace {

/// A caller's length, brought into the range from 0 to iLimit.
size_t ByteCount(int iLength, size_t iLimit) {
    return std::min(static_cast<size_t>(std::max(iLength, 0)), iLimit);
}

int FirstByte(const unsigned char* pItemData, int iLength) {
    return iLength > 0 ? pItemData[0] : 0;
}

} // namespace

bool NvItems::Read(size_t iDataOffset, unsigned char* pItemData, int iLength, unsigned short& iStatus) {
    if (!m_frame.Send(0) || !TakeLast(m_frame, iStatus))
        return false;
    const size_t iDataEnd = std::max(m_frame.Response().Size() - sizeof iStatus, iDataOffset);
    if (iStatus == 0)
        m_frame.Response().BytesAt(
            iDataOffset, {pItemData, ByteCount(iLength, std::min(kItemSize, iDataEnd - iDataOffset))});
    return true;
}

bool NvItems::DIAG_NV_READ_F(unsigned short iItemID, unsigned char* pItemData, int iLength,
                             unsigned short& iStatus) {
    m_frame.BeginRequest().U8(DIAG_NV_READ).U16(iItemID).EndHeader();
    return Read(3, pItemData, iLength, iStatus);
}

bool NvItems::DIAG_NV_READ_ARRAY_F(unsigned short iItemID, unsigned char iArrayIndex,
                                   unsigned char* pItemData, int iLength, unsigned short& iStatus) {
    LogLine(m_frame, LOG_FN,
            "QLIB_DIAG_NV_READ_ARRAY_F(iItemID = %d , iArrayIndex = %d, pItemData[0] = %d, iLength = %d )()",
            iItemID, iArrayIndex, FirstByte(pItemData, iLength), iLength);
    m_frame.BeginRequest().U8(DIAG_NV_READ).U16(iItemID).EndHeader().U8(iArrayIndex);
    return Read(4, pItemData, std::min<int>(iLength, kItemSize - 1), iStatus);
}

bool NvItems::DIAG_NV_WRITE_F(unsigned short iItemID, const unsigned char* pItemData, int iLength,
                              unsigned short& iStatus) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_NV_WRITE_F (iItemID = %d , pItemData[0] = %d, iLength = %d)", iItemID,
            FirstByte(pItemData, iLength), iLength);
    if (m_bBatchMode) {
        iStatus = 0;
        return DIAG_NV_Add_WRITE_QueueItem(iItemID, pItemData, iLength);
    }
    unsigned char aItemData[kItemSize] = {};
    std::copy_n(pItemData, ByteCount(iLength, kItemSize), aItemData);
    m_frame.BeginRequest().U8(DIAG_NV_WRITE).U16(iItemID).EndHeader().Bytes(aItemData);
    return m_frame.Send(0) && TakeLast(m_frame, iStatus);
}

bool NvItems::DIAG_NV_WRITE_ARRAY_F(unsigned short iItemID, unsigned char iArrayIndex,
                                    const unsigned char* pItemData, int iLength, unsigned short& iStatus) {
    LogLine(m_frame, LOG_FN,
            "QLIB_DIAG_NV_WRITE_ARRAY_F (iItemID = %d, iArrayIndex = %d, pItemData = %d, iLength = %d)",
            iItemID, iArrayIndex, FirstByte(pItemData, iLength), iLength);
    unsigned char aElement[kItemSize] = {iArrayIndex};
    const size_t iCount = ByteCount(iLength, kItemSize - 1);
    std::copy_n(pItemData, iCount, aElement + 1);
    return DIAG_NV_WRITE_F(iItemID, aElement, static_cast<int>(iCount + 1), iStatus);
}
