// The operating system, as far as wfxhost needs it. There is one source file per system (system_posix.cpp,
// system_windows.cpp); the build compiles one of them.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace tools::wfxhost {

/// Returns the folder of this program's file, without a separator at the end.
std::string ProgramFolder();

/// Returns the file name of the plug-in for this system.
std::string DefaultPluginName();

/// Loads a library file into the process. Returns null on failure, with the system's explanation in `reason`.
void* OpenLibrary(const std::string& path, std::string& reason);
/// Returns the address of an exported function, null when the library has none with that name.
void* FindSymbol(void* library, const char* name);
void CloseLibrary(void* library);

/// ClearLastError and LastErrorSaysNoMoreFiles use the calling thread's last error, with which a plug-in
/// reports that a folder is empty ("no more files") and not just unreadable.
void ClearLastError();
bool LastErrorSaysNoMoreFiles();

/// Returns the same key for names that denote the same file on this system, and an empty key for a name that
/// the system cannot store.
std::string LocalNameKey(const std::string& name);

/// Reads up to `room` bytes of standard input in binary mode, and waits for at least one. Returns their
/// number, 0 at the end, -1 when reading fails. Under an InterruptGuard, returns -1 after Ctrl-C.
long ReadInput(char* bytes, size_t room);

/// Puts standard output into binary mode on systems that would otherwise change line feeds.
void MakeOutputBinary();

/// A simulated handset that runs as a child process. The destructor ends it.
class SimulatedHandset {
public:
    virtual ~SimulatedHandset() = default;
};

/// Starts the program `simulated-handset` from the folder of this program, with `deviceRoot` (an existing
/// folder) as its device root. Waits until it is ready, and makes this process look for devices there from
/// then on. Returns null on failure, with the reason in words in `reason`.
std::unique_ptr<SimulatedHandset> StartSimulatedHandset(const std::string& deviceRoot, std::string& reason);

} // namespace tools::wfxhost
