// Where requests leave the client: the soak decides there what becomes of them.
#pragma once

#include <functional>

#include "handset/bytes.h"
#include "platform/types.h"

/// LineTap sees every request of every connection, on the thread that sends it. A request that nobody will
/// answer fails as soon as it is written, and its time-out is added up instead of waited for: what hours of
/// silence do to the client is seen within minutes, and how long it would have waited is known exactly,
/// however busy the machine is.
struct LineTap {
    /// Called before each request is written; true: it will not be answered.
    std::function<bool(const handset::Bytes& request)> goesUnanswered;
    /// The milliseconds that silence would have cost.
    unsigned iWaited_ms = 0;
    /// The latest request went unanswered.
    bool bSilent = false;
};

LineTap& TheLineTap();

/// InstallLineTap puts the tap into every connection that is made from now on.
void InstallLineTap();
