// The front's module-wide values.
#pragma once

#include <cstdint>

#include "platform/host_interface.h"
#include "platform/types.h"

/// The connection closes after this many ticks without activity.
constexpr LONG kIdleTicks = 30;

/// FrontState is what the front knows between two calls. There is one, `front`; whoever owns the connection
/// (plugin/operation.h) may touch it, nobody else.
struct FrontState {
    int PluginNumber = 0; // passed back on every host callback
    tProgressProc ProgressProc = nullptr;
    tLogProc LogProc = nullptr;
    tRequestProc RequestProc = nullptr; // for messages, where the system has none of its own

    void* ContextHandle = nullptr; // the phone's library context; null: not connected
    uintptr_t IdleTimerId = 0;     // the running idle tick; 0: none
    LONG IdleTicks = kIdleTicks;   // until the connection closes

    bool bTransferRunning = false;
    DWORD TransferSize = 0; // bytes of the file in transfer: the 100 % of its progress; else 0
    bool bAborted = false;  // the user aborted the running transfer
};

inline constinit FrontState front;
