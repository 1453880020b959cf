// wfxhost on Windows.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "common/interrupt.h"
#include "common/local_path.h"
#include "common/text.h"
#include "wfxhost/system.h"

namespace tools::wfxhost {

namespace fs = std::filesystem;

std::string ProgramFolder() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return fs::path(path).parent_path().string();
}

std::string DefaultPluginName() {
    return sizeof(void*) == 8 ? "quillet.wfx64" : "quillet.wfx";
}

void* OpenLibrary(const std::string& path, std::string& reason) {
    // A name without a folder would be looked for among the system's libraries.
    HMODULE library = LoadLibraryW(fs::absolute(LocalPath(path)).c_str());
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
    if (!IsUtf8(name) || std::ranges::any_of(name, isForbidden) || name.ends_with('.') || name.ends_with(' '))
        return "";
    std::wstring upper = LocalPath(name).wstring();
    CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
    std::string key = fs::path(upper).string();
    // Devices have these names, whatever the ending.
    const std::string stem = key.substr(0, key.find('.'));
    const bool isNumbered = stem.size() == 4 && stem[3] >= '0' && stem[3] <= '9';
    const std::string lead = isNumbered ? stem.substr(0, 3) : stem;
    const bool isDevice = isNumbered ? lead == "COM" || lead == "LPT"
                                     : lead == "CON" || lead == "PRN" || lead == "AUX" || lead == "NUL";
    return isDevice ? "" : key;
}

long ReadInput(char* bytes, size_t room) {
    constexpr DWORD kLookAgain_ms = 50;
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    const bool isPipe = GetFileType(input) == FILE_TYPE_PIPE;
    DWORD count = 0;
    // Ctrl-C ends the wait of a read from a console, but not from a pipe.
    while (isPipe && !Interrupted() && PeekNamedPipe(input, nullptr, 0, nullptr, &count, nullptr) &&
           count == 0)
        Sleep(kLookAgain_ms);
    if (Interrupted())
        return -1;
    SetLastError(0);
    const bool isRead = ReadFile(input, bytes, static_cast<DWORD>(room), &count, nullptr) != 0;
    const DWORD error = GetLastError();
    const bool isEnd = !isRead && (error == ERROR_BROKEN_PIPE || error == ERROR_HANDLE_EOF);
    // A read that Ctrl-C ended succeeds without bytes.
    const bool isFailed = (!isRead && !isEnd) || (count == 0 && error == ERROR_OPERATION_ABORTED);
    return Interrupted() || isFailed ? -1 : static_cast<long>(count);
}

void MakeOutputBinary() {
    _setmode(_fileno(stdout), _O_BINARY);
}

std::unique_ptr<SimulatedHandset> StartSimulatedHandset(const std::string&, std::string& reason) {
    reason = "the simulated handset does not run on Windows";
    return nullptr;
}

} // namespace tools::wfxhost
