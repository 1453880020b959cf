// The system's timer resolution.
#include "platform/timer_resolution.h"

#include "system/serial.h"

// Must follow the system's main header, whose types it uses.
#include <timeapi.h>

namespace {

constexpr UINT kResolution_ms = 1;

} // namespace

FineTimer::FineTimer() {
    timeBeginPeriod(kResolution_ms);
}

FineTimer::~FineTimer() {
    timeEndPeriod(kResolution_ms);
}
