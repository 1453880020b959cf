// Keeping the library in the process while something of it still runs, and knowing that the process ends.
#pragma once

/// ModulePin keeps the system from unloading the library for as long as it lives: whatever has a thread or a
/// timer in the library holds one, so that unloading never has to wait for a thread. On Windows, where
/// waiting while a library is being unloaded is a deadlock, it is a reference to the module; one that is
/// given up inside a timer's call is kept until the next caller of the library (ReleaseUnneededPins) is
/// there, since the library cannot unload itself from under its own code. On Linux it is nothing: unloading
/// there runs the library's clean-up, which may wait. Any thread.
class ModulePin {
public:
    ModulePin();
    ~ModulePin();
    ModulePin(const ModulePin&) = delete;
    ModulePin& operator=(const ModulePin&) = delete;

    /// KeepForGood is for a thread that could not be ended: the library stays in the process.
    void KeepForGood() { m_bForGood = true; }

private:
    bool m_bForGood = false;
};

/// ReleaseUnneededPins gives back what was kept. Only for functions that the library's user calls, which can
/// do so only while holding the library itself.
void ReleaseUnneededPins();

/// ProcessIsEnding tells the library's clean-up that the system has already ended all other threads: what
/// they held stays held, and nobody may wait for them. Always false on Linux, where threads live to the last.
bool ProcessIsEnding();
