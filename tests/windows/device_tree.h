// Wine's device tree, which is registry content: devices that come and go while programs run.
#pragma once

#include <string>

/// A device of the USB bus. Empty texts are left out.
struct TreeDevice {
    std::string sInstance; // such as "VID_05C6&PID_3197&MI_01\6&2A1B3C4D&0&0001"
    bool bModem = false;   // of class "Modem", else "Ports"
    std::string sPortName;
    std::string sDescription = "A device";
    bool bNumberAsPortName = false; // the port's name is no text
};

/// AddDevice plugs a device in, RemoveDevice unplugs it, RemoveDevices all.
void AddDevice(const TreeDevice& device);
void RemoveDevice(const std::string& sInstance);
void RemoveDevices();

/// AddPhone plugs in the handset's two ports: COM5, a modem, and COM6, on which it answers; RemovePhone
/// unplugs both.
void AddPhone();
void RemovePhone();

/// SetSerialPorts makes these the names of the machine's serial ports, and no others.
void SetSerialPorts(const std::string& sFirst, const std::string& sSecond);
