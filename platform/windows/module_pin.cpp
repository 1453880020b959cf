// The library's references to its own module.
#include "platform/module_pin.h"

#include <mutex>
#include <string>
#include <utility>

#include "platform/windows/module.h"

namespace {

bool bProcessIsEnding = false; // written once, when no other thread is left

std::mutex g_lock;
unsigned g_iKept = 0;            // references no longer needed; under g_lock
unsigned g_iCallsFromSystem = 0; // calls in progress; under g_lock

void TakeReference() {
    const std::lock_guard lock(g_lock);
    if (g_iKept > 0) {
        --g_iKept;
        return;
    }
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&TakeReference),
                       &hModule);
}

/// The number of references that the caller must release now.
unsigned TakeKept() {
    const std::lock_guard lock(g_lock);
    return g_iCallsFromSystem == 0 ? std::exchange(g_iKept, 0) : 0;
}

} // namespace

HMODULE ThisModule() {
    HMODULE hModule = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&TakeReference), &hModule);
    return hModule;
}

std::wstring ThisModuleFile() {
    std::wstring sPath(MAX_PATH, L'\0');
    for (;;) {
        const DWORD iLength =
            GetModuleFileNameW(ThisModule(), sPath.data(), static_cast<DWORD>(sPath.size()));
        if (iLength < sPath.size()) {
            sPath.resize(iLength);
            return sPath;
        }
        if (sPath.size() > 0x8000)
            return L"";
        sPath.resize(sPath.size() * 2);
    }
}

CallFromSystem::CallFromSystem() {
    const std::lock_guard lock(g_lock);
    ++g_iCallsFromSystem;
}

CallFromSystem::~CallFromSystem() {
    const std::lock_guard lock(g_lock);
    --g_iCallsFromSystem;
}

ModulePin::ModulePin(void* pOwner, EndFunction pfnEnd) : m_pOwner(pOwner), m_pfnEnd(pfnEnd) {
    TakeReference();
}

ModulePin::~ModulePin() {
    if (m_bForGood)
        return;
    {
        const std::lock_guard lock(g_lock);
        ++g_iKept;
    }
    ReleaseUnneededPins();
}

void ReleaseUnneededPins() {
    for (unsigned iKept = TakeKept(); iKept > 0; --iKept)
        FreeLibrary(ThisModule());
}

bool ProcessIsEnding() {
    return bProcessIsEnding;
}

/// Called by the system under the loader lock. A non-null pReserved means that the process is ending.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD iReason, LPVOID pReserved) {
    if (iReason == DLL_PROCESS_DETACH && pReserved)
        bProcessIsEnding = true;
    return TRUE;
}
