// The idle tick: a timer of the thread that starts it.
#include "platform/idle_tick.h"

#include <exception>
#include <map>
#include <mutex>

#include "system/serial.h"

namespace {

std::mutex g_lock;
std::map<uintptr_t, IdleTickProc> g_ticks; // under g_lock

IdleTickProc FindTick(uintptr_t iTickId) {
    std::lock_guard lock(g_lock);
    const auto found = g_ticks.find(iTickId);
    return found != g_ticks.end() ? found->second : nullptr;
}

void CALLBACK OnTimer(HWND, UINT, UINT_PTR iTimerId, DWORD) {
    const IdleTickProc pfnTick = FindTick(iTimerId);
    if (pfnTick != nullptr)
        pfnTick(iTimerId);
    else // Stopped from another thread, which cannot end a timer of this one.
        KillTimer(nullptr, iTimerId);
}

} // namespace

uintptr_t StartIdleTick(DWORD iPeriod_ms, IdleTickProc pfnTick) {
    const UINT_PTR iTimerId = SetTimer(nullptr, 0, iPeriod_ms, OnTimer);
    if (iTimerId == 0)
        return 0;
    try {
        std::lock_guard lock(g_lock);
        g_ticks[iTimerId] = pfnTick;
    } catch (const std::exception&) {
        KillTimer(nullptr, iTimerId);
        return 0;
    }
    return iTimerId;
}

void StopIdleTick(uintptr_t iTickId) {
    std::lock_guard lock(g_lock);
    if (g_ticks.erase(iTickId) != 0)
        KillTimer(nullptr, iTickId);
}
