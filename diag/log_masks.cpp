#include "diag/log_masks.h"

#include <algorithm>
#include <array>

#include "diag/command.h"
#include "diag/command_codes.h"

namespace {

constexpr unsigned kItemsPerEquipment = 4096;
constexpr size_t kEquipmentCount = 16;
constexpr size_t kMaskHead = 8; // equipment id, last item

} // namespace

/// The data of a request with a mask. There is always room for the largest mask.
class LogMasks::MaskRequest {
public:
    MaskRequest(DWORD iEquipmentID, DWORD iItems, size_t iMaskSize)
        : m_iSize(static_cast<unsigned short>(kMaskHead + iMaskSize)) {
        unsigned short iLength = 0;
        RequestBuilder(m_aData, iLength).U32(iEquipmentID).U32(iItems);
    }
    DWORD EquipmentId() {
        DWORD iEquipmentID = 0;
        unsigned short iPosition = 0;
        ResponseReader(m_aData, iPosition).U32At(0, iEquipmentID);
        return iEquipmentID;
    }
    unsigned char* Data() { return m_aData.data(); }
    unsigned short& Size() { return m_iSize; }
    /// The whole area; its first MaskSize() bytes are sent.
    std::span<unsigned char> Mask() { return std::span(m_aData).subspan(kMaskHead); }
    size_t MaskSize() const { return m_iSize - kMaskHead; }

private:
    std::array<unsigned char, kMaskHead + kItemsPerEquipment / 8> m_aData{};
    unsigned short m_iSize;
};

bool LogMasks::DIAG_SetPhoneLoggingState(bool bEnableLogging) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_SetPhoneLoggingState(bEnableLogging=%d)", bEnableLogging ? 1 : 0);
    m_frame.Access().SetPhoneLogging(bEnableLogging);
    return true;
}

bool LogMasks::DIAG_SetExtendedLogMask(DWORD iOperation, unsigned char* piOperationData,
                                       unsigned short& iOperationDataSize) {
    LogLine(
        m_frame, LOG_FN,
        "QLIB_DIAG_SetExtendedLogMask( iOperation = 0x%X, piOperationData[0] = 0x%X, iOperationDataSize=%d)",
        iOperation, iOperationDataSize > 0 ? piOperationData[0] : 0, iOperationDataSize);
    RequestBuilder& request = m_frame.BeginRequest().U32(DIAG_LOG_MASK).U32(iOperation).EndHeader();
    if (!request.Bytes({piOperationData, iOperationDataSize}).Complete() || !m_frame.Send(0))
        return false;
    if (m_frame.Response().HoldsValues(iOperationDataSize))
        m_frame.Response().Take({piOperationData, iOperationDataSize});
    return true;
}

bool LogMasks::ReadExtendedLogMask(DWORD iOperation, unsigned char* piOperationData,
                                   unsigned short& iOperationDataSize) {
    return DIAG_SetExtendedLogMask(iOperation, piOperationData, iOperationDataSize) &&
           m_frame.Response().HoldsValues(iOperationDataSize);
}

bool LogMasks::ExchangeMask(LogMaskOperation eOperation, MaskRequest& request) {
    return DIAG_SetExtendedLogMask(eOperation, request.Data(), request.Size());
}

bool LogMasks::DIAG_GetLogRanges(unsigned char iEquipmentID, DWORD& iLastItem) {
    std::array<unsigned char, kEquipmentCount * sizeof(DWORD)> aRanges{};
    unsigned short iSize = sizeof aRanges;
    if (iEquipmentID >= kEquipmentCount || !ReadExtendedLogMask(LOG_MASK_GET_RANGES, aRanges.data(), iSize))
        return false;
    unsigned short iPosition = 0;
    return ResponseReader(aRanges, iPosition).U32At(iEquipmentID * sizeof(DWORD), iLastItem);
}

bool LogMasks::GetLastItem(unsigned char iEquipmentID, DWORD& iLastItem) {
    if (!DIAG_GetLogRanges(iEquipmentID, iLastItem)) {
        LogLine(m_frame, LOG_RET, "QLIB_DIAG_AddExtendedLogCodes() -- failed to get log range");
        return false;
    }
    iLastItem = std::min<DWORD>(iLastItem, kItemsPerEquipment - 1);
    return true;
}

bool LogMasks::DIAG_SetExtendedLogCode(unsigned char iEquipmentID, unsigned short iLogCode,
                                       unsigned short iNumItems) {
    LogLine(m_frame, LOG_RET, "QLIB_DIAG_SetExtendedLogCode(0x%X,0x%X)", iEquipmentID, iLogCode);
    const auto iItems = std::min<unsigned>(iNumItems, kItemsPerEquipment);
    MaskRequest request(iEquipmentID, iItems, (iItems + 7) / 8);
    DIAG_MakeLogMask(iLogCode, iEquipmentID, request.Mask());
    return ExchangeMask(LOG_MASK_SET, request);
}

