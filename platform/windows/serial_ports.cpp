// The list of serial ports, from the registry key that the serial drivers maintain.
#include "platform/serial_ports.h"

#include <exception>

#include "platform/windows/registry_text.h"

namespace {

// The longest name of a registry value.
constexpr DWORD kNameSize = 16383;
constexpr DWORD kDataSize = 16383;

class SerialPortKey {
public:
    SerialPortKey() {
        if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, "HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &m_hKey) !=
            ERROR_SUCCESS)
            m_hKey = nullptr;
    }
    ~SerialPortKey() {
        if (IsOpen())
            RegCloseKey(m_hKey);
    }
    SerialPortKey(const SerialPortKey&) = delete;
    SerialPortKey& operator=(const SerialPortKey&) = delete;

    bool IsOpen() const { return m_hKey != nullptr; }

    /// The number of values; 0 when it is unknown.
    DWORD CountValues() const {
        char aClass[MAX_PATH];
        DWORD iClassSize = sizeof(aClass);
        DWORD iCount = 0;
        const LSTATUS iStatus = RegQueryInfoKeyA(m_hKey, aClass, &iClassSize, nullptr, nullptr, nullptr,
                                                 nullptr, &iCount, nullptr, nullptr, nullptr, nullptr);
        return iStatus == ERROR_SUCCESS ? iCount : 0;
    }

    /// Appends the texts of the first `iCount` values; unreadable ones are skipped.
    void AppendTexts(DWORD iCount, std::vector<std::string>& texts) const {
        std::vector<char> name(kNameSize);
        std::vector<BYTE> data(kDataSize);
        for (DWORD iIndex = 0; iIndex < iCount; ++iIndex) {
            DWORD iNameSize = kNameSize;
            DWORD iDataSize = kDataSize;
            if (RegEnumValueA(m_hKey, iIndex, name.data(), &iNameSize, nullptr, nullptr, data.data(),
                              &iDataSize) == ERROR_SUCCESS)
                texts.push_back(RegistryText(data.data(), iDataSize, data.size()));
        }
    }

private:
    HKEY m_hKey = nullptr;
};

} // namespace

bool ListSerialPorts(std::vector<std::string>& names) {
    names.clear();
    try {
        const SerialPortKey key;
        if (!key.IsOpen())
            return false;
        key.AppendTexts(key.CountValues(), names);
        return true;
    } catch (const std::exception&) {
        names.clear();
        return false;
    }
}
