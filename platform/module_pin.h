// Keeping the library loaded while it has something running, and detecting the end of the process.
#pragma once

/// ModulePin stands for something of the library that runs by itself: a thread or a timer. Any thread.
///
/// On Windows it keeps the system from unloading the library, because unloading cannot wait for a thread
/// there: a pin is a reference to the module. A pin released inside a timer call is kept until the next call
/// into the library (ReleaseUnneededPins), because the library cannot unload the code that it is running.
///
/// On Linux it holds nothing back. When the library is unloaded, what the remaining pins stand for is ended
/// after the library's own objects were destroyed. Those pins belong to objects that a program forgot. When
/// the process ends, such objects are left alone.
class ModulePin {
public:
    /// EndFunction ends what a pin stands for and waits until it has ended. It is called at most once, on the
    /// thread that unloads the library; nothing else of the library runs by then except what pins stand for.
    using EndFunction = void (*)(void* pOwner);

    /// A null pfnEnd: there is nothing to end.
    explicit ModulePin(void* pOwner = nullptr, EndFunction pfnEnd = nullptr);
    ~ModulePin();
    ModulePin(const ModulePin&) = delete;
    ModulePin& operator=(const ModulePin&) = delete;

    /// KeepForGood is for a thread that could not be ended: the library then stays loaded (on Windows).
    void KeepForGood() { m_bForGood = true; }

private:
    friend class LivePins;

    void* const m_pOwner;
    const EndFunction m_pfnEnd;
    ModulePin* m_pNext = nullptr; // in the list of live pins
    bool m_bForGood = false;
};

/// ReleaseUnneededPins releases the kept pins. Only for functions that users call: they hold the library
/// themselves.
void ReleaseUnneededPins();

/// ProcessIsEnding returns whether the system has already ended all other threads. Locks that they held stay
/// locked, so the clean-up must not wait for them. Always false on Linux, where threads live to the end.
bool ProcessIsEnding();