bool LogMasks::DIAG_AddExtendedLogCodes(unsigned char iEquipmentID, const unsigned short* piLogCodeList,
                                        unsigned short iLogCodeListSize) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_AddExtendedLogCodes( iEquipmentID = %d,iLogCodeListSize = %d)",
            iEquipmentID, iLogCodeListSize);
    DWORD iLastItem = 0;
    if (!GetLastItem(iEquipmentID, iLastItem))
        return false;
    MaskRequest current(iEquipmentID, iLastItem, iLastItem / 8 + 1);
    MaskRequest wanted = current;
    // Without a complete response the mask stays empty.
    ExchangeMask(LOG_MASK_GET, current);
    if (current.EquipmentId() != iEquipmentID) {
        LogLine(m_frame, LOG_RET, "QLIB_DIAG_AddExtendedLogCodes: Error fetching current log mask");
        std::ranges::fill(current.Mask(), static_cast<unsigned char>(0));
    }
    for (const unsigned short iLogCode : std::span(piLogCodeList, iLogCodeListSize)) {
        LogLine(m_frame, LOG_RET, "QLIB_DIAG_AddExtendedLogCodes() -- adding log code 0x%X", iLogCode);
        DIAG_MakeLogMask(iLogCode, iEquipmentID, wanted.Mask());
    }
    bool bResult = true;
    if (DIAG_CombineMasks(current.Mask().data(), wanted.Mask().data(), static_cast<DWORD>(wanted.MaskSize())))
        bResult = ExchangeMask(LOG_MASK_SET, wanted);
    DIAG_SetPhoneLoggingState(true);
    return bResult;
}

bool LogMasks::DIAG_AddExtendedLogCode(unsigned char iEquipmentID, unsigned short iLogCode) {
    return DIAG_AddExtendedLogCodes(iEquipmentID, &iLogCode, 1);
}

bool LogMasks::DIAG_ClearAllLogCodes(unsigned char iEquipmentID) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_ClearAllLogCodes( iEquipmentID = %d )", iEquipmentID);
    DWORD iLastItem = 0;
    if (!GetLastItem(iEquipmentID, iLastItem))
        return false;
    MaskRequest request(iEquipmentID, iLastItem, iLastItem / 8 + 1);
    return ExchangeMask(LOG_MASK_SET, request);
}

void LogMasks::DIAG_MakeLogMask(unsigned short iLogCode, int iEquipmentID, std::span<unsigned char> mask) {
    const int iItem = iLogCode - iEquipmentID * static_cast<int>(kItemsPerEquipment);
    if (iItem >= 0 && static_cast<size_t>(iItem / 8) < mask.size())
        mask[static_cast<size_t>(iItem / 8)] |= static_cast<unsigned char>(1 << iItem % 8);
}

bool LogMasks::DIAG_CombineMasks(const unsigned char* piCurrent, unsigned char* piWanted, DWORD iSize) {
    bool bAdds = false;
    for (DWORD i = 0; i < iSize; ++i) {
        bAdds = bAdds || (piWanted[i] & ~piCurrent[i]) != 0;
        piWanted[i] |= piCurrent[i];
    }
    return bAdds;
}

bool LogMasks::DIAG_SetMessageLevel(unsigned short iMessageLevel) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_SetMessageLevel(iMessageLevel=%d)", iMessageLevel);
    m_frame.BeginRequest().U8(DIAG_MESSAGE_LEVEL).U16(iMessageLevel);
    return m_frame.Send(0);
}

bool LogMasks::DIAG_SetMessageFilter(unsigned short iSSID, DWORD iRT_MASK) {
    constexpr unsigned char kSetRange = 0x04;
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_SetMessageFilter(iSSID=%d, iRT_MASK=%d)", iSSID, iRT_MASK);
    m_frame.BeginRequest().U8(DIAG_MESSAGE_FILTER).U8(kSetRange).U16(iSSID).U16(iSSID).U16(0).U32(iRT_MASK);
    return m_frame.Send(0);
}

bool LogMasks::DIAG_EventReportControl(bool bOperationSwitch) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_EventReportControl( bOperationSwitch = %d)",
            bOperationSwitch ? 1 : 0);
    m_frame.BeginRequest().U8(DIAG_EVENT_CONTROL).U8(bOperationSwitch ? 1 : 0);
    return m_frame.Send(0);
}
