// A substitute for / when the client looks for devices.
#include "handset/device_root.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <system_error>

#include "handset/handset.h"

namespace handset {
namespace {

namespace fs = std::filesystem;

constexpr char kController[] = "sys/devices/pci0000:00/0000:00:14.0";
constexpr char kSerialController[] = "sys/devices/platform/serial8250";
constexpr char kNowhere[] = "unplugged";

std::string Hex(unsigned value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*x", digits, value);
    return text;
}

void WriteLine(const fs::path& file, const std::string& line) {
    std::ofstream(file) << line << '\n';
}

/// Makes or replaces a link in one step.
void SetLink(const fs::path& link, const fs::path& target) {
    const fs::path fresh = link.string() + ".new";
    std::error_code ignored;
    fs::remove(fresh, ignored);
    fs::create_symlink(target, fresh);
    fs::rename(fresh, link);
}

void SetIds(const fs::path& device, unsigned vendor, unsigned product) {
    WriteLine(device / "idVendor", Hex(vendor, 4));
    WriteLine(device / "idProduct", Hex(product, 4));
}

/// The folder of a USB device below its controller: "1-1.2" lies in usb1/1-1/1-1.2.
fs::path UsbFolder(const std::string& busName) {
    fs::path folder = "usb" + busName.substr(0, busName.find('-'));
    for (size_t dot = busName.find('.'); dot != std::string::npos; dot = busName.find('.', dot + 1))
        folder /= busName.substr(0, dot);
    return folder / busName;
}

bool IsModem(const std::string& tty) {
    return tty.starts_with("ttyACM");
}

/// The folder of a tty in that of its interface. A serial adapter has a port folder in between.
fs::path TtyFolder(const std::string& tty) {
    return IsModem(tty) ? fs::path("tty") / tty : fs::path(tty) / "tty" / tty;
}

/// Removes hubs that no longer have a device.
void RemoveEmptyHubs(fs::path folder, const fs::path& controller) {
    std::error_code error;
    for (; folder != controller && folder.has_parent_path(); folder = folder.parent_path()) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
            if (entry.is_directory(error))
                return;
        fs::remove_all(folder, error);
    }
}

} // namespace

/// The entries of one handset. They follow the handset until Retire.
class DeviceRoot::Plugged {
public:
    Plugged(fs::path root, UsbIdentity identity, std::vector<UsbInterface> interfaces)
        : m_root(std::move(root)), m_identity(std::move(identity)), m_interfaces(std::move(interfaces)) {}

    /// Updates the entries: those of its tty, or none while the handset is unplugged. For any thread.
    void Show(const Handset& handset) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_isRetired)
            return;
        const std::string ttyPath = handset.TtyPath();
        Remove();
        if (!ttyPath.empty())
            Make(ttyPath);
    }

    void Retire() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isRetired = true;
        Remove();
    }

private:
    fs::path Device() const { return fs::path(kController) / UsbFolder(m_identity.busName); }

    fs::path Tty(const UsbInterface& interface) const {
        const std::string name = m_identity.busName + ":1." + std::to_string(interface.number);
        return Device() / name / TtyFolder(interface.tty);
    }

    void MakeHubs() {
        fs::create_directories(m_root / Device());
        for (fs::path hub = Device().parent_path(); hub != fs::path(kController); hub = hub.parent_path())
            SetIds(m_root / hub, 0x1D6B, 0x0002);
    }

    void Make(const std::string& ttyPath) {
        MakeHubs();
        SetIds(m_root / Device(), m_identity.vendor, m_identity.product);
        for (const UsbInterface& interface : m_interfaces) {
            const fs::path folder =
                m_root / Device() / (m_identity.busName + ":1." + std::to_string(interface.number));
            fs::create_directories(m_root / Tty(interface));
            WriteLine(folder / "bInterfaceNumber", Hex(interface.number, 2));
            SetLink(m_root / "dev" / interface.tty, interface.hasLine ? ttyPath : kNowhere);
        }
        for (const UsbInterface& interface : m_interfaces)
            SetLink(m_root / "sys/class/tty" / interface.tty, fs::path("../../..") / Tty(interface));
    }

    void Remove() {
        std::error_code error;
        for (const UsbInterface& interface : m_interfaces)
            fs::remove(m_root / "sys/class/tty" / interface.tty, error);
        for (const UsbInterface& interface : m_interfaces)
            fs::remove(m_root / "dev" / interface.tty, error);
        fs::remove_all(m_root / Device(), error);
        RemoveEmptyHubs(m_root / Device().parent_path(), m_root / kController);
    }

    const fs::path m_root;
    const UsbIdentity m_identity;
    const std::vector<UsbInterface> m_interfaces;
    std::mutex m_mutex;
    bool m_isRetired = false;
};

DeviceRoot::DeviceRoot(std::string dir) : m_dir(std::move(dir)), m_isTemporary(m_dir.empty()) {
    if (m_isTemporary) {
        std::string pattern = (fs::temp_directory_path() / "device-root-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw fs::filesystem_error("device root", pattern,
                                       std::error_code(errno, std::generic_category()));
        m_dir = pattern;
    }
    fs::create_directories(fs::path(m_dir) / "sys/class/tty");
    fs::create_directories(fs::path(m_dir) / "dev");
}

DeviceRoot::~DeviceRoot() {
    Clear();
    std::error_code ignored;
    if (m_isTemporary)
        fs::remove_all(m_dir, ignored);
}

void DeviceRoot::Plug(Handset& handset, UsbIdentity identity, std::vector<UsbInterface> interfaces) {
    if (interfaces.empty())
        interfaces = {{.tty = "ttyACM0", .number = 0, .hasLine = false},
                      {.tty = "ttyUSB0", .number = 1, .hasLine = true}};
    const auto plugged = std::make_shared<Plugged>(m_dir, std::move(identity), std::move(interfaces));
    m_plugged.push_back(plugged);
    const auto show = [weak = std::weak_ptr(plugged), &handset] {
        if (const auto shown = weak.lock())
            shown->Show(handset);
    };
    handset.OnPlugChange(show);
    show();
}

void DeviceRoot::AddPlainTty(const std::string& tty, const std::string& target) {
    const fs::path folder = fs::path(kSerialController) / "tty" / tty;
    fs::create_directories(m_dir / folder);
    SetLink(fs::path(m_dir) / "dev" / tty, target.empty() ? kNowhere : target);
    SetLink(fs::path(m_dir) / "sys/class/tty" / tty, "../../.." / folder);
    m_plainTtys.push_back(tty);
}

void DeviceRoot::Clear() {
    for (const auto& plugged : m_plugged)
        plugged->Retire();
    m_plugged.clear();
    std::error_code error;
    for (const std::string& tty : m_plainTtys) {
        fs::remove(fs::path(m_dir) / "sys/class/tty" / tty, error);
        fs::remove(fs::path(m_dir) / "dev" / tty, error);
        fs::remove_all(fs::path(m_dir) / kSerialController / "tty" / tty, error);
    }
    m_plainTtys.clear();
}

} // namespace handset
