// The connection to the phone: opened on demand, checked before use, closed when idle.
#pragma once

#include <cstdint>

class Operation;

/// EnsureConnected opens a closed connection, and closes and reopens one whose phone no longer answers.
/// Afterwards FrontState::ContextHandle is a context or null. The call restarts the idle countdown and
/// reports to the host what it did. If the connection may not be changed now (see Operation), it is left
/// unchanged.
void EnsureConnected(Operation& operation);

/// Disconnect closes the connection, stops the idle tick and logs "DISCONNECTED" to the host. Call it only if
/// the connection may be changed.
void Disconnect(Operation& operation);

/// RestartIdleTimer starts a new countdown of 30 ticks of one second. StopIdleTimer keeps the connection
/// open.
void RestartIdleTimer(Operation& operation);
void StopIdleTimer(Operation& operation);

/// IdleTimerProc is the idle tick: it closes the connection when the countdown has ended or the phone no
/// longer answers. It does nothing while the connection is in use, or if this tick has been stopped
/// meanwhile.
void IdleTimerProc(uintptr_t iTickId);
