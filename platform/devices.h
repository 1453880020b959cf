// The devices of a set-up class that are present in the machine's device tree.
#pragma once

#include <optional>
#include <string>
#include <vector>

/// A present device. A text that the system does not have, or not as plain text, is nullopt.
struct PresentDevice {
    std::optional<std::string> sPortName;    // such as "COM6"
    std::optional<std::string> sDescription; // for people
    std::optional<std::string> sInstanceId;  // such as "USB\VID_05C6&PID_3197&MI_01\1-1.2"
};

/// ListPresentDevices fills `devices` with the present devices of the named class ("Modem", "Ports") in the
/// system's order. On Linux a tty of a USB interface is a "Modem" if it is a ttyACM and a "Ports" if it is a
/// ttyUSB, in COM order. Devices without a readable hardware key are omitted. False, with `devices` empty,
/// when the device tree cannot be read or the class does not exist; on Windows the thread's last error is 120
/// when the system lacks a function.
bool ListPresentDevices(const char* sClassName, std::vector<PresentDevice>& devices);
