// The one connection to the handset: opened on demand, checked before work, closed when nothing happens.
#pragma once

#include <cstdint>

class Operation;

/// EnsureConnected opens the connection when it is closed, and closes and reopens it when the phone does not
/// answer any more; afterwards FrontState::ContextHandle is a context or null. It counts as activity and
/// tells the host what it did. When the connection may not be changed now (Operation), it stays as it is.
void EnsureConnected(Operation& operation);

/// Disconnect closes the connection and stops the idle tick; the host's log gets "DISCONNECTED". Only when
/// the connection may be changed.
void Disconnect(Operation& operation);

/// RestartIdleTimer starts the 30 ticks of one second anew, StopIdleTimer lets the connection stay open.
void RestartIdleTimer(Operation& operation);
void StopIdleTimer(Operation& operation);

/// IdleTimerProc is the idle tick: it closes the connection when the countdown has run out or the phone has
/// stopped answering. It does nothing while the connection is in use, and nothing for a tick that was stopped
/// meanwhile.
void IdleTimerProc(uintptr_t iTickId);
