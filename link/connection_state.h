// The parts of a connection.
#pragma once

#include <array>
#include <memory>
#include <vector>

#include "link/event_listener.h"
#include "link/message_queue.h"
#include "link/text_log.h"
#include "link/time_out_table.h"
#include "link/time_outs.h"
#include "link/transport.h"
#include "platform/module_pin.h"
#include "platform/types.h"

/// ConnectionState holds the parts of one DiagConnection. Only the connection itself and ConnectionAccess use
/// it.
///
/// Threads: any thread may use the listener, the queues and the log; everything else belongs to the caller's.
struct ConnectionState {
    struct TimerEntry {
        DWORD iHandle;
        DWORD iStart_ms;
    };

    explicit ConnectionState(std::unique_ptr<Transport> pLineToUse);
    /// EndLine is for a connection that is left when the library is unloaded.
    static void EndLine(void* pState);

    const ModulePin pin{this, &EndLine}; // held until the threads have ended
    bool bIsConnected = false;
    bool bPlaybackMode = false;
    bool bData2DiagSearch = true;
    unsigned int iLogFlags = kDefaultLogFlags;
    std::array<DWORD, kTimeOutCount> aTimeOuts{};
    std::vector<TimerEntry> timers;

    // Each member may use the ones above it, also from its own thread.
    DataLogFileHandler textLog;
    CQLibMessageQueue syncQueue;    // command responses
    CQLibMessageQueue asyncQueue;   // unsolicited packets, while phone logging was on
    CQLibMessageQueue delayedQueue; // delayed responses that a command accepted
    CQLibEventListener listener;
    std::unique_ptr<Transport> pLine;
};
