// Intercepts the client's requests, so that the soak decides which of them are answered.
#pragma once

#include <functional>

#include "handset/bytes.h"
#include "platform/types.h"

/// LineTap receives every request of every connection, on the thread that sends it. A request that will not
/// be answered fails as soon as it is written; its time-out is added to `iWaited_ms` instead of being waited
/// for. This simulates hours of silence within minutes, and the waiting time is exact even on a busy machine.
struct LineTap {
    /// Called before each request is written. True: the request will not be answered.
    std::function<bool(const handset::Bytes& request)> goesUnanswered;
    /// The time in ms that the client would have waited for responses.
    unsigned iWaited_ms = 0;
    /// True if the latest request was not answered.
    bool bSilent = false;
};

LineTap& TheLineTap();

/// Adds the tap to every connection that is created from now on.
void InstallLineTap();
