// What the plug-in keeps between two calls of the host.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/host_interface.h"
#include "platform/types.h"
#include "plugin/listing.h"
#include "plugin/ownership.h"
#include "plugin/port_discovery.h"

class Transfer;

/// The connection closes after this many ticks without activity.
constexpr LONG kIdleTicks = 30;

/// FrontState is the part of the front that belongs to the owner of the turn (Operation): nobody else touches
/// it.
struct FrontState {
    int PluginNumber = 0; // passed back on every host callback
    tProgressProc ProgressProc = nullptr;
    tLogProc LogProc = nullptr;
    tRequestProc RequestProc = nullptr; // for messages, where the system has none of its own

    void* ContextHandle = nullptr; // the phone's library context; null: not connected
    uintptr_t IdleTimerId = 0;     // the running idle tick; 0: none
    LONG IdleTicks = kIdleTicks;   // until the connection closes

    std::optional<PhoneSearch> search; // by which the last attempt to connect was made; none since a close
    bool bPhoneAnswered = false;       // when the connection was last checked or opened

    // What the library's callbacks, which run inside an operation, report to; null: nothing.
    FolderReader* pFolderReader = nullptr;
    Transfer* pTransfer = nullptr; // the one that runs; it stays while its operation is suspended
};

/// Front is the one object behind the entry points. Operations, the idle tick and the library's callbacks
/// reach it through TheFront; everything else is handed the Operation that it works for.
///
/// Locks, in the order in which they may be taken:
///  1. `turn`, for the whole of an operation; it is let go while a callback of the host runs;
///  2. the locks of the library (docs/ARCHITECTURE.md), which an operation's requests take.
/// The locks inside `turn` and `listings` are held for a few lines that take no other lock and call nobody.
struct Front {
    Ownership turn;
    FrontState state;  // the owner's
    Listings listings; // any thread's
};

/// TheFront returns the front of this module. It is made by the first call, before anything of the library
/// is, and so outlives the library's clean-up at exit. Any thread.
Front& TheFront();
