// A folder that stands for / when the client looks for devices: sys/class/tty and dev, with the ttys of
// simulated handsets in them.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace handset {

class Handset;

/// The USB identity that a handset shows.
struct UsbIdentity {
    unsigned vendor = 0x05C6;
    unsigned product = 0x3197;
    std::string busName = "1-1.2"; // the sysfs name of the USB device, one per handset
};

/// One interface of the composite device: the name of its tty and the number of the interface.
struct UsbInterface {
    std::string tty; // "ttyUSB0", "ttyACM0"
    unsigned number = 0;
    bool hasLine = false; // dev/<tty> leads to the handset's pseudo-terminal (else to nothing)
};

/// Belongs to one thread at a time; the handsets' own coming and going may be on any. Root and handsets may
/// be destroyed in either order. The handset's interface folder (sys/class/tty entry included) appears as a
/// whole when it is plugged in and goes in the reverse order, so that a look-up finds a device with all that
/// belongs to it or none.
class DeviceRoot {
public:
    /// Makes DIR (a new temporary folder when empty; that one is removed at the end) with sys/class/tty and
    /// dev. What others have in DIR stays. Throws std::filesystem::filesystem_error when that cannot be done.
    explicit DeviceRoot(std::string dir = "");
    /// Clear.
    ~DeviceRoot();
    DeviceRoot(const DeviceRoot&) = delete;
    DeviceRoot& operator=(const DeviceRoot&) = delete;

    const std::string& Path() const { return m_dir; }

    /// Plugs a handset in: makes its sysfs entries and the links under dev, and follows its Unplug and
    /// Replug from then on. The usual interfaces are ttyACM0 as number 0 (modem, COM51), ttyUSB0 as
    /// number 1 (diagnostics, COM1: the one with the line).
    void Plug(Handset& handset, UsbIdentity identity = {}, std::vector<UsbInterface> interfaces = {});
    /// Adds a tty that is no USB device (a plain serial port) and leads to `target` ("" : to nothing).
    void AddPlainTty(const std::string& tty, const std::string& target);
    /// Removes every entry that this object made; handsets are followed no more.
    void Clear();

private:
    class Plugged;

    std::string m_dir;
    bool m_isTemporary = false;
    std::vector<std::shared_ptr<Plugged>> m_plugged;
    std::vector<std::string> m_plainTtys;
};

} // namespace handset
