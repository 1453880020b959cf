// The identity of a library context: the handle of a named mutex, owned by the thread that made it.
#include "platform/context_handle.h"

#include "system/serial.h"

void* MakeContextHandle(const char* sName) {
    return CreateMutexA(nullptr, TRUE, sName);
}

void ReleaseContextHandle(void* hContext) {
    if (hContext == nullptr)
        return;
    ReleaseMutex(hContext); // fails on any thread but the maker's; the mutex is closed all the same
    CloseHandle(hContext);
}
