// Opening a COM port by name.
#include <fcntl.h>
#include <sys/eventfd.h>

#include <charconv>
#include <exception>
#include <string_view>

#include "platform/posix/com_names.h"
#include "platform/posix/serial_handles.h"
#include "platform/posix/test_faults.h"

namespace {

/// The number in a device name of the form \\.\COMn, or 0.
int ComOfDeviceName(std::string_view sName) {
    constexpr std::string_view kPrefix = R"(\\.\COM)";
    if (!sName.starts_with(kPrefix))
        return 0;
    sName.remove_prefix(kPrefix.size());
    int iCom = 0;
    const char* pEnd = sName.data() + sName.size();
    const auto result = std::from_chars(sName.data(), pEnd, iCom);
    const bool bNumber = result.ec == std::errc() && result.ptr == pEnd && sName[0] != '0';
    return bNumber && iCom >= 1 && iCom <= kLastComPort ? iCom : 0;
}

/// Returns 0 and the handle, or an error number; may throw.
DWORD OpenCom(const char* sFileName, HANDLE& hPort) {
    const int iCom = sFileName != nullptr ? ComOfDeviceName(sFileName) : 0;
    if (iCom == 0)
        return kErrorFileNotFound;
    if (InjectedFaults().bOpenIsDenied)
        return OpenError(EACCES);
    Descriptor tty(open(TtyPathOfCom(iCom).c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!tty.IsValid() || isatty(tty.Get()) == 0)
        return OpenError(errno);
    Descriptor closed(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!closed.IsValid())
        return kErrorNotEnoughMemory;
    auto pDevice = std::make_shared<SerialDevice>(std::move(tty), std::move(closed));
    if (const DWORD iError = pDevice->Claim(); iError != 0)
        return iError;
    hPort = AddSerialHandle(std::move(pDevice));
    return 0;
}

} // namespace

HANDLE CreateFileA(const char* sFileName, DWORD, DWORD, void*, DWORD, DWORD, HANDLE) {
    HANDLE hPort = INVALID_HANDLE_VALUE;
    DWORD iError = kErrorNotEnoughMemory;
    try {
        iError = OpenCom(sFileName, hPort);
    } catch (const std::exception&) {
        // The only possible cause is a lack of memory.
    }
    SetLastError(iError);
    return hPort;
}
