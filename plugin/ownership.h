// The order in which operations use the connection.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

/// Ownership lets one operation at a time use the connection and the front's state, in the order of arrival.
///
/// An owner suspends its operation while it calls the host. The host may stay in its callback for as long as
/// it likes, and may call the plug-in again, on the same thread or on another one (from its main thread,
/// while a worker copies). Those operations get their turns and may use the connection. They must not close
/// or replace it, because the suspended operation will continue with it. A lock that is held during the
/// callback would block such calls forever.
///
/// Any thread may call. Take and Resume wait in the order of their calls, so a transfer that takes a new turn
/// after every block does not starve a waiting listing.
class Ownership {
public:
    Ownership() = default;
    Ownership(const Ownership&) = delete;
    Ownership& operator=(const Ownership&) = delete;

    /// Waits for the turn of a new operation.
    void Take();
    /// Takes the turn when no operation owns it, waits for it or is suspended. Never waits for a turn.
    bool TryTake();
    /// Ends the owner's operation.
    void GiveBack();

    /// Suspend lets other operations run until Resume, which waits for a new turn.
    void Suspend();
    void Resume();

    /// True when an operation other than the owner's is suspended. Only the owner may call it.
    bool IsAnySuspended();

private:
    void WaitForTurn(std::unique_lock<std::mutex>& lock);

    std::mutex m_lock;
    std::condition_variable m_turnChanged;
    uint64_t m_iNextTicket = 0; // the next operation's ticket
    uint64_t m_iTurn = 0;       // the owner's ticket; m_iNextTicket when there is no owner
    unsigned m_iSuspended = 0;
};
