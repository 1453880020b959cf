#include "link/reader_turn.h"

void ReaderTurn::Take() {
    std::unique_lock lock(m_lock);
    m_free.wait(lock, [this] { return m_eReader == Reader::None; });
    m_eReader = Reader::Caller;
    ++m_iTurns;
}

void ReaderTurn::GiveBack() {
    const std::lock_guard lock(m_lock);
    m_eReader = Reader::None;
    m_left = Clock::now();
    m_free.notify_one();
    if (m_bAwaited) {
        m_bAwaited = false;
        m_resumed.notify_one();
    }
}

bool ReaderTurn::AwaitPause() {
    std::unique_lock lock(m_lock);
    unsigned iSeen = m_iTurns - 1;
    while (!m_bStopped) {
        if (m_eReader != Reader::Caller) {
            const auto resume = m_left + kPause;
            if (Clock::now() >= resume)
                return true;
            m_resumed.wait_until(lock, resume);
        } else if (iSeen != m_iTurns) {
            iSeen = m_iTurns;
            m_resumed.wait_for(lock, kPause);
        } else {
            // The caller has been waiting for a while, so waking this thread costs little when it leaves.
            m_bAwaited = true;
            m_resumed.wait(lock, [this] { return !m_bAwaited || m_bStopped; });
        }
    }
    return false;
}

bool ReaderTurn::BeginPass() {
    const std::lock_guard lock(m_lock);
    if (m_eReader != Reader::None)
        return false;
    m_eReader = Reader::ReceiveThread;
    return true;
}

void ReaderTurn::EndPass() {
    const std::lock_guard lock(m_lock);
    m_eReader = Reader::None;
    m_free.notify_one();
}

void ReaderTurn::Start() {
    const std::lock_guard lock(m_lock);
    m_bStopped = false;
    m_left = {};
}

void ReaderTurn::Stop() {
    const std::lock_guard lock(m_lock);
    m_bStopped = true;
    m_resumed.notify_one();
}
