// A substitute for / when the client looks for devices: a folder with sys/class/tty and dev, and the ttys of
// simulated handsets in them.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace handset {

class Handset;

/// The USB identity of a handset.
struct UsbIdentity {
    unsigned vendor = 0x05C6;
    unsigned product = 0x3197;
    std::string busName = "1-1.2"; // the sysfs name of the USB device, one per handset
};

/// One interface of the composite device: the name of its tty and the number of the interface.
struct UsbInterface {
    std::string tty; // "ttyUSB0", "ttyACM0"
    unsigned number = 0;
    bool hasLine = false; // dev/<tty> links to the handset's pseudo-terminal, otherwise to nothing
};

/// For one thread at a time; handsets may unplug and replug on any thread. Root and handsets may be destroyed
/// in either order. The sys/class/tty entries of a handset appear last and disappear first, so that a look-up
/// finds a complete device or none.
class DeviceRoot {
public:
    /// Makes the folder `dir` with sys/class/tty and dev; "": a temporary folder, which the destructor
    /// removes. Other content of `dir` is kept. Throws std::filesystem::filesystem_error on failure.
    explicit DeviceRoot(std::string dir = "");
    /// Calls Clear.
    ~DeviceRoot();
    DeviceRoot(const DeviceRoot&) = delete;
    DeviceRoot& operator=(const DeviceRoot&) = delete;

    const std::string& Path() const { return m_dir; }

    /// Plugs a handset in: makes its sysfs entries and the links in dev, and from then on follows its Unplug
    /// and Replug. The default interfaces are 0: ttyACM0 (modem, COM51) and 1: ttyUSB0 (diagnostics, COM1),
    /// which has the line.
    void Plug(Handset& handset, UsbIdentity identity = {}, std::vector<UsbInterface> interfaces = {});
    /// Adds the tty of a plain serial port, not a USB device. It links to `target` ("": to nothing).
    void AddPlainTty(const std::string& tty, const std::string& target);
    /// Removes every entry that this object made, and stops following the handsets.
    void Clear();

private:
    class Plugged;

    std::string m_dir;
    bool m_isTemporary = false;
    std::vector<std::shared_ptr<Plugged>> m_plugged;
    std::vector<std::string> m_plainTtys;
};

} // namespace handset
