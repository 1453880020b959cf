// Which factory-test log records the handset produces, and the wait for one of them.
#pragma once

#include "link/message_queue.h"
#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
class LogMasks;

/// The log code of the records in which running tests report.
constexpr unsigned short kFtmLogCode = 0x117C;

/// FTM2LogMessage is such a record from its log type on, little-endian.
struct FTM2LogMessage {
    /// How much of iSize is no record: the packet's two FCS bytes, and two bytes of zero.
    static constexpr unsigned short kTail = 4;

    unsigned short iLogType;
    unsigned char aData[kMaxPacketSize - 14 - 2];
};
static_assert(sizeof(FTM2LogMessage) == kMaxPacketSize - 14);

/// FtmLog: tests that go on by themselves report in log records of an FTM log type, which is switched on
/// here. Each request waits within QMSL_TimeOut_SyncRequest. Caller's thread. The frame and the log masks
/// must outlive it.
class QUILLET_API FtmLog {
public:
    FtmLog(CommandFrame& frame, LogMasks& masks) : m_frame(frame), m_masks(masks) {}

    /// FTM_LOG_ENABLE makes the handset produce a log type, every iInterval (in the handset's unit), with
    /// iNumBuffers records each. True when it answered.
    bool FTM_LOG_ENABLE(unsigned short iLogCode, DWORD iInterval, DWORD iNumBuffers);
    /// FTM_LOG_DISABLE ends that. It has no log line of its own. True when the handset answered.
    bool FTM_LOG_DISABLE(unsigned short iLogCode);

    /// FTM_LOG_StartFTM_Log is FTM_LOG_ENABLE with interval 20 and one buffer; then the records are added to
    /// the log mask, phone logging is switched on and the phone-log queue emptied. False as soon as a request
    /// fails: what was switched on before stays on.
    bool FTM_LOG_StartFTM_Log(unsigned short iLogCode);
    /// FTM_LOG_StopFTM_Log is FTM_LOG_DISABLE; then the phone-log queue is emptied. Phone logging is left on,
    /// for the logs of others.
    bool FTM_LOG_StopFTM_Log(unsigned short iLogCode);

    /// FTM_LOG_WaitForNextLog waits at most iTimeOut_ms for a record of a log type (0: takes what waits). It
    /// takes whatever waits in the phone-log queue, of which the last matching record counts, and sleeps on
    /// the queue while it is empty; all other packets are lost. A phone that never stops sending does not
    /// hold the caller.
    ///   pMessage  receives the record: iSize bytes, at most a whole FTM2LogMessage, for which it has room
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
