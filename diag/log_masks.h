// Which log records, messages and events the phone sends unasked.
#pragma once

#include <cstddef>
#include <span>

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;

/// What DIAG_SetExtendedLogMask asks for; other values are passed on.
enum LogMaskOperation : DWORD {
    LOG_MASK_GET_RANGES = 1,
    LOG_MASK_SET = 3,
    LOG_MASK_GET = 4,
};

/// LogMasks: the masks live in the phone, nothing is kept here. A log code is an equipment id (0 to 15) times
/// 4096 plus an item number. Each request waits within QMSL_TimeOut_SyncRequest; true means that the phone
/// answered. Caller's thread. The frame must outlive it.
class QUILLET_API LogMasks {
public:
    explicit LogMasks(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_SetPhoneLoggingState keeps (true) or drops (false, at first) what the phone sends unasked. Always
    /// true.
    bool DIAG_SetPhoneLoggingState(bool bEnableLogging);

    /// DIAG_SetExtendedLogMask sends a mask operation with iOperationDataSize bytes of data (at least 1, the
    /// first is logged) and copies the answer's last bytes back over them, as many as were sent; an answer
    /// whose header (8 bytes) is followed by fewer leaves them as they are, and counts as an answer all the
    /// same. Data that do not fit a request (about 4080 bytes) are not sent.
    /// The data of LOG_MASK_SET and LOG_MASK_GET are the equipment id, the last item's number (32 bits each)
    /// and a mask, item n in byte n / 8, bit n % 8; those of LOG_MASK_GET_RANGES are 16 numbers of 32 bits.
    bool DIAG_SetExtendedLogMask(DWORD iOperation, unsigned char* piOperationData,
                                 unsigned short& iOperationDataSize);

    /// ReadExtendedLogMask is the same for an operation that reads: false also when no data came back.
    bool ReadExtendedLogMask(DWORD iOperation, unsigned char* piOperationData,
                             unsigned short& iOperationDataSize);

    /// DIAG_GetLogRanges tells an equipment id's last item number. False, with it as it was, without a whole
    /// answer and for an id above 15.
    bool DIAG_GetLogRanges(unsigned char iEquipmentID, DWORD& iLastItem);

    /// DIAG_SetExtendedLogCode switches one log code on and all others of its equipment id off, in a mask of
    /// iNumItems items (at most 4096).
    bool DIAG_SetExtendedLogCode(unsigned char iEquipmentID, unsigned short iLogCode,
                                 unsigned short iNumItems);

    /// DIAG_AddExtendedLogCodes switches log codes on besides those that are, and phone logging. A mask that
    /// has them all already is not sent again. Codes that the phone does not have are left out. When the
    /// phone does not tell its mask, the codes become the whole mask. False at once, with phone logging as it
    /// was, when it does not tell its ranges.
    bool DIAG_AddExtendedLogCodes(unsigned char iEquipmentID, const unsigned short* piLogCodeList,
                                  unsigned short iLogCodeListSize);
    bool DIAG_AddExtendedLogCode(unsigned char iEquipmentID, unsigned short iLogCode);

    /// DIAG_ClearAllLogCodes switches all log codes of an equipment id off. False at once when the phone does
    /// not tell its ranges.
    bool DIAG_ClearAllLogCodes(unsigned char iEquipmentID);

    /// DIAG_SetMessageLevel sets which messages of the older form the phone sends. Phones answer with such a
    /// message, which is filed with the phone's unasked traffic: over a serial port the result is false after
    /// the time-out although the level is set.
    bool DIAG_SetMessageLevel(unsigned short iMessageLevel);
    /// DIAG_SetMessageFilter sets which messages of a subsystem the phone sends: a bit per kind, 0 for none.
    bool DIAG_SetMessageFilter(unsigned short iSSID, DWORD iRT_MASK);
    /// DIAG_EventReportControl switches event reports.
    bool DIAG_EventReportControl(bool bOperationSwitch);

protected:
    /// DIAG_MakeLogMask sets a code's bit in a mask; codes outside it change nothing.
    static void DIAG_MakeLogMask(unsigned short iLogCode, int iEquipmentID, std::span<unsigned char> mask);
    /// DIAG_CombineMasks adds the current bits to the wanted ones (iSize bytes each) and tells whether some
    /// of the wanted ones are new.
    static bool DIAG_CombineMasks(const unsigned char* piCurrent, unsigned char* piWanted, DWORD iSize);

private:
    class MaskRequest;

    bool GetLastItem(unsigned char iEquipmentID, DWORD& iLastItem);
    bool ExchangeMask(LogMaskOperation eOperation, MaskRequest& request);

    CommandFrame& m_frame;
};
