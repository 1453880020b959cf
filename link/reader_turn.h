// Whose turn it is to read the port.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "link/clock.h"

/// ReaderTurn lets one thread at a time read a port: a caller while it waits for its response, otherwise the
/// receive thread. A caller that leaves does not wake the receive thread, which takes over by itself when no
/// caller has read for kPause; after a series of requests up to kLongestSleep later. So a series costs it
/// only a look now and then. A caller that needs the receive thread at once wakes it.
///
/// Threads: Take, GiveBack and Wake belong to callers, AwaitPause, BeginPass and EndPass to the receive
/// thread, Start and Stop to the thread that starts and ends the receive thread.
class ReaderTurn {
public:
    /// How long the receive thread leaves the port alone after a caller has read it.
    static constexpr Milliseconds kPause{1};
    /// How long it sleeps at most before it looks again whether callers still read.
    static constexpr Milliseconds kLongestSleep{16};

    /// Take waits until nobody reads. The caller reads from then on, until GiveBack.
    void Take();
    void GiveBack();
    /// Wake makes the receive thread look at once whether callers still read.
    void Wake();

    /// AwaitPause waits until no caller has read for kPause. False after Stop.
    bool AwaitPause();
    /// BeginPass starts one pass of the receive thread. False while a caller reads or waits for its turn.
    bool BeginPass() { return m_iCallers == 0 && m_reading.try_lock(); }
    void EndPass() { m_reading.unlock(); }

    /// Stop makes AwaitPause return false, until Start, which counts as a caller's leaving: whoever opens a
    /// port usually sends a request at once.
    void Start();
    void Stop();

private:
    void SetStopped(bool bStopped);

    std::mutex m_reading; // held by the thread that reads
    std::atomic<int> m_iCallers{0};
    std::atomic<Clock::time_point> m_left{}; // when the last caller left

    std::mutex m_sleepLock; // held by the receive thread in AwaitPause except while it sleeps
    std::condition_variable m_wake;
    bool m_bStopped = true; // under m_sleepLock
};

/// CallersTurn is a caller's turn for as long as it exists.
class CallersTurn {
public:
    explicit CallersTurn(ReaderTurn& turn) : m_turn(turn) { m_turn.Take(); }
    ~CallersTurn() { m_turn.GiveBack(); }
    CallersTurn(const CallersTurn&) = delete;
    CallersTurn& operator=(const CallersTurn&) = delete;

private:
    ReaderTurn& m_turn;
};
