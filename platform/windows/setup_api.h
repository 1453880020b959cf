// SetupAPI, loaded by name, so that the library also loads on a system without it or with an older one.
#pragma once

#include "system/serial.h"

// Must follow the system's main header, whose types it uses.
#include <setupapi.h>

/// SetupApi holds SETUPAPI.DLL and the eight functions that the device list needs. Used by one thread.
class SetupApi {
public:
    /// Loads the library and looks up the functions; IsComplete returns the outcome.
    SetupApi();
    ~SetupApi();
    SetupApi(const SetupApi&) = delete;
    SetupApi& operator=(const SetupApi&) = delete;

    /// Returns whether every function was found. If not, the library is unloaded again, and the thread's last
    /// error is 120 when the library exists but lacks a function.
    bool IsComplete() const { return m_hLibrary != nullptr; }

    decltype(&::SetupDiOpenDevRegKey) OpenDevRegKey = nullptr;
    decltype(&::SetupDiClassGuidsFromNameA) ClassGuidsFromName = nullptr;
    decltype(&::SetupDiGetClassDevsA) GetClassDevs = nullptr;
    decltype(&::SetupDiGetDeviceRegistryPropertyA) GetDeviceRegistryProperty = nullptr;
    decltype(&::SetupDiGetDeviceInstanceIdA) GetDeviceInstanceId = nullptr;
    decltype(&::SetupDiClassNameFromGuidA) ClassNameFromGuid = nullptr;
    decltype(&::SetupDiDestroyDeviceInfoList) DestroyDeviceInfoList = nullptr;
    decltype(&::SetupDiEnumDeviceInfo) EnumDeviceInfo = nullptr;

private:
    HMODULE m_hLibrary;
};
