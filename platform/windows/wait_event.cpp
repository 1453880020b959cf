// Events for threads to wait on: auto-reset events of the system.
#include "platform/wait_event.h"

#include <optional>

#include "system/serial.h"

static_assert(kWaitTimedOut == WAIT_TIMEOUT && kWaitFailed == WAIT_FAILED && kWaitForever == INFINITE);

namespace {

DWORD Remaining_ms(ULONGLONG iStart_ms, DWORD iLimit_ms) {
    if (iLimit_ms == INFINITE)
        return INFINITE;
    const ULONGLONG iPassed_ms = GetTickCount64() - iStart_ms;
    return iPassed_ms < iLimit_ms ? static_cast<DWORD>(iLimit_ms - iPassed_ms) : 0;
}

/// Messages that were already seen in the queue end the wait too (MWMO_INPUTAVAILABLE): an event may end a
/// wait before all messages are dispatched, and the rest would not be reported again.
DWORD WaitForHandleOrMessage(std::span<void* const> handles, DWORD iLimit_ms) {
    return MsgWaitForMultipleObjectsEx(static_cast<DWORD>(handles.size()), handles.data(), iLimit_ms,
                                       QS_ALLINPUT, MWMO_INPUTAVAILABLE);
}

/// Dispatches a message, but keeps a request to quit for the thread's own message loop.
void Dispatch(const MSG& message, std::optional<int>& exitCode) {
    if (message.message == WM_QUIT) {
        exitCode = static_cast<int>(message.wParam);
        return;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

} // namespace

WaitEvent::WaitEvent(bool bSet) : m_hEvent(CreateEventA(nullptr, FALSE, bSet ? TRUE : FALSE, nullptr)) {}

WaitEvent::~WaitEvent() {
    if (IsValid())
        CloseHandle(m_hEvent);
}

void WaitEvent::Set() {
    if (IsValid())
        SetEvent(m_hEvent);
}

bool WaitEvent::Wait(DWORD iLimit_ms) {
    return WaitForSingleObject(m_hEvent, iLimit_ms) == WAIT_OBJECT_0;
}

DWORD WaitWithMessages(std::span<void* const> handles, DWORD iLimit_ms) {
    const ULONGLONG iStart_ms = GetTickCount64();
    const auto iCount = static_cast<DWORD>(handles.size());
    std::optional<int> exitCode;
    DWORD iResult = kWaitFailed;
    for (bool bLast = false;; bLast = Remaining_ms(iStart_ms, iLimit_ms) == 0) {
        iResult = bLast ? WaitForMultipleObjects(iCount, handles.data(), FALSE, 0)
                        : WaitForHandleOrMessage(handles, Remaining_ms(iStart_ms, iLimit_ms));
        if (bLast || iResult != WAIT_OBJECT_0 + iCount)
            break;
        // A window that posts to itself never leaves the queue empty, so the handles are tested in between.
        MSG message;
        iResult = WAIT_TIMEOUT;
        while (iResult == WAIT_TIMEOUT && PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            Dispatch(message, exitCode);
            iResult = WaitForMultipleObjects(iCount, handles.data(), FALSE, 0);
            if (Remaining_ms(iStart_ms, iLimit_ms) == 0)
                break;
        }
        if (iResult != WAIT_TIMEOUT)
            break;
    }
    if (exitCode)
        PostQuitMessage(*exitCode);
    return iResult;
}
