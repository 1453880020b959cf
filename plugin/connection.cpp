#include "plugin/connection.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/idle_tick.h"
#include "plugin/front.h"
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

/// Returns a context for the attached phone, or null. Its port may have failed to open.
void* ConnectToPhone(Operation& operation) {
    QLIB_SetQpstMode(0);
    const PhoneSearch search = SearchPhone();
    operation.State().search = search;
    void* const hContext = search.iPort ? QLIB_ConnectPort(search.iPort) : nullptr;
    if (hContext)
        operation.Log(MSGTYPE_DETAILS, "CONNECTED on port COM" + std::to_string(search.iPort));
    return hContext;
}

void ConfigureCallBacks(void* hContext) {
    QLIB_ConfigureCallBacks(hContext, OnDirEntry, OnSoftwareDownload, OnAsyncMessage);
    QLIB_ConfigureEfsCallbacks(hContext, TransferProgress, OnDirEntry);
}

void CloseContext(Operation& operation) {
    QLIB_DisconnectPort(std::exchange(operation.State().ContextHandle, nullptr));
}

void Open(Operation& operation) {
    operation.Log(MSGTYPE_CONNECT, "CONNECT");
    operation.State().ContextHandle = ConnectToPhone(operation);
}

void Reopen(Operation& operation) {
    CloseContext(operation);
    operation.State().ContextHandle = ConnectToPhone(operation);
    operation.Log(MSGTYPE_DETAILS, "DISCONNECTED");
    StopIdleTimer(operation);
}

/// Returns true when the connection is open and the phone answers.
bool OpenOrCheck(Operation& operation) {
    bool& bAnswered = operation.State().bPhoneAnswered;
    bAnswered = operation.Context() && QLIB_IsPhoneConnected(operation.Context());
    if (bAnswered)
        return true;
    if (operation.Context())
        Reopen(operation);
    else
        Open(operation);
    return false;
}

} // namespace

void EnsureConnected(Operation& operation) {
    operation.State().IdleTicks = kIdleTicks;
    if (!operation.MayChangeConnection() || OpenOrCheck(operation))
        return;
    if (operation.Context()) {
        ConfigureCallBacks(operation.Context());
        operation.State().bPhoneAnswered = QLIB_IsPhoneConnected(operation.Context());
        if (operation.State().bPhoneAnswered)
            RestartIdleTimer(operation);
    } else {
        operation.Log(MSGTYPE_DETAILS, "NOT CONNECTED");
    }
    operation.FlushLog();
}

void Disconnect(Operation& operation) {
    CloseContext(operation);
    operation.State().search.reset();
    StopIdleTimer(operation);
    operation.Log(MSGTYPE_DETAILS, "DISCONNECTED");
}

void RestartIdleTimer(Operation& operation) {
    StopIdleTimer(operation);
    // Looking up a context registers the library's clean-up at exit. The first tick registers its own later,
    // which therefore runs first: no tick may run during the library's clean-up.
    QLIB_IsPhoneConnected(nullptr);
    operation.State().IdleTimerId = StartIdleTick(kIdlePeriod_ms, IdleTimerProc);
    operation.State().IdleTicks = kIdleTicks;
}

void StopIdleTimer(Operation& operation) {
    if (operation.State().IdleTimerId)
        StopIdleTick(std::exchange(operation.State().IdleTimerId, 0));
}

void IdleTimerProc(uintptr_t iTickId) {
    try {
        Operation operation(Operation::Kind::Tick);
        if (!operation.Owns() || iTickId != operation.State().IdleTimerId || !operation.Context())
            return;
        LONG& iTicks = operation.State().IdleTicks;
        iTicks = std::max<LONG>(iTicks - 1, 0);
        const bool bAnswers = QLIB_IsPhoneConnected(operation.Context());
        if (!bAnswers || iTicks == 0)
            Disconnect(operation);
    } catch (const std::exception&) {
        // No memory for a log line; the connection is closed all the same.
    }
}
