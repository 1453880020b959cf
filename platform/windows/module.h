// The library's own module in the process.
#pragma once

#include <string>

#include "system/serial.h"

/// ThisModule returns the module that this code is part of.
HMODULE ThisModule();

/// ThisModuleFile returns the full path of its file; empty when it cannot be read.
std::wstring ThisModuleFile();

/// CallFromSystem is declared in a function of the module that the system calls (a timer procedure). While it
/// lives, releasing a ModulePin does not unload the module under the running function.
class CallFromSystem {
public:
    CallFromSystem();
    ~CallFromSystem();
    CallFromSystem(const CallFromSystem&) = delete;
    CallFromSystem& operator=(const CallFromSystem&) = delete;
};
