// SetupAPI, loaded by name: a machine without it, or with an older one, still loads the library.
#pragma once

#include "system/serial.h"

// After the system's main header, on whose types it builds.
#include <setupapi.h>

/// SetupApi holds SETUPAPI.DLL and the eight functions that the device list needs, for as long as it lives.
/// One thread uses it.
class SetupApi {
public:
    /// Loads the library and looks the functions up; IsComplete tells the outcome.
    SetupApi();
    ~SetupApi();
    SetupApi(const SetupApi&) = delete;
    SetupApi& operator=(const SetupApi&) = delete;

    /// True when every function was found. False otherwise: the library is then unloaded again, and the
    /// thread's last error is 120 if it was there but lacks a function.
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
