// Whose turn it is to use the connection.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

/// Ownership lets one operation at a time use the connection and the front's state, in the order of arrival.
///
/// An owner that calls the host suspends its operation meanwhile. The host may pause in there for as long as
/// it likes, and may call the plug-in again, on the same thread or (its main thread, while a worker copies)
/// on another: those operations get their turns and may use the connection, but the suspended one goes on
/// with it afterwards, so that they must not close or replace it. A lock that stays held over the callback
/// would block such calls for ever.
///
/// Any thread may call. Take and Resume wait; they wake in the order in which they came, so that a transfer
/// that asks for its next turn after every block does not starve a listing that waits.
class Ownership {
public:
    Ownership() = default;
    Ownership(const Ownership&) = delete;
    Ownership& operator=(const Ownership&) = delete;

    /// Take waits for the turn of a new operation.
    void Take();
    /// TryTake takes the turn when nobody owns, waits or is suspended; it never waits for a turn.
    bool TryTake();
    /// GiveBack ends the owner's operation.
    void GiveBack();

    /// Suspend lets the others in until Resume, which waits for the owner's next turn.
    void Suspend();
    void Resume();

    /// True when an operation other than the owner's is suspended. Only the owner may ask.
    bool IsAnySuspended();

private:
    void WaitForTurn(std::unique_lock<std::mutex>& lock);

    std::mutex m_lock;
    std::condition_variable m_turnChanged;
    uint64_t m_iNextTicket = 0; // the ticket of whoever comes next
    uint64_t m_iTurn = 0;       // the owner's ticket; m_iNextTicket when there is no owner
    unsigned m_iSuspended = 0;
};
