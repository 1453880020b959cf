// Tests wait for a condition, never for a time.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

/// Waits until `condition` holds. Returns false when that takes longer than `limit`.
inline bool Eventually(const std::function<bool()>& condition,
                       std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}
