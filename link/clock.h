// The clock for measuring durations.
#pragma once

#include <chrono>

#include "platform/types.h"

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

/// TickCount_ms returns a millisecond count that wraps around after 49.7 days; differences stay correct.
inline DWORD TickCount_ms() {
    const auto sinceStart = Clock::now().time_since_epoch();
    return static_cast<DWORD>(std::chrono::duration_cast<Milliseconds>(sinceStart).count());
}
