// The system's timer resolution.
#pragma once

/// While a FineTimer lives, waits of one millisecond take about one millisecond. It raises the timer
/// resolution on Windows and does nothing on Linux, where waits are precise already.
class FineTimer {
public:
    FineTimer();
    ~FineTimer();
    FineTimer(const FineTimer&) = delete;
    FineTimer& operator=(const FineTimer&) = delete;
};
