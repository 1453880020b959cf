// Whose turn it is to read the port.
#pragma once

#include <condition_variable>
#include <mutex>

#include "link/clock.h"

/// ReaderTurn lets one thread at a time read a port: a caller while it waits for its response, otherwise the
/// receive thread. A caller that leaves does not wake the receive thread, which takes over by itself
/// kPause later. So it sleeps through a series of requests.
///
/// Threads: Take and GiveBack belong to callers, AwaitPause, BeginPass and EndPass to the receive thread,
/// Start and Stop to the thread that starts and ends the receive thread.
class ReaderTurn {
public:
    /// How long the receive thread leaves the port alone after a caller has read it.
    static constexpr Milliseconds kPause{1};

    /// Take waits until nobody reads. The caller reads from then on, until GiveBack.
    void Take();
    void GiveBack();

    /// AwaitPause waits until no caller has read for kPause. False after Stop.
    bool AwaitPause();
    /// BeginPass starts one pass of the receive thread. False while a caller reads.
    bool BeginPass();
    void EndPass();

    /// Stop makes AwaitPause return false, until Start.
    void Start();
    void Stop();

private:
    enum class Reader { None, Caller, ReceiveThread };

    std::mutex m_lock; // for all that follows; held alone
    std::condition_variable m_free;
    std::condition_variable m_resumed;
    Reader m_eReader = Reader::None;
    unsigned m_iTurns = 0;   // of callers, so far
    bool m_bAwaited = false; // the receive thread sleeps until the caller leaves
    bool m_bStopped = true;
    Clock::time_point m_left; // when the last caller left
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
