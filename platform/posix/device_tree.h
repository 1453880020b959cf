// The ttys that are COM ports, and the USB devices that they belong to.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// ListComTtys fills `coms` with the COM numbers of the ttys in sys/class/tty, in ascending order. False,
/// with `coms` empty, when that folder cannot be read. May throw std::bad_alloc.
bool ListComTtys(std::vector<int>& coms);

/// The USB interface of a tty, as the device tree describes it.
struct UsbInterface {
    std::string sInstanceId;  // "USB\VID_vvvv&PID_pppp&MI_ii\KEY", digits in upper case
    std::string sDescription; // text of the interface or else the device; never empty
};

/// FindUsbInterface walks up from the sysfs folder of COM number `iCom` to the first folder with an interface
/// number, and on to the first with vendor and product. It never leaves sysfs. Nullopt when there are no such
/// folders above the tty or their attributes are not hexadecimal numbers. May throw std::bad_alloc.
std::optional<UsbInterface> FindUsbInterface(int iCom);
