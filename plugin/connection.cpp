#include "plugin/connection.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/idle_tick.h"
#include "plugin/front_state.h"
#include "plugin/listing.h"
#include "plugin/operation.h"
#include "plugin/port_discovery.h"
#include "plugin/transfer_progress.h"
#include "qlib/call_layer.h"

namespace {

constexpr DWORD kIdlePeriod_ms = 1000;

bool OnSoftwareDownload(void*) {
    return true;
}

void OnAsyncMessage(unsigned short, unsigned char*, void*) {}

// The COM port of the diagnostic interface of the first phone; 0 when there is none.
unsigned short FindDiagnosticPort() {
    unsigned char aPorts[20] = {};
    int iDevices = 0;
    int iBytes = sizeof aPorts;
    FindPhonePorts(aPorts, &iDevices, &iBytes);
    return iDevices > 0 ? aPorts[1] : 0;
}

// A context for the phone that is attached, or null. Its port may have failed to open.
void* ConnectToPhone(Operation& operation) {
    QLIB_SetQpstMode(0);
    const unsigned short iComPort = FindDiagnosticPort();
    void* const hContext = iComPort ? QLIB_ConnectPort(iComPort) : nullptr;
    if (hContext)
        operation.Log(MSGTYPE_DETAILS, "CONNECTED on port COM" + std::to_string(iComPort));
    return hContext;
}

void ConfigureCallBacks() {
    QLIB_ConfigureCallBacks(front.ContextHandle, OnDirEntry, OnSoftwareDownload, OnAsyncMessage);
    QLIB_ConfigureEfsCallbacks(front.ContextHandle, TransferProgress, OnDirEntry);
}

void Open(Operation& operation) {
    operation.Log(MSGTYPE_CONNECT, "CONNECT");
    front.ContextHandle = ConnectToPhone(operation);
}

void Reopen(Operation& operation) {
    QLIB_DisconnectPort(std::exchange(front.ContextHandle, nullptr));
    front.ContextHandle = ConnectToPhone(operation);
    operation.Log(MSGTYPE_DETAILS, "DISCONNECTED");
    StopIdleTimer();
}

// True when the connection is open and the phone answers.
bool OpenOrCheck(Operation& operation) {
    if (!front.ContextHandle)
        Open(operation);
    else if (QLIB_IsPhoneConnected(front.ContextHandle))
        return true;
    else
        Reopen(operation);
    return false;
}

} // namespace

void EnsureConnected(Operation& operation) {
    front.IdleTicks = kIdleTicks;
    if (!operation.MayChangeConnection() || OpenOrCheck(operation))
        return;
    if (front.ContextHandle) {
        ConfigureCallBacks();
        if (QLIB_IsPhoneConnected(front.ContextHandle))
            RestartIdleTimer();
    } else {
        operation.Log(MSGTYPE_DETAILS, "NOT CONNECTED");
    }
    operation.TellHost();
}

void Disconnect(Operation& operation) {
    QLIB_DisconnectPort(std::exchange(front.ContextHandle, nullptr));
    StopIdleTimer();
    operation.Log(MSGTYPE_DETAILS, "DISCONNECTED");
}

void RestartIdleTimer() {
    StopIdleTimer();
    // Looking up a context registers the library's clean-up at exit. It has to stand before the tick's, which
    // comes with the first tick: what is registered last runs first, and no tick may meet the clean-up.
    QLIB_IsPhoneConnected(nullptr);
    front.IdleTimerId = StartIdleTick(kIdlePeriod_ms, IdleTimerProc);
    front.IdleTicks = kIdleTicks;
}

void StopIdleTimer() {
    if (front.IdleTimerId)
        StopIdleTick(std::exchange(front.IdleTimerId, 0));
}

void IdleTimerProc(uintptr_t iTickId) {
    try {
        Operation operation(Operation::Kind::Tick);
        if (!operation.Owns() || iTickId != front.IdleTimerId || !front.ContextHandle)
            return;
        front.IdleTicks = std::max<LONG>(front.IdleTicks - 1, 0);
        const bool bAnswers = QLIB_IsPhoneConnected(front.ContextHandle);
        if (!bAnswers || front.IdleTicks == 0)
            Disconnect(operation);
    } catch (const std::exception&) {
        // No memory for a log line; the connection is closed all the same.
    }
}
