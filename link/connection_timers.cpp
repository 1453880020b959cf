// A connection's time-outs and elapsed-time timers.
#include <algorithm>
#include <atomic>

#include "link/as_int.h"
#include "link/clock.h"
#include "link/connection_state.h"
#include "link/diag_connection.h"
#include "link/time_out_table.h"

namespace {

using Timer = ConnectionState::TimerEntry;

const Timer* FindTimer(const std::vector<Timer>& timers, DWORD iTimerHandle) {
    const auto found = std::find_if(timers.begin(), timers.end(),
                                    [&](const Timer& timer) { return timer.iHandle == iTimerHandle; });
    return found == timers.end() ? nullptr : &*found;
}

} // namespace

void DiagConnection::InitTimeOuts() {
    for (int i = 0; i < kTimeOutCount; ++i)
        ConfigureTimeOut(static_cast<QMSL_TimeOutType_Enum>(i), kDefaultTimeOuts[static_cast<size_t>(i)]);
}

bool DiagConnection::ConfigureTimeOut(QMSL_TimeOutType_Enum eTimeOutId, DWORD iNewValue_ms) {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_ConfigureTimeOut( eTimeOutId = %d, iNewValue_ms = %d)",
                                 eTimeOutId, AsInt(iNewValue_ms));
    if (!IsTimeOutId(eTimeOutId)) {
        m_pState->textLog.LogMessage(LOG_RET, "QLIB_ConfigureTimeOut() -- Error, invalid ID.");
        return false;
    }
    m_pState->aTimeOuts[static_cast<size_t>(eTimeOutId)] = iNewValue_ms;
    return true;
}

DWORD DiagConnection::GetTimeOut(QMSL_TimeOutType_Enum eTimeOutId) {
    m_pState->textLog.LogMessage(LOG_FN, "QLIB_GetTimeOut( eTimeOutId = %d )", eTimeOutId);
    if (!IsTimeOutId(eTimeOutId)) {
        m_pState->textLog.LogMessage(LOG_RET, "QLIB_GetTimeOut() -- Error, invalid ID.");
        return 0;
    }
    const DWORD iValue_ms = m_pState->aTimeOuts[static_cast<size_t>(eTimeOutId)];
    m_pState->textLog.LogMessage(LOG_RET, "QLIB_GetTimeOut( eTimeOutId = %d, iNewValue_ms = %d)", eTimeOutId,
                                 AsInt(iValue_ms));
    return iValue_ms;
}

DWORD DiagConnection::StartTimer() {
    static std::atomic<DWORD> iLastHandle{0};
    const DWORD iHandle = ++iLastHandle;
    m_pState->timers.push_back({iHandle, TickCount_ms()});
    return iHandle;
}

DWORD DiagConnection::GetTimerElapsed(DWORD iTimerHandle) {
    if (FindTimer(m_pState->timers, iTimerHandle) == nullptr)
        m_pState->textLog.LogMessage(LOG_RET, " Timer handle not found: %d", AsInt(iTimerHandle));
    return StopTimer(iTimerHandle);
}

DWORD DiagConnection::StopTimer(DWORD iTimerHandle) {
    const Timer* pTimer = FindTimer(m_pState->timers, iTimerHandle);
    return pTimer == nullptr ? 0 : TickCount_ms() - pTimer->iStart_ms;
}

DWORD DiagConnection::PrintTimer(DWORD iTimerHandle, const char* sPrefix) {
    const DWORD iElapsed_ms = GetTimerElapsed(iTimerHandle);
    if (iElapsed_ms != 0 && sPrefix != nullptr)
        m_pState->textLog.LogMessage(LOG_RET, "%s%d", sPrefix, AsInt(iElapsed_ms));
    return iElapsed_ms;
}
