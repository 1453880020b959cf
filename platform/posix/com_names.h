// The fixed names of the COM ports: which tty is COMn, and where to find it.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

constexpr int kComPortsPerKind = 50;
/// COM numbers run from 1 to kLastComPort.
constexpr int kLastComPort = 2 * kComPortsPerKind;

/// DeviceRoot returns the folder in which devices are looked up: QUILLET_DEVICE_ROOT, read at every call, or
/// "/" where that is unset or empty.
std::filesystem::path DeviceRoot();

/// TtyPathOfCom returns the path of the tty that is COM number `iCom`, whether it exists or not: ttyUSB0 to
/// 49 are COM1 to 50, ttyACM0 to 49 are COM51 to 100. `iCom` must be 1 to kLastComPort.
std::filesystem::path TtyPathOfCom(int iCom);

/// ComOfTty returns the COM number of a tty's plain name, or nullopt if the tty is not a COM port. The number
/// in the name is decimal, below 50 and without leading zeros.
std::optional<int> ComOfTty(std::string_view sTtyName);

/// IsModemCom returns whether a port is a ttyACM, which belong to the class of modems, or a ttyUSB.
constexpr bool IsModemCom(int iCom) {
    return iCom > kComPortsPerKind;
}
