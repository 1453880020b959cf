// wfxhost on Windows.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "common/interrupt.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {

std::string ProgramFolder() {
    char path[4096] = {};
    GetModuleFileNameA(nullptr, path, sizeof path - 1);
    const std::string whole = path;
    return whole.substr(0, whole.find_last_of('\\'));
}

std::string DefaultPluginName() {
    return sizeof(void*) == 8 ? "quillet.wfx64" : "quillet.wfx";
}

void* OpenLibrary(const std::string& path, std::string& reason) {
    HMODULE library = LoadLibraryA(path.c_str());
    if (!library)
        reason = "Windows error " + std::to_string(GetLastError());
    return library;
}

void* FindSymbol(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void CloseLibrary(void* library) {
    FreeLibrary(static_cast<HMODULE>(library));
}

void ClearLastError() {
    SetLastError(0);
}

bool LastErrorSaysNoMoreFiles() {
    return GetLastError() == ERROR_NO_MORE_FILES;
}

std::string LocalNameKey(const std::string& name) {
    const auto isForbidden = [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || std::strchr("<>:\"/\\|?*", c);
    };
    if (std::ranges::any_of(name, isForbidden) || name.ends_with('.') || name.ends_with(' '))
        return "";
    std::string key = name;
    CharUpperBuffA(key.data(), static_cast<DWORD>(key.size()));
    // Devices have these names, whatever the ending.
    const std::string stem = key.substr(0, key.find('.'));
    const bool isNumbered = stem.size() == 4 && stem[3] >= '0' && stem[3] <= '9';
    const std::string lead = isNumbered ? stem.substr(0, 3) : stem;
    const bool isDevice = isNumbered ? lead == "COM" || lead == "LPT"
                                     : lead == "CON" || lead == "PRN" || lead == "AUX" || lead == "NUL";
    return isDevice ? "" : key;
}

long ReadInput(char* bytes, size_t room) {
    _setmode(_fileno(stdin), _O_BINARY);
    const size_t count = std::fread(bytes, 1, room, stdin);
    return Interrupted() || std::ferror(stdin) ? -1 : static_cast<long>(count);
}

void MakeOutputBinary() {
    _setmode(_fileno(stdout), _O_BINARY);
}

std::unique_ptr<SimulatedHandset> StartSimulatedHandset(const std::string&, std::string& reason) {
    reason = "the simulated handset does not run on Windows";
    return nullptr;
}

} // namespace tools::wfxhost
