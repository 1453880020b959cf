// Which factory-test log records the handset produces.
#pragma once

#include "ftm/ftm_command.h"
#include "platform/export.h"
#include "platform/types.h"

/// FtmLog: tests that go on by themselves report in log records of an FTM log type, which is switched on
/// here. Each request waits within QMSL_TimeOut_SyncRequest; true means that the handset answered. Caller's
/// thread. The frame must outlive it.
class QUILLET_API FtmLog {
public:
    explicit FtmLog(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_LOG_ENABLE makes the handset produce a log type, every iInterval (in the handset's unit), with
    /// iNumBuffers records each.
    bool FTM_LOG_ENABLE(unsigned short iLogCode, DWORD iInterval, DWORD iNumBuffers);
    /// FTM_LOG_StartFTM_Log is FTM_LOG_ENABLE with interval 20 and one buffer.
    bool FTM_LOG_StartFTM_Log(unsigned short iLogCode);

private:
    CommandFrame& m_frame;
};
