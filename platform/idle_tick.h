// A periodic tick for work that is done when nothing else happens.
#pragma once

#include <cstdint>

#include "platform/types.h"

/// IdleTickProc receives the id that StartIdleTick returned. On Windows it runs on the thread that
/// started the tick, while that thread dispatches messages; on Linux on a thread of the platform, one
/// tick at a time. It may call StopIdleTick and StartIdleTick.
using IdleTickProc = void (*)(uintptr_t iTickId);

/// StartIdleTick calls pfnTick every iPeriod_ms milliseconds until StopIdleTick. Returns the tick's id,
/// never 0 while it runs; 0 when the system refuses it.
uintptr_t StartIdleTick(DWORD iPeriod_ms, IdleTickProc pfnTick);

/// StopIdleTick ends a tick; an id that is not running is ignored. It does not wait: on Linux a call of
/// the tick procedure that has already begun may still be running when it returns.
void StopIdleTick(uintptr_t iTickId);
