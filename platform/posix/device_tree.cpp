// The walk through sysfs. Its contents are not trusted: only the first 64 bytes of an attribute are read, and
// only regular files are opened for reading.
#include "platform/posix/device_tree.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <string_view>

#include "platform/posix/com_names.h"
#include "platform/posix/descriptor.h"

namespace {

namespace fs = std::filesystem;

constexpr size_t kAttributeLimit = 64;
constexpr const char* kUnnamedPort = "USB serial port";

fs::path TtyClassFolder() {
    return DeviceRoot() / "sys/class/tty";
}

/// The first line of an attribute; nullopt when it cannot be read, is empty or has control characters.
std::optional<std::string> ReadAttribute(const fs::path& folder, const char* sName) {
    // O_NONBLOCK: opening something that is not an attribute (a FIFO, say) must not block.
    const Descriptor file(open((folder / sName).c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file.IsValid() || fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    char aBytes[kAttributeLimit];
    const ssize_t iRead = read(file.Get(), aBytes, sizeof(aBytes));
    if (iRead <= 0)
        return std::nullopt;
    std::string_view sText(aBytes, static_cast<size_t>(iRead));
    sText = sText.substr(0, sText.find('\n'));
    const bool bControl = std::any_of(sText.begin(), sText.end(), [](char c) {
        const auto iByte = static_cast<unsigned char>(c);
        return iByte < 0x20 || iByte == 0x7F;
    });
    if (sText.empty() || bControl)
        return std::nullopt;
    return std::string(sText);
}

std::optional<unsigned> ReadHexAttribute(const fs::path& folder, const char* sName, size_t iDigits) {
    const std::optional<std::string> sText = ReadAttribute(folder, sName);
    if (!sText || sText->size() > iDigits)
        return std::nullopt;
    unsigned iValue = 0;
    const char* pEnd = sText->data() + sText->size();
    const auto result = std::from_chars(sText->data(), pEnd, iValue, 16);
    if (result.ec != std::errc() || result.ptr != pEnd)
        return std::nullopt;
    return iValue;
}

bool Has(const fs::path& folder, const char* sName) {
    std::error_code error;
    return fs::exists(folder / sName, error);
}

/// The folder of a class entry with links resolved. An absolute link may be relative to the root that
/// QUILLET_DEVICE_ROOT replaces. Empty when there is no such folder in `sysfs`.
fs::path ResolveTty(const fs::path& entry, const fs::path& sysfs) {
    const auto isInSysfs = [&](const fs::path& path) {
        const auto mismatch = std::mismatch(sysfs.begin(), sysfs.end(), path.begin(), path.end());
        return mismatch.first == sysfs.end();
    };
    std::error_code error;
    fs::path folder = fs::canonical(entry, error);
    if (!error && isInSysfs(folder))
        return folder;
    const fs::path target = fs::read_symlink(entry, error);
    if (error || !target.is_absolute())
        return {};
    folder = fs::canonical(DeviceRoot() / target.relative_path(), error);
    return !error && isInSysfs(folder) ? folder : fs::path();
}

/// The nearest of `folder` and its parents below `top` that satisfies `test`; empty when none does.
template <class Test>
fs::path WalkUp(fs::path folder, const fs::path& top, Test test) {
    for (; !folder.empty() && folder != top; folder = folder.parent_path()) {
        if (test(folder))
            return folder;
    }
    return {};
}

std::string InstanceId(unsigned iVendor, unsigned iProduct, unsigned iInterface, const std::string& sKey) {
    char aIds[32];
    std::snprintf(aIds, sizeof(aIds), "USB\\VID_%04X&PID_%04X&MI_%02X\\", iVendor, iProduct, iInterface);
    return aIds + sKey;
}

} // namespace

bool ListComTtys(std::vector<int>& coms) {
    coms.clear();
    std::error_code error;
    fs::directory_iterator entry(TtyClassFolder(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (const std::optional<int> iCom = ComOfTty(entry->path().filename().native()))
            coms.push_back(*iCom);
    }
    if (error)
        coms.clear();
    std::sort(coms.begin(), coms.end());
    return !error;
}

std::optional<UsbInterface> FindUsbInterface(int iCom) {
    std::error_code error;
    const fs::path sysfs = fs::canonical(DeviceRoot() / "sys", error);
    if (error)
        return std::nullopt;
    const fs::path tty = ResolveTty(TtyClassFolder() / TtyPathOfCom(iCom).filename(), sysfs);
    const fs::path interface =
        WalkUp(tty, sysfs, [](const fs::path& folder) { return Has(folder, "bInterfaceNumber"); });
    const fs::path device = WalkUp(interface, sysfs, [](const fs::path& folder) {
        return Has(folder, "idVendor") && Has(folder, "idProduct");
    });
    if (device.empty())
        return std::nullopt;
    const auto iInterface = ReadHexAttribute(interface, "bInterfaceNumber", 2);
    const auto iVendor = ReadHexAttribute(device, "idVendor", 4);
    const auto iProduct = ReadHexAttribute(device, "idProduct", 4);
    if (!iInterface || !iVendor || !iProduct)
        return std::nullopt;
    auto sDescription = ReadAttribute(interface, "interface");
    if (!sDescription)
        sDescription = ReadAttribute(device, "product");
    return UsbInterface{InstanceId(*iVendor, *iProduct, *iInterface, device.filename().native()),
                        sDescription.value_or(kUnnamedPort)};
}
