// console-run [--screen] COMMAND LINE: runs a program in a console of its own and returns its exit status.
// Each line on standard input is a Ctrl-C for the program. With --screen the program writes on the console,
// and what is to be seen there at its end is printed; otherwise it has this program's output. Its standard
// input is empty.
#include <windows.h>

#include <cstdio>
#include <string>
#include <thread>

namespace {

constexpr const wchar_t* kScreenOption = L"--screen ";

HANDLE Inheritable(HANDLE handle) {
    SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    return handle;
}

HANDLE Open(const wchar_t* sName) {
    return Inheritable(CreateFileW(sName, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   nullptr, OPEN_EXISTING, 0, nullptr));
}

/// Returns this program's command line without its own name, which is not quoted or has no quotes inside.
std::wstring CommandLine() {
    const std::wstring whole = GetCommandLineW();
    const size_t iEnd = whole[0] == L'"' ? whole.find(L'"', 1) + 1 : whole.find(L' ');
    return whole.substr(whole.find_first_not_of(L' ', iEnd));
}

void PassOn(HANDLE hInput) {
    char c = 0;
    DWORD iCount = 0;
    while (ReadFile(hInput, &c, 1, &iCount, nullptr) && iCount == 1) {
        if (c == '\n')
            GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    }
}

/// Writes the lines on the screen that are not blank, in UTF-8.
void PrintScreen(HANDLE hScreen, HANDLE hOutput) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    GetConsoleScreenBufferInfo(hScreen, &info);
    for (SHORT y = 0; y <= info.dwCursorPosition.Y; ++y) {
        std::wstring line(static_cast<size_t>(info.dwSize.X), L' ');
        DWORD iCount = 0;
        ReadConsoleOutputCharacterW(hScreen, line.data(), static_cast<DWORD>(line.size()), COORD{0, y},
                                    &iCount);
        line.resize(line.find_last_not_of(L' ') + 1);
        std::string text(line.size() * 4 + 1, '\0');
        text.resize(static_cast<size_t>(
            WideCharToMultiByte(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), text.data(),
                                static_cast<int>(text.size()), nullptr, nullptr)));
        text += '\n';
        WriteFile(hOutput, text.data(), static_cast<DWORD>(text.size()), &iCount, nullptr);
    }
}

} // namespace

int main() {
    const HANDLE hInput = GetStdHandle(STD_INPUT_HANDLE);
    const HANDLE hOutput = Inheritable(GetStdHandle(STD_OUTPUT_HANDLE));
    FreeConsole();
    if (!AllocConsole())
        return 100;
    std::wstring line = CommandLine();
    const bool bScreen = line.starts_with(kScreenOption);
    if (bScreen)
        line.erase(0, std::wstring(kScreenOption).size());
    const HANDLE hScreen = Open(L"CONOUT$");
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = Open(L"NUL");
    startup.hStdOutput = startup.hStdError = bScreen ? hScreen : hOutput;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                        &process))
        return 101;
    SetConsoleCtrlHandler(nullptr, TRUE); // not before, because the program would inherit it
    std::thread(PassOn, hInput).detach();
    WaitForSingleObject(process.hProcess, INFINITE);
    if (bScreen)
        PrintScreen(hScreen, hOutput);
    DWORD iStatus = 0;
    GetExitCodeProcess(process.hProcess, &iStatus);
    ExitProcess(iStatus);
}
