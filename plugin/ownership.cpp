#include "plugin/ownership.h"

void Ownership::WaitForTurn(std::unique_lock<std::mutex>& lock) {
    const uint64_t iTicket = m_iNextTicket++;
    m_turnChanged.wait(lock, [&] { return m_iTurn == iTicket; });
}

void Ownership::Take() {
    std::unique_lock lock(m_lock);
    WaitForTurn(lock);
}

bool Ownership::TryTake() {
    const std::lock_guard lock(m_lock);
    if (m_iTurn != m_iNextTicket || m_iSuspended != 0)
        return false;
    ++m_iNextTicket;
    return true;
}

void Ownership::GiveBack() {
    const std::lock_guard lock(m_lock);
    ++m_iTurn;
    m_turnChanged.notify_all();
}

void Ownership::Suspend() {
    const std::lock_guard lock(m_lock);
    ++m_iSuspended;
    ++m_iTurn;
    m_turnChanged.notify_all();
}

void Ownership::Resume() {
    std::unique_lock lock(m_lock);
    WaitForTurn(lock);
    --m_iSuspended;
}

bool Ownership::IsAnySuspended() {
    const std::lock_guard lock(m_lock);
    return m_iSuspended != 0;
}
