// The present devices of a set-up class, from SetupAPI.
#include "platform/devices.h"

#include <exception>

#include "platform/windows/registry_text.h"
#include "platform/windows/setup_api.h"

namespace {

constexpr DWORD kTextSize = 256;

/// The hardware key of a device. Closed by the destructor.
class HardwareKey {
public:
    HardwareKey(const SetupApi& api, HDEVINFO hList, SP_DEVINFO_DATA& member)
        : m_hKey(api.OpenDevRegKey(hList, &member, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_QUERY_VALUE)) {}
    ~HardwareKey() {
        if (IsOpen())
            RegCloseKey(m_hKey);
    }
    HardwareKey(const HardwareKey&) = delete;
    HardwareKey& operator=(const HardwareKey&) = delete;

    bool IsOpen() const { return m_hKey != nullptr && m_hKey != INVALID_HANDLE_VALUE; }

    std::optional<std::string> PortName() const {
        BYTE aText[kTextSize];
        DWORD iSize = sizeof(aText);
        DWORD iType = REG_NONE;
        if (RegQueryValueExA(m_hKey, "PortName", nullptr, &iType, aText, &iSize) != ERROR_SUCCESS ||
            iType != REG_SZ)
            return std::nullopt;
        return RegistryText(aText, iSize, sizeof(aText));
    }

private:
    HKEY m_hKey;
};

/// The present devices of a class. Released by the destructor.
class DeviceList {
public:
    DeviceList(const SetupApi& api, const GUID& classGuid)
        : m_api(api), m_hList(api.GetClassDevs(&classGuid, nullptr, nullptr, DIGCF_PRESENT)) {}
    ~DeviceList() {
        if (IsOpen())
            m_api.DestroyDeviceInfoList(m_hList);
    }
    DeviceList(const DeviceList&) = delete;
    DeviceList& operator=(const DeviceList&) = delete;

    bool IsOpen() const { return m_hList != INVALID_HANDLE_VALUE; }

    /// False when there is no such member.
    bool GetMember(DWORD iIndex, SP_DEVINFO_DATA& member) const {
        member = {};
        member.cbSize = sizeof(member);
        return m_api.EnumDeviceInfo(m_hList, iIndex, &member) != FALSE;
    }

    /// Returns nullopt for a device without a readable hardware key.
    std::optional<PresentDevice> Describe(SP_DEVINFO_DATA& member) const {
        const HardwareKey key(m_api, m_hList, member);
        if (!key.IsOpen())
            return std::nullopt;
        return PresentDevice{key.PortName(), Description(member), InstanceId(member)};
    }

private:
    std::optional<std::string> Description(SP_DEVINFO_DATA& member) const {
        BYTE aText[kTextSize];
        DWORD iSize = 0;
        DWORD iType = REG_NONE;
        if (!m_api.GetDeviceRegistryProperty(m_hList, &member, SPDRP_DEVICEDESC, &iType, aText, sizeof(aText),
                                             &iSize) ||
            iType != REG_SZ)
            return std::nullopt;
        return RegistryText(aText, iSize, sizeof(aText));
    }

    std::optional<std::string> InstanceId(SP_DEVINFO_DATA& member) const {
        char aText[kTextSize] = {};
        if (!m_api.GetDeviceInstanceId(m_hList, &member, aText, sizeof(aText), nullptr))
            return std::nullopt;
        return RegistryText(aText, sizeof(aText), sizeof(aText));
    }

    const SetupApi& m_api;
    HDEVINFO m_hList;
};

/// The first GUID with this class name.
std::optional<GUID> FirstClassGuid(const SetupApi& api, const char* sClassName) {
    DWORD iCount = 0;
    api.ClassGuidsFromName(sClassName, nullptr, 0, &iCount);
    if (iCount == 0)
        return std::nullopt;
    std::vector<GUID> guids(iCount);
    if (!api.ClassGuidsFromName(sClassName, guids.data(), iCount, &iCount))
        return std::nullopt;
    return guids[0];
}

/// May throw std::bad_alloc.
bool ListDevices(const char* sClassName, std::vector<PresentDevice>& devices) {
    const SetupApi api;
    if (!api.IsComplete())
        return false;
    const std::optional<GUID> classGuid = FirstClassGuid(api, sClassName);
    if (!classGuid)
        return false;
    const DeviceList list(api, *classGuid);
    if (!list.IsOpen())
        return false;
    SP_DEVINFO_DATA member;
    for (DWORD iIndex = 0; list.GetMember(iIndex, member); ++iIndex) {
        if (std::optional<PresentDevice> device = list.Describe(member))
            devices.push_back(std::move(*device));
    }
    return true;
}

} // namespace

bool ListPresentDevices(const char* sClassName, std::vector<PresentDevice>& devices) {
    devices.clear();
    try {
        return ListDevices(sClassName, devices);
    } catch (const std::exception&) {
        devices.clear();
        return false;
    }
}
