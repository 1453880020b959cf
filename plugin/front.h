// The state of the plug-in between calls of the host.
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

/// FrontState is the part of the front that only the current owner (see Operation) may use.
struct FrontState {
    int PluginNumber = 0; // passed back on every host callback
    tProgressProc ProgressProc = nullptr;
    tLogProc LogProc = nullptr;
    tRequestProc RequestProc = nullptr; // for messages, on systems without message boxes

    void* ContextHandle = nullptr; // the phone's library context; null: not connected
    uintptr_t IdleTimerId = 0;     // the running idle tick; 0: none
    LONG IdleTicks = kIdleTicks;   // until the connection closes

    std::optional<PhoneSearch> search; // the search of the last attempt to connect; none after a close
    bool bPhoneAnswered = false;       // when the connection was last checked or opened

    // The receivers of the library's callbacks, which run within an operation; null: none.
    FolderReader* pFolderReader = nullptr;
    Transfer* pTransfer = nullptr; // the running one, even while its operation is suspended
};

/// Front is the object that the entry points share. Operations, the idle tick and the library's callbacks
/// reach it through TheFront; all other code receives the Operation that it works for.
///
/// Locks, in the order in which they may be taken:
///  1. `turn`, for a whole operation; it is released while a callback of the host runs;
///  2. the locks of the library (docs/ARCHITECTURE.md), which the requests of an operation take.
/// The locks inside `turn` and `listings` are held for a few lines that take no other lock and call no other
/// code.
struct Front {
    Ownership turn;
    FrontState state;  // the owner's
    Listings listings; // any thread's
};

/// TheFront returns the front of this module. The first call makes it before any object of the library, so it
/// outlives the library's clean-up at exit. Any thread.
Front& TheFront();
