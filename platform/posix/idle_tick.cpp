// The idle tick: one thread, which runs while there are ticks.
#include "platform/idle_tick.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Tick {
    uintptr_t iTickId;
    IdleTickProc pfnTick;
    std::chrono::milliseconds period;
    Clock::time_point due;
};

/// All fields are guarded by `m_lock`; tick procedures are called without it.
class TickThread {
public:
    uintptr_t Start(std::chrono::milliseconds period, IdleTickProc pfnTick);
    void Stop(uintptr_t iTickId);
    void End();

private:
    void Run();

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<Tick> m_ticks;
    std::thread m_thread;
    uintptr_t m_iLastId = 0;
    bool m_bRunning = false; // false when the thread no longer uses m_ticks
    bool m_bEnded = false;
};

uintptr_t TickThread::Start(std::chrono::milliseconds period, IdleTickProc pfnTick) {
    const std::lock_guard lock(m_lock);
    if (m_bEnded)
        return 0;
    m_ticks.push_back({m_iLastId + 1, pfnTick, period, Clock::now() + period});
    if (!m_bRunning) {
        // The last thread ran out of ticks and no longer uses the lock.
        if (m_thread.joinable())
            m_thread.join();
        try {
            m_thread = std::thread(&TickThread::Run, this);
        } catch (const std::exception&) {
            m_ticks.pop_back();
            return 0;
        }
        m_bRunning = true;
    }
    m_changed.notify_one();
    return ++m_iLastId;
}

void TickThread::Stop(uintptr_t iTickId) {
    const std::lock_guard lock(m_lock);
    std::erase_if(m_ticks, [&](const Tick& tick) { return tick.iTickId == iTickId; });
    m_changed.notify_one();
}

void TickThread::End() {
    std::unique_lock lock(m_lock);
    m_bEnded = true;
    std::vector<Tick>().swap(m_ticks);
    m_changed.notify_one();
    std::thread thread = std::move(m_thread);
    lock.unlock();
    if (!thread.joinable())
        return;
    // When a tick procedure ends the process, this runs on the tick's own thread.
    if (thread.get_id() == std::this_thread::get_id())
        thread.detach();
    else
        thread.join();
}

void TickThread::Run() {
    std::unique_lock lock(m_lock);
    while (!m_ticks.empty()) {
        const auto next = std::min_element(m_ticks.begin(), m_ticks.end(),
                                           [](const Tick& a, const Tick& b) { return a.due < b.due; });
        const Clock::time_point due = next->due;
        if (Clock::now() < due) {
            m_changed.wait_until(lock, due);
            continue;
        }
        // Missed ticks are not made up for.
        next->due = Clock::now() + next->period;
        const Tick tick = *next;
        lock.unlock();
        tick.pfnTick(tick.iTickId);
        lock.lock();
    }
    m_bRunning = false;
}

/// The object is never destroyed, so that another destructor may still call StopIdleTick. Its thread ends
/// with the process or when the module is unloaded, before the destruction of any object that was made before
/// the first tick.
TickThread& Ticks() {
    struct Ender {
        TickThread& ticks;
        ~Ender() { ticks.End(); }
    };
    alignas(TickThread) static std::byte aStorage[sizeof(TickThread)];
    static TickThread& ticks = *new (aStorage) TickThread;
    static const Ender ender{ticks};
    return ticks;
}

} // namespace

uintptr_t StartIdleTick(DWORD iPeriod_ms, IdleTickProc pfnTick) {
    try {
        return Ticks().Start(std::chrono::milliseconds(std::max<DWORD>(iPeriod_ms, 1)), pfnTick);
    } catch (const std::exception&) {
        return 0;
    }
}

void StopIdleTick(uintptr_t iTickId) {
    Ticks().Stop(iTickId);
}
