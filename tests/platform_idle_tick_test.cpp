// The idle tick and its thread.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <vector>

#include "platform/idle_tick.h"

namespace {

std::mutex g_lock;
std::condition_variable g_ticked;
std::vector<uintptr_t> g_calls; // under g_lock
uintptr_t g_iSuccessor = 0;     // under g_lock

void Record(uintptr_t iTickId) {
    std::lock_guard lock(g_lock);
    g_calls.push_back(iTickId);
    g_ticked.notify_all();
}

void RecordAndHandOver(uintptr_t iTickId) {
    StopIdleTick(iTickId);
    const uintptr_t iSuccessor = StartIdleTick(1, Record);
    {
        std::lock_guard lock(g_lock);
        g_iSuccessor = iSuccessor;
    }
    Record(iTickId);
}

// True as soon as the tick has been called `iCount` times since this wait began.
bool WaitForTicks(uintptr_t iTickId, long iCount) {
    std::unique_lock lock(g_lock);
    g_calls.clear();
    return g_ticked.wait_for(lock, std::chrono::minutes(1),
                             [&] { return std::count(g_calls.begin(), g_calls.end(), iTickId) >= iCount; });
}

long CountCalls(uintptr_t iTickId) {
    std::lock_guard lock(g_lock);
    return std::count(g_calls.begin(), g_calls.end(), iTickId);
}

TEST(IdleTickTest, TicksRunUntilStoppedAndStartAgain) {
    StopIdleTick(12345); // never started
    for (int iRound = 0; iRound < 3; ++iRound) {
        const uintptr_t iFirst = StartIdleTick(1, Record), iSecond = StartIdleTick(2, Record);
        ASSERT_NE(iFirst, 0u);
        ASSERT_NE(iSecond, iFirst);
        EXPECT_TRUE(WaitForTicks(iFirst, 3));
        EXPECT_TRUE(WaitForTicks(iSecond, 2));
        StopIdleTick(iFirst);
        EXPECT_TRUE(WaitForTicks(iSecond, 2)); // any call of iFirst that had begun is over
        EXPECT_TRUE(WaitForTicks(iSecond, 5));
        EXPECT_EQ(CountCalls(iFirst), 0);
        StopIdleTick(iSecond);
    }
}

TEST(IdleTickTest, TickMayStopItselfAndStartAnother) {
    std::unique_lock lock(g_lock);
    g_iSuccessor = 0;
    const uintptr_t iTick = StartIdleTick(1, RecordAndHandOver);
    ASSERT_TRUE(g_ticked.wait_for(lock, std::chrono::minutes(1), [] { return g_iSuccessor != 0; }));
    const uintptr_t iSuccessor = g_iSuccessor;
    lock.unlock();
    EXPECT_TRUE(WaitForTicks(iSuccessor, 3));
    EXPECT_EQ(CountCalls(iTick), 0);
    // The successor runs on: the thread must end by itself when the process does.
}

} // namespace
