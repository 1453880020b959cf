// wfxhost on Windows.
#include <windows.h>

#include "wfxhost/system.h"

namespace wfxhost {

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

int TerminalWidth() {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info))
        return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

std::unique_ptr<SimulatedHandset> StartSimulatedHandset(const std::string&, std::string& reason) {
    reason = "the simulated handset does not run on Windows";
    return nullptr;
}

} // namespace wfxhost
