// The fixed names of the COM ports.
#include "platform/posix/com_names.h"

#include <charconv>
#include <cstdlib>
#include <string>

namespace {

constexpr std::string_view kSerialPrefix = "ttyUSB";
constexpr std::string_view kModemPrefix = "ttyACM";

} // namespace

std::filesystem::path DeviceRoot() {
    const char* sRoot = std::getenv("QUILLET_DEVICE_ROOT");
    return sRoot != nullptr && *sRoot != '\0' ? sRoot : "/";
}

std::filesystem::path TtyPathOfCom(int iCom) {
    const int iFirst = IsModemCom(iCom) ? kComPortsPerKind + 1 : 1;
    std::string sName(IsModemCom(iCom) ? kModemPrefix : kSerialPrefix);
    return DeviceRoot() / "dev" / (sName + std::to_string(iCom - iFirst));
}

std::optional<int> ComOfTty(std::string_view sTtyName) {
    const bool bModem = sTtyName.starts_with(kModemPrefix);
    if (!bModem && !sTtyName.starts_with(kSerialPrefix))
        return std::nullopt;
    const std::string_view sNumber = sTtyName.substr(kModemPrefix.size());
    if (sNumber.size() > 1 && sNumber[0] == '0')
        return std::nullopt;
    unsigned iNumber = 0;
    const char* pEnd = sNumber.data() + sNumber.size();
    const auto result = std::from_chars(sNumber.data(), pEnd, iNumber);
    if (result.ec != std::errc() || result.ptr != pEnd || iNumber >= unsigned{kComPortsPerKind})
        return std::nullopt;
    return static_cast<int>(iNumber) + 1 + (bModem ? kComPortsPerKind : 0);
}
