// Events for threads to wait on, with or without dispatching the thread's window messages meanwhile.
#pragma once

#include <span>

#include "platform/types.h"

/// The results of a wait other than the index of the event that ended it.
constexpr DWORD kWaitTimedOut = 258;
constexpr DWORD kWaitFailed = 0xFFFFFFFF;

/// A time limit that never expires.
constexpr DWORD kWaitForever = 0xFFFFFFFF;

/// WaitEvent is an auto-reset event: one wait takes it, which resets it. Any thread may call Set and Wait.
class WaitEvent {
public:
    explicit WaitEvent(bool bSet = false);
    ~WaitEvent();
    WaitEvent(const WaitEvent&) = delete;
    WaitEvent& operator=(const WaitEvent&) = delete;

    /// False when the system could not create the event: Set then does nothing, and waits fail.
    bool IsValid() const { return m_hEvent != nullptr; }
    void Set();
    /// Wait takes the event, waiting at most iLimit_ms until it is set. Window messages are not dispatched.
    bool Wait(DWORD iLimit_ms);
    /// The handle for WaitWithMessages; the event keeps ownership.
    void* Handle() const { return m_hEvent; }

private:
    void* const m_hEvent;
};

/// WaitWithMessages waits until one of the events is set, takes it and returns its index. Returns
/// kWaitTimedOut after iLimit_ms, kWaitFailed for an invalid handle. On Windows it dispatches the window
/// messages of the calling thread meanwhile, so code of its windows and timers may run.
DWORD WaitWithMessages(std::span<void* const> handles, DWORD iLimit_ms);
