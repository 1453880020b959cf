#include "link/reader_turn.h"

#include <algorithm>
#include <thread>

void ReaderTurn::Take() {
    ++m_iCallers;
    m_reading.lock();
}

void ReaderTurn::GiveBack() {
    m_left = Clock::now();
    --m_iCallers;
    m_reading.unlock();
}

bool ReaderTurn::AwaitPause() const {
    Clock::duration sleep = kPause;
    while (!m_bStopped) {
        if (m_iCallers > 0) {
            std::this_thread::sleep_for(sleep);
            sleep = std::min<Clock::duration>(2 * sleep, kLongestSleep);
            continue;
        }
        const Clock::duration rest = m_left.load() + kPause - Clock::now();
        if (rest <= Clock::duration::zero())
            return true;
        std::this_thread::sleep_for(rest);
    }
    return false;
}
