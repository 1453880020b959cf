// Which factory-test log records the handset produces.
#pragma once

#include "diag/log_masks.h"
#include "ftm/ftm_command.h"
#include "platform/export.h"
#include "platform/types.h"

/// FtmLog: tests that go on by themselves report in log records of an FTM log type, which is switched on
/// here. Each request waits within QMSL_TimeOut_SyncRequest; true means that the handset answered. Caller's
/// thread. The frame and the log masks must outlive it.
class QUILLET_API FtmLog {
public:
    FtmLog(CommandFrame& frame, LogMasks& masks) : m_frame(frame), m_masks(masks) {}

    /// FTM_LOG_ENABLE makes the handset produce a log type, every iInterval (in the handset's unit), with
    /// iNumBuffers records each.
    bool FTM_LOG_ENABLE(unsigned short iLogCode, DWORD iInterval, DWORD iNumBuffers);
    /// FTM_LOG_DISABLE makes the handset stop producing a log type.
    bool FTM_LOG_DISABLE(unsigned short iLogCode);

    /// FTM_LOG_StartFTM_Log enables a log type (interval 20, one buffer), lets the log code of all these
    /// records through the handset's mask, switches phone logging on and empties the phone-log queue. It
    /// stops at the first request that fails.
    bool FTM_LOG_StartFTM_Log(unsigned short iLogCode);
    /// FTM_LOG_StopFTM_Log disables a log type and empties the phone-log queue; phone logging is on
    /// afterwards. False, with neither done, when the request fails.
    bool FTM_LOG_StopFTM_Log(unsigned short iLogCode);

private:
    bool BeginWithEmptyQueue();

    CommandFrame& m_frame;
    LogMasks& m_masks;
};
