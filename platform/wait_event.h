// Events that threads wait for, with or without serving the thread's window messages meanwhile.
#pragma once

#include <span>

#include "platform/types.h"

/// What a wait returns besides the index of the event that ended it.
constexpr DWORD kWaitTimedOut = 258;
constexpr DWORD kWaitFailed = 0xFFFFFFFF;

/// A limit that never passes.
constexpr DWORD kWaitForever = 0xFFFFFFFF;

/// WaitEvent is set by one thread and waited for by others; one wait takes it, which unsets it. Set and Wait
/// may be called from any thread.
class WaitEvent {
public:
    explicit WaitEvent(bool bSet = false);
    ~WaitEvent();
    WaitEvent(const WaitEvent&) = delete;
    WaitEvent& operator=(const WaitEvent&) = delete;

    /// False when the system gave no event: Set does nothing then, and waits fail.
    bool IsValid() const { return m_hEvent != nullptr; }
    void Set();
    /// Wait takes the event, waiting at most iLimit_ms for it to be set. Window messages stay unserved.
    bool Wait(DWORD iLimit_ms);
    /// The event as WaitWithMessages takes it; it stays the event's.
    void* Handle() const { return m_hEvent; }

private:
    void* const m_hEvent;
};

/// WaitWithMessages waits until one of the events is set, takes it and returns its index; kWaitTimedOut
/// after iLimit_ms, kWaitFailed for a handle that is none. On Windows the window messages of the calling
/// thread are dispatched meanwhile, so anything that the thread's windows and timers do may happen.
DWORD WaitWithMessages(std::span<void* const> handles, DWORD iLimit_ms);
