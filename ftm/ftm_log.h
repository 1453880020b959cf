// Switching factory-test log records on and off, and waiting for one of them.
#pragma once

#include "link/message_queue.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class LogMasks;

/// FTM2LogMessage is a record that a running test produces (log code 0x117C), starting at its log type,
/// little-endian.
struct FTM2LogMessage {
    /// The part of iSize that does not belong to the record: the packet's two FCS bytes and two zero bytes.
    static constexpr unsigned short kTail = 4;

    unsigned short iLogType;                      // the FTM log type
    unsigned char aData[kMaxPacketSize - 14 - 2]; // the rest of the record
};
static_assert(sizeof(FTM2LogMessage) == kMaxPacketSize - 14);

/// FtmLog: tests that run on the phone report in log records of an FTM log type, which is switched on here.
/// Each request waits up to QMSL_TimeOut_SyncRequest. Caller's thread. The frame and the log masks must
/// outlive it.
class QUILLET_API FtmLog {
public:
    FtmLog(CommandFrame& frame, LogMasks& masks) : m_frame(frame), m_masks(masks) {}

    /// FTM_LOG_ENABLE makes the phone produce a log type every iInterval (in the phone's unit), with
    /// iNumBuffers records each. True when it answered.
    bool FTM_LOG_ENABLE(unsigned short iLogCode, DWORD iInterval, DWORD iNumBuffers);
    /// FTM_LOG_DISABLE ends that. It has no log line of its own. True when the phone answered.
    bool FTM_LOG_DISABLE(unsigned short iLogCode);

    /// FTM_LOG_StartFTM_Log is FTM_LOG_ENABLE with interval 20 and one buffer. Then it adds the records to
    /// the log mask, switches phone logging on and empties the phone-log queue. False at the first request
    /// that fails; earlier steps are not undone.
    bool FTM_LOG_StartFTM_Log(unsigned short iLogCode);
    /// FTM_LOG_StopFTM_Log is FTM_LOG_DISABLE. Then it empties the phone-log queue. Phone logging is on
    /// afterwards, for other logs.
    bool FTM_LOG_StopFTM_Log(unsigned short iLogCode);

    /// FTM_LOG_WaitForNextLog waits at most iTimeOut_ms (0: only packets already queued) for a record of a
    /// log type. It empties the phone-log queue in passes: the last matching record of a pass is used, and
    /// all other packets are lost. A phone that never stops sending does not block the caller forever.
    ///   pMessage  receives the record: at most a whole FTM2LogMessage, for which it has room
    ///   iSize     0 without a record; otherwise the bytes from the log type to the end of the record plus
    ///             FTM2LogMessage::kTail
    bool FTM_LOG_WaitForNextLog(unsigned short iLogCode, FTM2LogMessage* pMessage, unsigned short& iSize,
                                DWORD iTimeOut_ms);

private:
    bool TakeWaiting(unsigned short iLogCode, FTM2LogMessage* pMessage, unsigned short& iSize,
                     DWORD iLimit_ms);

    CommandFrame& m_frame;
    LogMasks& m_masks;
};
