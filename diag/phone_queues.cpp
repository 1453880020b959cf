#include "diag/phone_queues.h"

#include <cstring>
#include <string_view>

#include "diag/command.h"
#include "diag/command_codes.h"
#include "diag/log_masks.h"
#include "diag/received_packet.h"
#include "link/extended_message.h"
#include "link/extended_message_text.h"
#include "link/log_codes.h"
#include "link/packet_codes.h"

namespace {

bool Size(const CQLibMessageQueue& queue, DWORD& iQueueSize) {
    queue.GetCount(iQueueSize);
    return iQueueSize != 0;
}

bool TakeNext(CQLibMessageQueue& queue, unsigned short* piSize, unsigned char* piBuffer) {
    QueueItem item;
    if (!queue.Pop(&item))
        return false;
    std::memcpy(piBuffer, item.data, item.length);
    *piSize = item.length;
    return true;
}

bool IsLogRecord(const QueueItem& item, unsigned short iLogCode) {
    unsigned short iPosition = 0;
    const ResponseReader record(WithoutFcs(item), iPosition);
    unsigned char iCommand = 0;
    unsigned short iFound = 0;
    return record.U8At(0, iCommand) && iCommand == kLogRecord && record.U16At(kRecordLogCodeOffset, iFound) &&
           iFound == iLogCode;
}

/// Takes packets until the time-out, then those queued at that moment: a phone that never stops sending does
/// not block the caller forever.
class TimedTaking {
public:
    TimedTaking(CommandFrame& frame, DWORD iTimeOut_ms)
        : m_connection(frame.Connection()),
          m_queue(frame.Access().PhoneLogQueue()),
          m_iTimer(m_connection.StartTimer()),
          m_iTimeOut_ms(iTimeOut_ms) {}
    ~TimedTaking() {
        m_connection.PrintTimer(m_iTimer, "Wait for Multiple Logs took (ms):");
        m_connection.StopTimer(m_iTimer);
    }
    TimedTaking(const TimedTaking&) = delete;
    TimedTaking& operator=(const TimedTaking&) = delete;

    bool Next(QueueItem& item) {
        const DWORD iElapsed_ms = m_connection.GetTimerElapsed(m_iTimer);
        if (iElapsed_ms < m_iTimeOut_ms && m_queue.WaitPop(&item, m_iTimeOut_ms - iElapsed_ms))
            return true;
        if (!m_bIsOver)
            m_queue.GetCount(m_iLeft);
        m_bIsOver = true;
        return m_iLeft > 0 && m_iLeft-- > 0 && m_queue.Pop(&item);
    }

private:
    DiagConnection& m_connection;
    CQLibMessageQueue& m_queue;
    const DWORD m_iTimer;
    const DWORD m_iTimeOut_ms;
    bool m_bIsOver = false;
    DWORD m_iLeft = 0;
};

} // namespace

bool PhoneQueues::DIAG_ClearPhoneLogQueue() {
    return m_frame.Access().PhoneLogQueue().Clear();
}

bool PhoneQueues::DIAG_ClearCommandResponseQueue() {
    return m_frame.Access().CommandResponseQueue().Clear();
}

bool PhoneQueues::DIAG_GetPhoneLogQueueSize(DWORD& iQueueSize) {
    return Size(m_frame.Access().PhoneLogQueue(), iQueueSize);
}

bool PhoneQueues::DIAG_GetCommandResponseQueueSize(DWORD& iQueueSize) {
    return Size(m_frame.Access().CommandResponseQueue(), iQueueSize);
}

bool PhoneQueues::DIAG_GetNextPhoneLog(unsigned short* piSize, unsigned char* piBuffer, DWORD) {
    return TakeNext(m_frame.Access().PhoneLogQueue(), piSize, piBuffer);
}

bool PhoneQueues::DIAG_GetNextCommandResponse(unsigned short* piSize, unsigned char* piBuffer,
                                              DWORD iTimeout) {
    if (!TakeNext(m_frame.Access().CommandResponseQueue(), piSize, piBuffer))
        return false;
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_GetNextCommandResponse(iTimeout=%d)", iTimeout);
    m_frame.Log().LogHex(LOG_RET, piBuffer, *piSize, "SYNC_RESPONSE DATA: ");
    return true;
}

bool PhoneQueues::DIAG_GetMultipleLogs(unsigned char iEquipmentID, unsigned short iLogCode,
                                       unsigned short& iNumLogs, DWORD iTimeOut_ms, unsigned char** aBuffers,
                                       unsigned short* aSizes) {
    LogLine(m_frame, LOG_FN,
            "QLIB_DIAG_GetMultipleLogs( iEquipmentID = %d, iLogCode = 0x%X, iNumLogs = %d, "
            "iTimeOut_ms = %d )",
            iEquipmentID, iLogCode, iNumLogs, iTimeOut_ms);
    if (!m_masks.DIAG_AddExtendedLogCode(iEquipmentID, iLogCode))
        return false;
    TimedTaking taking(m_frame, iTimeOut_ms);
    unsigned short iFound = 0;
    for (QueueItem item; iFound < iNumLogs && taking.Next(item);) {
        if (!IsLogRecord(item, iLogCode))
            continue;
        std::memcpy(aBuffers[iFound], item.data, item.length);
        aSizes[iFound] = item.length;
        ++iFound;
        LogLine(m_frame, LOG_RET, "QLIB_DIAG_GetMultipleLogs() -- Found log code 0x%X", iLogCode);
    }
    iNumLogs = iFound;
    return true;
}

bool PhoneQueues::DIAG_GetSingleLog(unsigned char iEquipmentID, unsigned short iLogCode, DWORD iTimeOut_ms,
                                    unsigned char* piBuffer, unsigned short& iSize) {
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_GetSingleLog( iEquipmentID = %d, iLogCode = 0x%X, iTimeOut_ms = %d )",
            iEquipmentID, iLogCode, iTimeOut_ms);
    unsigned short iNumLogs = 1;
    return DIAG_GetMultipleLogs(iEquipmentID, iLogCode, iNumLogs, iTimeOut_ms, &piBuffer, &iSize) &&
           iNumLogs == 1;
}

bool PhoneQueues::DIAG_FindDebugMessage(const char* sSearchString, bool& bFound, DWORD& iArg1, DWORD& iArg2,
                                        DWORD& iArg3) {
    bFound = false;
    LogLine(m_frame, LOG_FN, "QLIB_DIAG_FindDebugMessage(sSearchString=%s )", sSearchString);
    QueueItem item;
    ExtendedMessage message;
    while (!bFound && m_frame.Access().PhoneLogQueue().Pop(&item)) {
        bFound = ParseExtendedMessage(PacketOf(item), message) &&
                 std::string_view(message.sFormat) == sSearchString;
    }
    if (!bFound)
        return true;
    iArg1 = message.aArgs[0];
    iArg2 = message.aArgs[1];
    iArg3 = message.aArgs[2];
    LogLine(m_frame, LOG_RET, "QLIB_DIAG_FindDebugMessage() found match with arguments: %d, %d, %d", iArg1,
            iArg2, iArg3);
    return true;
}
