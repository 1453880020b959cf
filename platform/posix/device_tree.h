// The ttys of the machine that are COM ports, and the USB devices that they belong to.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// ListComTtys fills `coms` with the COM numbers that sys/class/tty has a tty for, in rising order. False,
/// with `coms` empty, when that folder cannot be read. May throw std::bad_alloc.
bool ListComTtys(std::vector<int>& coms);

/// What the device tree tells of the USB interface behind a tty.
struct UsbInterface {
    std::string sInstanceId;  // "USB\VID_vvvv&PID_pppp&MI_ii\KEY", digits in upper case
    std::string sDescription; // the interface's or the device's own text; never empty
};

/// FindUsbInterface walks up from the sysfs folder of COM number `iCom` to the first folder with an
/// interface number and on to the first with vendor and product, never leaving sysfs. Nothing for a tty
/// that has no such folders above it or whose attributes are not hexadecimal numbers. May throw
/// std::bad_alloc.
std::optional<UsbInterface> FindUsbInterface(int iCom);
