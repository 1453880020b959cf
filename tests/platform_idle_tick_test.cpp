// The idle tick and its thread.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

#include "platform/idle_tick.h"

namespace {

std::mutex g_lock;
std::condition_variable g_ticked;
std::map<uintptr_t, int> g_calls; // under g_lock
std::atomic<uintptr_t> g_iSuccessor{0};

void Record(uintptr_t iTickId) {
    std::lock_guard lock(g_lock);
    ++g_calls[iTickId];
    g_ticked.notify_all();
}

void Once(uintptr_t iTickId) {
    StopIdleTick(iTickId);
    Record(iTickId);
}

void HandOver(uintptr_t iTickId) {
    StopIdleTick(iTickId);
    g_iSuccessor = StartIdleTick(1, Record);
    Record(iTickId);
}

int CallsOf(uintptr_t iTickId) {
    std::lock_guard lock(g_lock);
    return g_calls[iTickId];
}

/// Waits until the tick has been called `iCount` times in all.
bool WaitForCalls(uintptr_t iTickId, int iCount) {
    std::unique_lock lock(g_lock);
    return g_ticked.wait_for(lock, std::chrono::minutes(1), [&] { return g_calls[iTickId] >= iCount; });
}

TEST(IdleTickTest, TicksRunUntilStopped) {
    StopIdleTick(12345); // never started
    const uintptr_t iFirst = StartIdleTick(1, Record), iSecond = StartIdleTick(2, Record);
    EXPECT_TRUE(WaitForCalls(iFirst, 3));
    StopIdleTick(iFirst);
    EXPECT_TRUE(WaitForCalls(iSecond, CallsOf(iSecond) + 2)); // a call of iFirst that was running has ended
    const int iCalls = CallsOf(iFirst);
    EXPECT_TRUE(WaitForCalls(iSecond, CallsOf(iSecond) + 5));
    EXPECT_EQ(CallsOf(iFirst), iCalls);
    StopIdleTick(iSecond);
}

TEST(IdleTickTest, SlowTickDelaysNeitherOthersNorProcessExit) {
    const uintptr_t iSlow = StartIdleTick(3600 * 1000, Record);
    // Each round gives the thread more time to fall asleep.
    for (int iYields = 1; iYields < 10000; iYields *= 2) {
        for (int i = 0; i < iYields; ++i)
            std::this_thread::yield();
        ASSERT_TRUE(WaitForCalls(StartIdleTick(1, Once), 1));
    }
    EXPECT_EQ(CallsOf(iSlow), 0);
    // The slow tick is still running. The process must end nevertheless.
}

TEST(IdleTickTest, TickMayStopItselfAndStartAnother) {
    const uintptr_t iTick = StartIdleTick(1, HandOver);
    ASSERT_TRUE(WaitForCalls(iTick, 1));
    EXPECT_TRUE(WaitForCalls(g_iSuccessor, 3));
    EXPECT_EQ(CallsOf(iTick), 1);
    // The successor is still running. Its thread must end by itself when the process ends.
}

} // namespace
