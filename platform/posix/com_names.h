// The fixed names of the COM ports: which tty is COMn, and where it is found.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

constexpr int kComPortsPerKind = 50;
/// COM numbers run from 1 to this one.
constexpr int kLastComPort = 2 * kComPortsPerKind;

/// DeviceRoot is the folder that stands for "/" in look-ups of devices: QUILLET_DEVICE_ROOT, read at every
/// call, or "/" where that is unset or empty.
std::filesystem::path DeviceRoot();

/// TtyPathOfCom returns the path of the tty that is COM number `iCom`, whether it exists or not: ttyUSB0 to
/// 49 are COM1 to 50, ttyACM0 to 49 are COM51 to 100. `iCom` must be from 1 to kLastComPort.
std::filesystem::path TtyPathOfCom(int iCom);

/// ComOfTty returns the COM number of a tty's plain name, or nothing for a tty that is no COM port: the
/// number is decimal, below 50 and has no leading zero.
std::optional<int> ComOfTty(std::string_view sTtyName);

/// IsModemCom tells the ttyACM ports, which belong to the class of modems, from the ttyUSB ones.
constexpr bool IsModemCom(int iCom) {
    return iCom > kComPortsPerKind;
}
