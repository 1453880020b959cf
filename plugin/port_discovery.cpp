#include "plugin/port_discovery.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>

namespace {

struct UsbId {
    uint16_t iVendor;
    uint16_t iProduct;
    bool operator==(const UsbId&) const = default;
};

/// The accepted phones.
constexpr UsbId KnownDevices[] = {
    {0x05C6, 0x3197},
    {0x05C6, 0x9002},
    {0x4B56, 0x0001},
    {0x4B56, 0x0002},
};

constexpr size_t kMaxPhones = 128;

struct UsbInterface {
    UsbId id;
    unsigned iNumber;
    std::string sDeviceKey;
};

constexpr size_t kDiagnosticInterface = 1;

/// Returns the number of a port named "COMn", at most UINT32_MAX; nothing for other names.
std::optional<uint32_t> ParsePortName(std::string_view sName) {
    constexpr std::string_view kPrefix = "COM";
    if (sName.size() <= kPrefix.size() || !sName.starts_with(kPrefix))
        return {};
    uint64_t iPort = 0;
    for (const char c : sName.substr(kPrefix.size())) {
        if (c < '0' || c > '9')
            return {};
        iPort = std::min<uint64_t>(iPort * 10 + static_cast<uint64_t>(c - '0'), UINT32_MAX);
    }
    return static_cast<uint32_t>(iPort);
}

std::optional<UsbInterface> ParseInstanceId(const std::string& sInstanceId) {
    constexpr std::string_view kBus = "USB\\";
    if (sInstanceId.find(kBus) == std::string::npos)
        return {};
    unsigned iVendor = 0;
    unsigned iProduct = 0;
    unsigned iNumber = 0;
    char sKey[13];
    if (std::sscanf(sInstanceId.c_str() + kBus.size(), "VID_%4X&PID_%4X&MI_%2X\\%12s", &iVendor, &iProduct,
                    &iNumber, sKey) != 4)
        return {};
    return UsbInterface{{static_cast<uint16_t>(iVendor), static_cast<uint16_t>(iProduct)}, iNumber, sKey};
}

bool IsKnown(const UsbId& id) {
    return std::find(std::begin(KnownDevices), std::end(KnownDevices), id) != std::end(KnownDevices);
}

bool FindPhones(std::vector<PhonePortRecord>& phones) {
    for (const char* sClass : {"Modem", "Ports"}) {
        std::vector<PresentDevice> devices;
        if (!ListPresentDevices(sClass, devices))
            return false;
        for (const PresentDevice& device : devices)
            RecordPhoneInterface(device, phones);
    }
    return true;
}

/// Returns a diagnostic port that does not fit into a byte, 0 when there is none. Call it when no phone has
/// one that fits.
uint32_t FindPortAbove255() {
    try {
        std::vector<PhonePortRecord> phones;
        FindPhones(phones);
        uint32_t iPort = 0;
        for (const PhonePortRecord& phone : phones)
            iPort = iPort != 0 ? iPort : phone.DiagnosticPort;
        return iPort;
    } catch (const std::exception&) {
        return 0;
    }
}

} // namespace

void RecordPhoneInterface(const PresentDevice& device, std::vector<PhonePortRecord>& phones) {
    if (!device.sPortName || !device.sDescription || !device.sInstanceId)
        return;
    const auto port = ParsePortName(*device.sPortName);
    const auto usb = ParseInstanceId(*device.sInstanceId);
    if (!port || !usb || !IsKnown(usb->id))
        return;
    auto phone = std::find_if(phones.begin(), phones.end(), [&](const PhonePortRecord& record) {
        return record.DeviceKey == usb->sDeviceKey;
    });
    if (phone == phones.end()) {
        if (phones.size() == kMaxPhones)
            return;
        phone = phones.insert(phone, PhonePortRecord{usb->sDeviceKey});
    }
    if (usb->iNumber < phone->InterfacePort.size())
        phone->InterfacePort[usb->iNumber] = *port <= UINT8_MAX ? *port : 0;
    if (usb->iNumber == kDiagnosticInterface)
        phone->DiagnosticPort = *port;
}

int FindPhonePorts(unsigned char* pPorts, int* piDeviceCount, int* piByteCount) {
    try {
        std::vector<PhonePortRecord> phones;
        if (!pPorts || !piDeviceCount || !piByteCount || !FindPhones(phones))
            return 0;
        const int iCapacity = *piByteCount;
        int iBytes = 0;
        for (const PhonePortRecord& phone : phones)
            for (const uint32_t iPort : phone.InterfacePort)
                if (iBytes < iCapacity)
                    pPorts[iBytes++] = static_cast<unsigned char>(iPort);
        *piDeviceCount = iBytes / kPhoneInterfaces;
        *piByteCount = iBytes;
        return 1;
    } catch (const std::exception&) {
        return 0;
    }
}

PhoneSearch SearchPhone() {
    unsigned char aPorts[kMaxPhones * kPhoneInterfaces] = {};
    PhoneSearch search;
    int iBytes = sizeof aPorts;
    FindPhonePorts(aPorts, &search.iPhones, &iBytes);
    for (int i = 0; i < search.iPhones && search.iPort == 0; ++i)
        search.iPort = aPorts[static_cast<size_t>(i) * kPhoneInterfaces + kDiagnosticInterface];
    if (search.iPhones > 0 && search.iPort == 0)
        search.iPortAbove255 = FindPortAbove255();
    return search;
}
