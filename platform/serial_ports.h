// The machine's list of serial ports.
#pragma once

#include <string>
#include <vector>

/// ListSerialPorts fills `names` with the names of all serial ports ("COM3"): on Windows in the order of the
/// registry key HARDWARE\DEVICEMAP\SERIALCOMM, on Linux in COM order. False, with `names` empty, when the
/// list cannot be read.
bool ListSerialPorts(std::vector<std::string>& names);
