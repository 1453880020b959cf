// Keeping the library loaded while it has something running, and detecting the end of the process.
#pragma once

/// ModulePin keeps the system from unloading the library. Every thread or timer of the library holds one, so
/// that unloading never waits for a thread. On Windows, where such a wait would deadlock, a pin is a
/// reference to the module. A pin released inside a timer call is kept until the next call into the library
/// (ReleaseUnneededPins), because the library cannot unload the code that it is running. On Linux pins do
/// nothing: unloading runs the library's clean-up, which may wait for threads. Any thread.
class ModulePin {
public:
    ModulePin();
    ~ModulePin();
    ModulePin(const ModulePin&) = delete;
    ModulePin& operator=(const ModulePin&) = delete;

    /// KeepForGood is for a thread that could not be ended: the library then stays loaded.
    void KeepForGood() { m_bForGood = true; }

private:
    bool m_bForGood = false;
};

/// ReleaseUnneededPins releases the kept pins. Only for functions that users call: they hold the library
/// themselves.
void ReleaseUnneededPins();

/// ProcessIsEnding returns whether the system has already ended all other threads. Locks that they held stay
/// locked, so the clean-up must not wait for them. Always false on Linux, where threads live to the end.
bool ProcessIsEnding();
