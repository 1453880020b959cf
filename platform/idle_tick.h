// A periodic tick for background work.
#pragma once

#include <cstdint>

#include "platform/types.h"

/// IdleTickProc receives the id that StartIdleTick returned. On Windows it is called on the thread that
/// started the tick, while that thread dispatches messages; on Linux on a thread of the platform, one tick at
/// a time. It may call StopIdleTick and StartIdleTick.
using IdleTickProc = void (*)(uintptr_t iTickId);

/// StartIdleTick calls pfnTick every iPeriod_ms until StopIdleTick. Returns the tick's id; 0 when the system
/// refuses.
uintptr_t StartIdleTick(DWORD iPeriod_ms, IdleTickProc pfnTick);

/// StopIdleTick ends a tick without waiting; unknown ids are ignored. On Linux a call of the tick procedure
/// that has already begun may still be running afterwards.
void StopIdleTick(uintptr_t iTickId);
