// The queues of packets received from the phone, and waits for a log record or a message.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class LogMasks;

/// PhoneQueues: received packets are kept in two queues of the newest 4096 packets each. One has the phone's
/// unasked log records, messages and event reports (while phone logging is on). The other has all other
/// packets, which the next request over a serial port drops. Packets include their two FCS bytes, except
/// replayed ones recorded without; they have at most 4096 bytes, which is the size that every buffer needs.
/// Caller's thread. The frame and the log masks must outlive it.
class QUILLET_API PhoneQueues {
public:
    PhoneQueues(CommandFrame& frame, LogMasks& masks) : m_frame(frame), m_masks(masks) {}

    /// DIAG_Clear... empties a queue. Always true.
    bool DIAG_ClearPhoneLogQueue();
    bool DIAG_ClearCommandResponseQueue();

    /// DIAG_Get...QueueSize reads the number of queued packets; false when the queue is empty.
    bool DIAG_GetPhoneLogQueueSize(DWORD& iQueueSize);
    bool DIAG_GetCommandResponseQueueSize(DWORD& iQueueSize);

    /// DIAG_GetNext... takes the oldest packet without waiting; iTimeout is not used. False, with both
    /// out-values unchanged, when the queue is empty.
    bool DIAG_GetNextPhoneLog(unsigned short* piSize, unsigned char* piBuffer, DWORD iTimeout);
    bool DIAG_GetNextCommandResponse(unsigned short* piSize, unsigned char* piBuffer, DWORD iTimeout);

    /// DIAG_GetMultipleLogs switches a log code on and takes its next records, waiting at most iTimeOut_ms
    /// (0: only records already queued). Other packets that it reads are dropped.
    ///   iNumLogs  in: how many records to take; out: how many were taken
    ///   aBuffers  one buffer of 4096 bytes per record
    ///   aSizes    receives the size of each record
    ///
    /// True also when fewer arrived in time. False, with iNumLogs unchanged, when the code cannot be switched
    /// on.
    bool DIAG_GetMultipleLogs(unsigned char iEquipmentID, unsigned short iLogCode, unsigned short& iNumLogs,
                              DWORD iTimeOut_ms, unsigned char** aBuffers, unsigned short* aSizes);
    /// DIAG_GetSingleLog takes one record of a log code; false when none arrived in time.
    bool DIAG_GetSingleLog(unsigned char iEquipmentID, unsigned short iLogCode, DWORD iTimeOut_ms,
                           unsigned char* piBuffer, unsigned short& iSize);

    /// DIAG_FindDebugMessage finds the first queued message whose format is sSearchString, and reads its
    /// three arguments, which stay unchanged when there is none. It does not wait. Packets before the message
    /// are dropped, those after it are kept. Always true.
    bool DIAG_FindDebugMessage(const char* sSearchString, bool& bFound, DWORD& iArg1, DWORD& iArg2,
                               DWORD& iArg3);

private:
    CommandFrame& m_frame;
    LogMasks& m_masks;
};
