// What wfxhost needs of the operating system. There is one source file per system (system_posix.cpp,
// system_windows.cpp), and the build takes one of them.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace tools::wfxhost {

/// ProgramFolder returns the folder in which this program's file lies, without a separator at its end.
std::string ProgramFolder();

/// DefaultPluginName returns the file name of the plug-in that fits this program.
std::string DefaultPluginName();

/// OpenLibrary loads a library file into the process. Returns null on failure, with the system's words for it
/// in `reason`.
void* OpenLibrary(const std::string& path, std::string& reason);
/// FindSymbol returns the address of an exported function, null when the library has none of that name.
void* FindSymbol(void* library, const char* name);
void CloseLibrary(void* library);

/// ClearLastError and LastErrorSaysNoMoreFiles work on the calling thread's last error, in which a plug-in
/// reports that a folder is empty ("no more files") and not just unreadable.
void ClearLastError();
bool LastErrorSaysNoMoreFiles();

/// LocalNameKey returns the same text for two names that would be the same file on this system; an empty one
/// when the system can hold no file of that name.
std::string LocalNameKey(const std::string& name);

/// ReadInput reads up to `room` bytes of standard input, which are bytes and no text, and waits for at least
/// one. Returns their number, 0 at the end, -1 when reading fails; -1 also after Ctrl-C, under an
/// InterruptGuard.
long ReadInput(char* bytes, size_t room);

/// MakeOutputBinary has standard output written as bytes, on systems that would change line feeds in text.
void MakeOutputBinary();

/// A simulated handset that runs as a child process. It ends with the object.
class SimulatedHandset {
public:
    virtual ~SimulatedHandset() = default;
};

/// StartSimulatedHandset starts the program `simulated-handset` that lies beside this one, with `deviceRoot`
/// (a folder that exists) as its device root, waits until it answers, and has this process look for devices
/// there from then on. Returns null on failure, with the reason in words in `reason`.
std::unique_ptr<SimulatedHandset> StartSimulatedHandset(const std::string& deviceRoot, std::string& reason);

} // namespace tools::wfxhost
