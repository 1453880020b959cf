// Wine's device tree, which is part of the registry. Devices can be added and removed while programs run.
#pragma once

#include <string>

/// A device on the USB bus. Empty texts are not stored.
struct TreeDevice {
    std::string sInstance; // such as "VID_05C6&PID_3197&MI_01\6&2A1B3C4D&0&0001"
    bool bModem = false;   // class "Modem", else "Ports"
    std::string sPortName;
    std::string sDescription = "A device";
    bool bNumberAsPortName = false; // store a number as the port's name
};

/// AddDevice plugs in a device, RemoveDevice unplugs it, RemoveDevices unplugs all devices.
void AddDevice(const TreeDevice& device);
void RemoveDevice(const std::string& sInstance);
void RemoveDevices();

/// AddPhone plugs in the handset's two ports: COM5, a modem, and COM6, the diagnostic port. RemovePhone
/// unplugs both.
void AddPhone();
void RemovePhone();

/// Sets the list of the machine's serial ports to these names.
void SetSerialPorts(const std::string& sFirst, const std::string& sSecond);
