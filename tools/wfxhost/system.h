// What wfxhost needs of the operating system; one source file per system holds it (system_posix.cpp,
// system_windows.cpp), and the build takes one of them.
#pragma once

#include <memory>
#include <string>

namespace tools::wfxhost {

/// ProgramFolder gives the folder in which this program's file lies, without a separator at its end.
std::string ProgramFolder();

/// DefaultPluginName gives the file name of the plug-in that fits this program.
std::string DefaultPluginName();

/// OpenLibrary loads a library file into the process. Gives null on failure, with the system's words for it
/// in `reason`.
void* OpenLibrary(const std::string& path, std::string& reason);
/// FindSymbol gives the address of an exported function, null when the library has none of that name.
void* FindSymbol(void* library, const char* name);
void CloseLibrary(void* library);

/// ClearLastError and LastErrorSaysNoMoreFiles: the calling thread's last error, by which a listing tells an
/// empty folder ("no more files") from one that could not be read.
void ClearLastError();
bool LastErrorSaysNoMoreFiles();

/// LocalNameKey gives a text that two names have in common when they would be the same file here; empty when
/// the system can hold no file of that name.
std::string LocalNameKey(const std::string& name);

/// A simulated handset that runs as a child process. It ends with the object.
class SimulatedHandset {
public:
    virtual ~SimulatedHandset() = default;
};

/// StartSimulatedHandset starts the program `simulated-handset` that lies beside this one, with `deviceRoot`
/// (a folder that exists) as its device root, waits until it answers, and has this process look for devices
/// there from then on. Gives null on failure, with the reason in words in `reason`.
std::unique_ptr<SimulatedHandset> StartSimulatedHandset(const std::string& deviceRoot, std::string& reason);

} // namespace tools::wfxhost
