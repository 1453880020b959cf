#include "link/reader_turn.h"

#include <algorithm>

void ReaderTurn::Take() {
    ++m_iCallers;
    m_reading.lock();
}

void ReaderTurn::GiveBack() {
    m_left = Clock::now();
    --m_iCallers;
    m_reading.unlock();
}

void ReaderTurn::Wake() {
    const std::lock_guard lock(m_sleepLock);
    m_wake.notify_one();
}

void ReaderTurn::Start() {
    m_left = Clock::now();
    SetStopped(false);
}

void ReaderTurn::Stop() {
    SetStopped(true);
}

void ReaderTurn::SetStopped(bool bStopped) {
    const std::lock_guard lock(m_sleepLock);
    m_bStopped = bStopped;
    m_wake.notify_one();
}

bool ReaderTurn::AwaitPause() {
    Clock::duration sleep = kPause;
    std::unique_lock lock(m_sleepLock);
    while (!m_bStopped) {
        if (m_iCallers > 0) {
            m_wake.wait_for(lock, sleep);
            sleep = std::min<Clock::duration>(2 * sleep, kLongestSleep);
            continue;
        }
        const Clock::duration rest = m_left.load() + kPause - Clock::now();
        if (rest <= Clock::duration::zero())
            return true;
        m_wake.wait_for(lock, rest);
    }
    return false;
}
