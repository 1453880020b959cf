// SetupAPI, loaded by name.
#include "platform/windows/setup_api.h"

namespace {

template <class Function>
bool LookUp(HMODULE hLibrary, const char* sName, Function& pfnFunction) {
    // Through void*, the one conversion that all compilers accept for a function looked up by name.
    pfnFunction = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(hLibrary, sName)));
    return pfnFunction != nullptr;
}

} // namespace

SetupApi::SetupApi() : m_hLibrary(LoadLibraryA("SETUPAPI.DLL")) {
    if (m_hLibrary == nullptr)
        return;
    if (LookUp(m_hLibrary, "SetupDiOpenDevRegKey", OpenDevRegKey) &&
        LookUp(m_hLibrary, "SetupDiClassGuidsFromNameA", ClassGuidsFromName) &&
        LookUp(m_hLibrary, "SetupDiGetClassDevsA", GetClassDevs) &&
        LookUp(m_hLibrary, "SetupDiGetDeviceRegistryPropertyA", GetDeviceRegistryProperty) &&
        LookUp(m_hLibrary, "SetupDiGetDeviceInstanceIdA", GetDeviceInstanceId) &&
        LookUp(m_hLibrary, "SetupDiClassNameFromGuidA", ClassNameFromGuid) &&
        LookUp(m_hLibrary, "SetupDiDestroyDeviceInfoList", DestroyDeviceInfoList) &&
        LookUp(m_hLibrary, "SetupDiEnumDeviceInfo", EnumDeviceInfo))
        return;
    FreeLibrary(m_hLibrary);
    m_hLibrary = nullptr;
    SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
}

SetupApi::~SetupApi() {
    if (m_hLibrary != nullptr)
        FreeLibrary(m_hLibrary);
}
