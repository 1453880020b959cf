// The table of open serial ports.
#include "platform/posix/serial_handles.h"

#include <cstddef>
#include <map>
#include <new>

namespace {

thread_local DWORD g_iLastError = 0;

struct HandleTable {
    std::mutex lock;
    std::map<HANDLE, std::shared_ptr<SerialDevice>> devices; // under lock
    uintptr_t iLastHandle = 0;                               // under lock
};

/// The table is never destroyed: destructors of other files may still close connections after those of this
/// file. Its storage is part of the module, so unloading the module leaves nothing over.
HandleTable& Handles() {
    alignas(HandleTable) static std::byte aStorage[sizeof(HandleTable)];
    static HandleTable& table = *new (aStorage) HandleTable;
    return table;
}

} // namespace

HANDLE AddSerialHandle(std::shared_ptr<SerialDevice> pDevice) {
    HandleTable& table = Handles();
    const std::lock_guard lock(table.lock);
    // A handle is a number cast to a pointer.
    const HANDLE hPort = reinterpret_cast<HANDLE>(++table.iLastHandle); // NOLINT(performance-no-int-to-ptr)
    table.devices.emplace(hPort, std::move(pDevice));
    return hPort;
}

std::shared_ptr<SerialDevice> FindSerialDevice(HANDLE hPort) {
    HandleTable& table = Handles();
    const std::lock_guard lock(table.lock);
    const auto found = table.devices.find(hPort);
    return found != table.devices.end() ? found->second : nullptr;
}

BOOL CloseHandle(HANDLE hPort) {
    HandleTable& table = Handles();
    std::shared_ptr<SerialDevice> pDevice;
    {
        const std::lock_guard lock(table.lock);
        auto node = table.devices.extract(hPort);
        if (!node.empty())
            pDevice = std::move(node.mapped());
    }
    if (pDevice != nullptr)
        pDevice->EndUse();
    SetLastError(pDevice != nullptr ? 0 : kErrorInvalidHandle);
    return pDevice != nullptr;
}

DWORD GetLastError() {
    return g_iLastError;
}

void SetLastError(DWORD iError) {
    g_iLastError = iError;
}
