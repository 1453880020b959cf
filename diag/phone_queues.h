// What the phone sent: the two queues of received packets, and waiting for a log record or a message.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class LogMasks;

/// PhoneQueues: received packets wait in two queues, of which each keeps the newest 4096: the phone's unasked
/// log records, messages and event reports (while phone logging is on), and all other packets (the next
/// request over a serial port drops those). Packets are handed out with their two FCS bytes, unless they are
/// replayed ones that have lost them; at most 4096 bytes in all, which is what every buffer must hold.
/// Caller's thread. The frame and the log masks must outlive it.
class QUILLET_API PhoneQueues {
public:
    PhoneQueues(CommandFrame& frame, LogMasks& masks) : m_frame(frame), m_masks(masks) {}

    /// DIAG_Clear... empties a queue. Always true.
    bool DIAG_ClearPhoneLogQueue();
    bool DIAG_ClearCommandResponseQueue();

    /// DIAG_Get...QueueSize tells how many packets wait; false when none does.
    bool DIAG_GetPhoneLogQueueSize(DWORD& iQueueSize);
    bool DIAG_GetCommandResponseQueueSize(DWORD& iQueueSize);

    /// DIAG_GetNext... takes the oldest packet; iTimeout is not used, it never waits. False, with both
    /// out-values as they were, when there is none.
    bool DIAG_GetNextPhoneLog(unsigned short* piSize, unsigned char* piBuffer, DWORD iTimeout);
    bool DIAG_GetNextCommandResponse(unsigned short* piSize, unsigned char* piBuffer, DWORD iTimeout);

    /// DIAG_GetMultipleLogs switches a log code on and takes its next records, waiting at most iTimeOut_ms
    /// for them (0: those that wait already). All other packets that it meets are dropped.
    ///   iNumLogs  in: how many records to take; out: how many were taken
    ///   aBuffers  one buffer of 4096 bytes per record
    ///   aSizes    receives the size of each record
    /// True also when fewer came in time. False, with iNumLogs as it was, when the code cannot be switched
    /// on.
    bool DIAG_GetMultipleLogs(unsigned char iEquipmentID, unsigned short iLogCode, unsigned short& iNumLogs,
                              DWORD iTimeOut_ms, unsigned char** aBuffers, unsigned short* aSizes);
    /// DIAG_GetSingleLog takes one record of a log code; false when none came in time.
    bool DIAG_GetSingleLog(unsigned char iEquipmentID, unsigned short iLogCode, DWORD iTimeOut_ms,
                           unsigned char* piBuffer, unsigned short& iSize);

    /// DIAG_FindDebugMessage looks for the first waiting message whose format is sSearchString and tells its
    /// three arguments; without one they stay as they were. It does not wait. Packets in front of the message
    /// are dropped, those behind it are left. Always true.
    bool DIAG_FindDebugMessage(const char* sSearchString, bool& bFound, DWORD& iArg1, DWORD& iArg2,
                               DWORD& iArg3);

private:
    CommandFrame& m_frame;
    LogMasks& m_masks;
};
