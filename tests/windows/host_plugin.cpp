#include "tests/windows/host_plugin.h"

#include <mutex>

#include "tests/windows/checks.h"

namespace {

using ProgressProc = int(__stdcall*)(int, char*, char*, int);
using LogProc = void(__stdcall*)(int, int, char*);
using RequestProc = BOOL(__stdcall*)(int, int, char*, char*, char*, int);

HostedPlugin* g_pPlugin = nullptr;
std::mutex g_logLock;
std::string g_sLog;

int __stdcall OnProgress(int, char*, char*, int iPercent) {
    return g_pPlugin && g_pPlugin->onProgress ? g_pPlugin->onProgress(iPercent) : 0;
}

void __stdcall OnLog(int, int iType, char* sText) {
    const std::lock_guard lock(g_logLock);
    if (!g_sLog.empty())
        g_sLog += "; ";
    g_sLog += std::to_string(iType) + " " + sText;
}

BOOL __stdcall OnRequest(int, int, char*, char*, char*, int) {
    Fail(__FILE__, __LINE__, "the plug-in asked the host to show something");
    return FALSE;
}

/// A text in a buffer of the host's size, which the plug-in may change.
class HostText {
public:
    explicit HostText(const std::string& sText) : m_bytes(sText.begin(), sText.end()) {
        m_bytes.resize(sText.size() + MAX_PATH);
    }
    operator char*() { return m_bytes.data(); }

private:
    std::vector<char> m_bytes;
};

} // namespace

HostedPlugin::HostedPlugin(const std::string& sFile) : m_hLibrary(LoadLibraryA(sFile.c_str())) {
    EXPECT(m_hLibrary != nullptr);
    g_pPlugin = this;
}

HostedPlugin::~HostedPlugin() {
    g_pPlugin = nullptr;
    FreeLibrary(m_hLibrary);
}

template <class Function>
Function* HostedPlugin::Find(const char* sName) const {
    void* const pFunction = reinterpret_cast<void*>(GetProcAddress(m_hLibrary, sName));
    if (!pFunction) {
        Fail(__FILE__, __LINE__, std::string("no function ") + sName);
        ExitProcess(9);
    }
    return reinterpret_cast<Function*>(pFunction);
}

void HostedPlugin::Start() {
    using Function = int __stdcall(int, ProgressProc, LogProc, RequestProc);
    EXPECT_EQ(Find<Function>("FsInit")(3, OnProgress, OnLog, OnRequest), 0);
}

std::string HostedPlugin::List(const std::string& sPath) {
    using First = HANDLE __stdcall(char*, WIN32_FIND_DATAA*);
    using Next = BOOL __stdcall(HANDLE, WIN32_FIND_DATAA*);
    using Close = int __stdcall(HANDLE);
    WIN32_FIND_DATAA data;
    SetLastError(0);
    const HANDLE hListing = Find<First>("FsFindFirst")(HostText(sPath), &data);
    if (hListing == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_NO_MORE_FILES ? "(empty)" : "(no answer)";
    std::string sNames;
    do {
        sNames += (sNames.empty() ? "" : " ") + std::string(data.cFileName);
        if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            sNames += "\\";
    } while (Find<Next>("FsFindNext")(hListing, &data));
    Find<Close>("FsFindClose")(hListing);
    return sNames;
}

int HostedPlugin::Get(const std::string& sPhone, const std::string& sLocal, int iFlags) {
    using Function = int __stdcall(char*, char*, int, void*);
    return Find<Function>("FsGetFile")(HostText(sPhone), HostText(sLocal), iFlags, nullptr);
}

int HostedPlugin::Put(const std::string& sLocal, const std::string& sPhone, int iFlags) {
    using Function = int __stdcall(char*, char*, int);
    return Find<Function>("FsPutFile")(HostText(sLocal), HostText(sPhone), iFlags);
}

int HostedPlugin::Move(const std::string& sOld, const std::string& sNew, bool bOverWrite) {
    using Function = int __stdcall(char*, char*, BOOL, BOOL, void*);
    return Find<Function>("FsRenMovFile")(HostText(sOld), HostText(sNew), TRUE, bOverWrite, nullptr);
}

bool HostedPlugin::MakeFolder(const std::string& sPath) {
    return Find<BOOL __stdcall(char*)>("FsMkDir")(HostText(sPath)) == 1;
}

bool HostedPlugin::RemoveFolder(const std::string& sPath) {
    return Find<BOOL __stdcall(char*)>("FsRemoveDir")(HostText(sPath)) == 1;
}

bool HostedPlugin::RemoveFile(const std::string& sPath) {
    return Find<BOOL __stdcall(char*)>("FsDeleteFile")(HostText(sPath)) == 1;
}

std::string HostedPlugin::Execute(const std::string& sPath, const std::string& sVerb) {
    using Function = int __stdcall(HWND, char*, char*);
    HostText name(sPath);
    const int iResult = Find<Function>("FsExecuteFile")(nullptr, name, HostText(sVerb));
    return std::to_string(iResult) + " " + static_cast<char*>(name);
}

void HostedPlugin::Status(bool bStart) {
    using Function = void __stdcall(char*, int, int);
    Find<Function>("FsStatusInfo")(HostText("\\"), bStart ? 0 : 1, 1);
}

bool HostedPlugin::Disconnect() {
    return Find<BOOL __stdcall(char*)>("FsDisconnect")(HostText("\\Korvane EFS")) == 1;
}

std::string HostedPlugin::TakeLog() {
    const std::lock_guard lock(g_logLock);
    return std::exchange(g_sLog, "");
}

bool PumpMessages(const std::function<bool()>& until) {
    const ULONGLONG iEnd = GetTickCount64() + 120000;
    while (!until()) {
        if (GetTickCount64() > iEnd)
            return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
        for (MSG message; PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE);)
            DispatchMessageA(&message);
    }
    return true;
}
