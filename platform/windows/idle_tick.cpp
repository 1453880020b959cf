// The idle tick: a timer of the thread that starts it.
#include "platform/idle_tick.h"

#include <exception>
#include <map>
#include <mutex>

#include "platform/module_pin.h"
#include "platform/windows/module.h"

namespace {

/// A timer that may still call into this module, and so keeps it loaded.
class Timer {
public:
    explicit Timer(IdleTickProc pfn) : pfnTick(pfn) {
        DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &m_hThread, SYNCHRONIZE,
                        FALSE, 0);
    }
    ~Timer() {
        if (m_hThread != nullptr)
            CloseHandle(m_hThread);
    }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    /// A timer ends with the thread that started it.
    bool HasEnded() const { return m_hThread && WaitForSingleObject(m_hThread, 0) == WAIT_OBJECT_0; }

    IdleTickProc pfnTick; // null: stopped by another thread, which cannot end the timer

private:
    const ModulePin m_pin;
    HANDLE m_hThread = nullptr;
};

std::mutex g_lock;

/// Under g_lock. Never destroyed: when the process ends, running timers need no clean-up, and until then a
/// running timer keeps the module loaded.
std::map<UINT_PTR, Timer>& Timers() {
    static auto& timers = *new std::map<UINT_PTR, Timer>;
    return timers;
}

/// Ends a timer of this thread. Under g_lock.
void End(UINT_PTR iTimerId) {
    KillTimer(nullptr, iTimerId);
    Timers().erase(iTimerId);
}

/// Returns the procedure to call; null for a stopped tick, which is ended here.
IdleTickProc ProcOf(UINT_PTR iTimerId) {
    const std::lock_guard lock(g_lock);
    const auto found = Timers().find(iTimerId);
    if (found == Timers().end())
        return nullptr;
    const IdleTickProc pfnTick = found->second.pfnTick;
    if (pfnTick == nullptr)
        End(iTimerId);
    return pfnTick;
}

void CALLBACK OnTimer(HWND, UINT, UINT_PTR iTimerId, DWORD) {
    const CallFromSystem call;
    if (const IdleTickProc pfnTick = ProcOf(iTimerId))
        pfnTick(iTimerId);
}

} // namespace

uintptr_t StartIdleTick(DWORD iPeriod_ms, IdleTickProc pfnTick) {
    const std::lock_guard lock(g_lock);
    std::erase_if(Timers(), [](const auto& timer) { return timer.second.HasEnded(); });
    const UINT_PTR iTimerId = SetTimer(nullptr, 0, iPeriod_ms, OnTimer);
    if (iTimerId == 0)
        return 0;
    try {
        Timers().erase(iTimerId);
        Timers().try_emplace(iTimerId, pfnTick);
        return iTimerId;
    } catch (const std::exception&) {
        KillTimer(nullptr, iTimerId);
        return 0;
    }
}

void StopIdleTick(uintptr_t iTickId) {
    const std::lock_guard lock(g_lock);
    const auto found = Timers().find(iTickId);
    if (found == Timers().end())
        return;
    if (KillTimer(nullptr, iTickId) || found->second.HasEnded())
        Timers().erase(found);
    else
        found->second.pfnTick = nullptr;
}
