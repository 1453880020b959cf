// The identity of a library context: the handle of a named mutex.
#include "platform/context_handle.h"

#include "system/serial.h"

void* MakeContextHandle(const char* sName) {
    return CreateMutexA(nullptr, FALSE, sName);
}

void ReleaseContextHandle(void* hContext) {
    if (hContext != nullptr)
        CloseHandle(hContext);
}
