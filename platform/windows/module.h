// The library's own module in the process.
#pragma once

#include <string>

#include "system/serial.h"

/// ThisModule returns the module that this code is part of.
HMODULE ThisModule();

/// ThisModuleFile returns the full path of its file; empty when the system does not tell.
std::wstring ThisModuleFile();

/// CallFromSystem stands in a function of the module that the system itself calls (a timer procedure). While
/// it lives, no ModulePin that is given up unloads the module under the running function.
class CallFromSystem {
public:
    CallFromSystem();
    ~CallFromSystem();
    CallFromSystem(const CallFromSystem&) = delete;
    CallFromSystem& operator=(const CallFromSystem&) = delete;
};
