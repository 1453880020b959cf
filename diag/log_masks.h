// Which log records, messages and events the phone sends unasked.
#pragma once

#include <cstddef>
#include <span>

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// The operations of DIAG_SetExtendedLogMask. Other values are passed on.
enum LogMaskOperation : DWORD {
    LOG_MASK_GET_RANGES = 1,
    LOG_MASK_SET = 3,
    LOG_MASK_GET = 4,
};

/// LogMasks: the masks are kept in the phone, not here. A log code is an equipment id (0 to 15) times 4096
/// plus an item number. Each request waits up to QMSL_TimeOut_SyncRequest; true means that the phone
/// answered. Caller's thread. The frame must outlive it.
class QUILLET_API LogMasks {
public:
    explicit LogMasks(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_SetPhoneLoggingState keeps (true) or drops (false, the initial state) what the phone sends
    /// unasked. Always true.
    bool DIAG_SetPhoneLoggingState(bool bEnableLogging);

    /// DIAG_SetExtendedLogMask sends a mask operation with iOperationDataSize bytes of data (at least 1; the
    /// first is logged), and overwrites the data with as many bytes from the response's end. When fewer
    /// follow the response's header (8 bytes) the data stay unchanged, and the result is still true. Data
    /// that do not fit in a request (about 4080 bytes) are not sent.
    ///
    /// LOG_MASK_SET and LOG_MASK_GET have as data the equipment id and the last item's number (32 bits each),
    /// then a mask with item n in byte n / 8, bit n % 8. LOG_MASK_GET_RANGES has 16 numbers of 32 bits.
    bool DIAG_SetExtendedLogMask(DWORD iOperation, unsigned char* piOperationData,
                                 unsigned short& iOperationDataSize);

    /// ReadExtendedLogMask is the same for an operation that reads: false also when the data stay unchanged.
    bool ReadExtendedLogMask(DWORD iOperation, unsigned char* piOperationData,
                             unsigned short& iOperationDataSize);

    /// DIAG_GetLogRanges reads the last item number of an equipment id. False, with iLastItem unchanged,
    /// without a complete response and for an id above 15.
    bool DIAG_GetLogRanges(unsigned char iEquipmentID, DWORD& iLastItem);

    /// DIAG_SetExtendedLogCode switches one log code on and all others of its equipment id off, with a mask
    /// of iNumItems items (at most 4096).
    bool DIAG_SetExtendedLogCode(unsigned char iEquipmentID, unsigned short iLogCode,
                                 unsigned short iNumItems);

    /// DIAG_AddExtendedLogCodes switches log codes on in addition to the present ones, and phone logging too;
    /// DIAG_AddExtendedLogCode does so for a single code.
    /// A mask that already has them all is not sent again. Codes that the phone does not have are left out.
    /// When the present mask cannot be read, the codes become the whole mask. False at once, with phone
    /// logging unchanged, when the ranges cannot be read.
    bool DIAG_AddExtendedLogCodes(unsigned char iEquipmentID, const unsigned short* piLogCodeList,
                                  unsigned short iLogCodeListSize);
    bool DIAG_AddExtendedLogCode(unsigned char iEquipmentID, unsigned short iLogCode);

    /// DIAG_ClearAllLogCodes switches all log codes of an equipment id off. False at once when the ranges
    /// cannot be read.
    bool DIAG_ClearAllLogCodes(unsigned char iEquipmentID);

    /// DIAG_SetMessageLevel sets which messages of the older form the phone sends. Phones answer with such a
    /// message, which is queued as unasked traffic: over a serial port the result is false after the time-out
    /// although the level is set.
    bool DIAG_SetMessageLevel(unsigned short iMessageLevel);
    /// DIAG_SetMessageFilter sets which messages of a subsystem the phone sends: one bit per kind, 0 for
    /// none.
    bool DIAG_SetMessageFilter(unsigned short iSSID, DWORD iRT_MASK);
    /// DIAG_EventReportControl switches event reports on or off.
    bool DIAG_EventReportControl(bool bOperationSwitch);

protected:
    /// DIAG_MakeLogMask sets a code's bit in a mask; codes beyond the mask are ignored.
    static void DIAG_MakeLogMask(unsigned short iLogCode, int iEquipmentID, std::span<unsigned char> mask);
    /// DIAG_CombineMasks adds the current bits to the wanted ones (iSize bytes each). True when at least one
    /// wanted bit is not set yet.
    static bool DIAG_CombineMasks(const unsigned char* piCurrent, unsigned char* piWanted, DWORD iSize);

private:
    class MaskRequest;

    bool GetLastItem(unsigned char iEquipmentID, DWORD& iLastItem);
    bool ExchangeMask(LogMaskOperation eOperation, MaskRequest& request);

    CommandFrame& m_frame;
};
