#include "tests/windows/device_tree.h"

#include <windows.h>

#include "tests/windows/checks.h"

namespace {

const std::string kBus = "System\\CurrentControlSet\\Enum\\USB";
const std::string kClasses = "System\\CurrentControlSet\\Control\\Class\\";
constexpr char kModemClass[] = "{4D36E96D-E325-11CE-BFC1-08002BE10318}";
constexpr char kPortsClass[] = "{4D36E978-E325-11CE-BFC1-08002BE10318}";
constexpr char kPhoneModem[] = "VID_05C6&PID_3197&MI_00\\6&2A1B3C4D&0&0000";
constexpr char kPhonePort[] = "VID_05C6&PID_3197&MI_01\\6&2A1B3C4D&0&0001";

class Key {
public:
    explicit Key(const std::string& sPath) {
        EXPECT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, sPath.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                                  KEY_ALL_ACCESS, nullptr, &m_hKey, nullptr),
                  ERROR_SUCCESS);
    }
    ~Key() { RegCloseKey(m_hKey); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    void Set(const char* sName, const std::string& sValue) const {
        if (!sValue.empty())
            RegSetValueExA(m_hKey, sName, 0, REG_SZ, reinterpret_cast<const BYTE*>(sValue.c_str()),
                           static_cast<DWORD>(sValue.size() + 1));
    }
    void SetNumber(const char* sName, DWORD iValue) const {
        RegSetValueExA(m_hKey, sName, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&iValue), sizeof iValue);
    }
    void Clear() const {
        char sName[256];
        for (DWORD iSize = sizeof sName;
             RegEnumValueA(m_hKey, 0, sName, &iSize, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
             iSize = sizeof sName)
            RegDeleteValueA(m_hKey, sName);
    }

private:
    HKEY m_hKey = nullptr;
};

/// Wine has no modem class by default.
void MakeModemClass() {
    const Key modem(kClasses + kModemClass);
    modem.Set(nullptr, "Modems");
    modem.Set("Class", "Modem");
}

} // namespace

void AddDevice(const TreeDevice& device) {
    MakeModemClass();
    const Key key(kBus + "\\" + device.sInstance);
    key.Set("ClassGUID", device.bModem ? kModemClass : kPortsClass);
    key.Set("Class", device.bModem ? "Modem" : "Ports");
    key.Set("DeviceDesc", device.sDescription);
    const Key parameters(kBus + "\\" + device.sInstance + "\\Device Parameters");
    if (device.bNumberAsPortName)
        parameters.SetNumber("PortName", 6);
    else
        parameters.Set("PortName", device.sPortName);
}

void RemoveDevice(const std::string& sInstance) {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, (kBus + "\\" + sInstance).c_str());
}

void RemoveDevices() {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kBus.c_str());
}

void AddPhone() {
    AddDevice({kPhoneModem, true, "COM5", "Example USB Modem"});
    AddDevice({kPhonePort, false, "COM6", "Example Diagnostic Serial Port"});
}

void RemovePhone() {
    RemoveDevice(kPhoneModem);
    RemoveDevice(kPhonePort);
}

void SetSerialPorts(const std::string& sFirst, const std::string& sSecond) {
    const Key ports("HARDWARE\\DEVICEMAP\\SERIALCOMM");
    ports.Clear();
    ports.Set("\\Device\\VSerial5", sFirst);
    ports.Set("\\Device\\VSerial6", sSecond);
}
