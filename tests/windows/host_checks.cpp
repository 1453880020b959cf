// The plug-in as a file manager uses it, with the simulated handset on COM6.
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <thread>

#include "tests/windows/checks.h"
#include "tests/windows/device_tree.h"
#include "tests/windows/host_plugin.h"
#include "tests/windows/host_windows.h"

namespace {

constexpr int kOk = 0;
constexpr int kWriteError = 4;
constexpr int kAborted = 5;

std::string g_sPluginFile;
HostedPlugin* g_pPlugin = nullptr;

std::string Content(size_t iSize) {
    std::string sContent(iSize, '\0');
    for (size_t i = 0; i < iSize; ++i)
        sContent[i] = static_cast<char>(i * 7 + i / 251);
    return sContent;
}

std::string ReadFile(const std::string& sName) {
    std::ifstream file(sName, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const std::string& sName, const std::string& sContent) {
    std::ofstream(sName, std::ios::binary) << sContent;
}

/// Runs `copy` and prints the time per request, which includes client, handset and Wine.
int Timed(const char* sWhat, int iRequests, const std::function<int()>& copy) {
    const auto start = std::chrono::steady_clock::now();
    const int iResult = copy();
    const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - start;
    Inform(std::string(sWhat) + ": " + std::to_string(static_cast<int>(time.count() / iRequests)) +
           " us per request");
    return iResult;
}

bool IsLoaded() {
    return GetModuleHandleA(g_sPluginFile.c_str()) != nullptr;
}

void StartsWithoutPhone() {
    RemoveDevices();
    AddDevice({"VID_1234&PID_5678&MI_01\\1", true, "COM5"});
    AddDevice({"VID_1234&PID_5678&MI_01\\2", false, "COM6"});
    g_pPlugin->Start();
    EXPECT_EQ(g_pPlugin->TakeLog(), "1 CONNECT; 1 CONNECT; 3 NOT CONNECTED");
    EXPECT_EQ(g_pPlugin->List("\\"), "(no answer)");
    g_pPlugin->TakeLog();
    AddDevice({"VID_05C6&PID_3197&MI_01\\3", true, "COM300"});
    EXPECT_EQ(g_pPlugin->List("\\"), "(no answer)");
    EXPECT_EQ(g_pPlugin->TakeLog(),
              "1 CONNECT; 3 NOT CONNECTED; 6 list: /: no handset (diagnostic port COM300 "
              "is above COM255)");
    RemoveDevices();
}

void ConnectsAndLists() {
    AddPhone();
    g_pPlugin->Start();
    EXPECT_EQ(g_pPlugin->TakeLog(), "1 CONNECT; 1 CONNECT; 3 CONNECTED on port COM6");
    EXPECT_EQ(g_pPlugin->List("\\"), "brew\\ notes.txt");
    EXPECT_EQ(g_pPlugin->List("\\brew\\"), "mod\\");
    EXPECT_EQ(g_pPlugin->List("\\brew\\mod"), "(empty)");
    EXPECT_EQ(g_pPlugin->List("\\none"), "(empty)");
    EXPECT_EQ(g_pPlugin->TakeLog(), "6 list: /none: the phone refused it: no such file or folder (2)");
}

void CopiesBothWays() {
    const std::string sContent = Content(60000);
    WriteFile("up.bin", sContent);
    EXPECT_EQ(Timed("upload", 60000 / 512, [] { return g_pPlugin->Put("up.bin", "\\brew\\up.bin"); }), kOk);
    int iLast = -1;
    g_pPlugin->onProgress = [&](int iPercent) {
        EXPECT(iPercent >= iLast);
        iLast = iPercent;
        return 0;
    };
    EXPECT_EQ(Timed("download", 60000 / 1536, [] { return g_pPlugin->Get("\\brew\\up.bin", "down.bin"); }),
              kOk);
    g_pPlugin->onProgress = nullptr;
    EXPECT_EQ(iLast, 100);
    EXPECT(ReadFile("down.bin") == sContent);
    EXPECT_EQ(g_pPlugin->Get("\\brew\\up.bin", "down.bin"), 7);
    EXPECT_EQ(g_pPlugin->Put("up.bin", "\\brew\\up.bin"), 7);
    EXPECT_EQ(g_pPlugin->Get("\\none.bin", "none.bin"), kWriteError);
    EXPECT_EQ(Ask("handset cat /notes.txt"), "68 65 6C 6C 6F 0A ok");
}

void ChangesNames() {
    EXPECT(g_pPlugin->MakeFolder("\\new"));
    EXPECT(!g_pPlugin->MakeFolder("\\new")); // it exists already
    EXPECT_EQ(g_pPlugin->Move("\\brew\\up.bin", "\\new\\a.bin"), kOk);
    EXPECT_EQ(g_pPlugin->Move("\\new\\a.bin", "\\new\\b.bin"), kOk);
    EXPECT_EQ(g_pPlugin->Move("\\notes.txt", "\\new\\b.bin"), 1);
    EXPECT_EQ(g_pPlugin->List("\\new\\"), "b.bin");
    EXPECT_EQ(g_pPlugin->Get("\\new\\b.bin", "moved.bin", 4), kOk);
    EXPECT(ReadFile("moved.bin") == Content(60000));
    EXPECT_EQ(g_pPlugin->List("\\new\\"), "(empty)");
    EXPECT(g_pPlugin->RemoveFolder("\\new"));
    EXPECT(g_pPlugin->RemoveFile("\\none"));
    EXPECT_EQ(g_pPlugin->List("\\"), "brew\\ notes.txt");
}

void LinksAndFolders() {
    EXPECT_EQ(g_pPlugin->Execute("\\", "quote ln brew b"), "0 /");
    EXPECT_EQ(g_pPlugin->Execute("\\b.lnk", "open"), "-2 \\brew");
    EXPECT_EQ(g_pPlugin->Execute("\\notes.txt", "open"), "-1 \\notes.txt");
    EXPECT_EQ(g_pPlugin->Execute("\\brew\\", "quote cd mod"), "-2 \\brew\\mod");
    EXPECT_EQ(g_pPlugin->Execute("\\brew\\", "quote cd none").substr(0, 2), "1 ");
    EXPECT(g_pPlugin->RemoveFile("\\b.lnk"));
}

void ShowsProperties() {
    std::string sText;
    std::thread user([&] { sText = ReadMessageBox("Properties"); });
    EXPECT_EQ(g_pPlugin->Execute("\\notes.txt", "properties"), "0 \\notes.txt");
    user.join();
    EXPECT(sText.find("notes.txt\nType:") != std::string::npos);
    EXPECT(sText.find("<FILE> [81") != std::string::npos);
    EXPECT(sText.find("Size:\t\t6\n") != std::string::npos);
}

int g_iTicks = 0;

void CALLBACK CountTick(HWND, UINT, UINT_PTR, DWORD) {
    ++g_iTicks;
}

/// The message box dispatches the thread's ticks, and other threads call the plug-in.
void TicksWhileABoxIsOpen() {
    g_pPlugin->Status(true);
    g_pPlugin->Status(false);
    g_pPlugin->TakeLog();
    g_iTicks = 0;
    const UINT_PTR iTimer = SetTimer(nullptr, 0, 1000, CountTick);
    std::thread user([] {
        ReadMessageBox("Properties", [] {
            EXPECT(Eventually([] { return g_iTicks >= 3; }));
            EXPECT_EQ(g_pPlugin->List("\\brew\\"), "mod\\");
        });
    });
    g_pPlugin->Execute("\\notes.txt", "properties");
    user.join();
    KillTimer(nullptr, iTimer);
    EXPECT_EQ(g_pPlugin->List("\\brew\\"), "mod\\");
    EXPECT_EQ(g_pPlugin->TakeLog(), "");
}

void AbortsCopies() {
    WriteFile("big.bin", Content(200000));
    g_pPlugin->onProgress = [](int iPercent) { return iPercent >= 20; };
    EXPECT_EQ(g_pPlugin->Put("big.bin", "\\big.bin"), kAborted);
    EXPECT_EQ(g_pPlugin->List("\\"), "brew\\ notes.txt");
    g_pPlugin->onProgress = nullptr;
    EXPECT_EQ(g_pPlugin->Put("big.bin", "\\big.bin"), kOk);
    g_pPlugin->onProgress = [](int iPercent) { return iPercent >= 20; };
    EXPECT_EQ(g_pPlugin->Get("\\big.bin", "aborted.bin"), kAborted);
    g_pPlugin->onProgress = nullptr;
    EXPECT(!std::ifstream("aborted.bin"));
}

void UnplugAndReconnect() {
    g_pPlugin->onProgress = [](int iPercent) {
        if (iPercent == 20)
            EXPECT_EQ(Ask("handset unplug"), "ok");
        return 0;
    };
    EXPECT_EQ(g_pPlugin->Get("\\big.bin", "broken.bin"), kWriteError);
    g_pPlugin->onProgress = nullptr;
    RemovePhone();
    g_pPlugin->TakeLog();
    EXPECT_EQ(g_pPlugin->List("\\"), "(no answer)");
    EXPECT_EQ(g_pPlugin->TakeLog(),
              "3 DISCONNECTED; 3 NOT CONNECTED; 6 list: /: no handset (none is attached)");
    EXPECT(Ask("handset replug").ends_with("ok"));
    AddPhone();
    EXPECT_EQ(g_pPlugin->List("\\"), "brew\\ notes.txt big.bin");
    EXPECT_EQ(g_pPlugin->TakeLog(), "1 CONNECT; 3 CONNECTED on port COM6");
    Ask("handset unplug");
    Ask("handset replug");
    EXPECT_EQ(g_pPlugin->List("\\brew\\"), "mod\\");
    EXPECT_EQ(g_pPlugin->TakeLog(), "3 CONNECTED on port COM6; 3 DISCONNECTED");
    EXPECT(g_pPlugin->RemoveFile("\\big.bin"));
}

void ClosesWhenIdle() {
    g_pPlugin->Status(true);
    g_pPlugin->Status(false);
    g_pPlugin->TakeLog();
    const ULONGLONG iBegin = GetTickCount64();
    std::string sLog;
    EXPECT(PumpMessages([&] { return !(sLog = g_pPlugin->TakeLog()).empty(); }));
    EXPECT_EQ(sLog, "3 DISCONNECTED");
    EXPECT(GetTickCount64() - iBegin > 25000); // thirty ticks, none of them early
    EXPECT_EQ(g_pPlugin->List("\\brew\\"), "mod\\");
    EXPECT_EQ(g_pPlugin->TakeLog(), "1 CONNECT; 3 CONNECTED on port COM6");
}

void MarkerStartsTextLog() {
    EXPECT(g_pPlugin->Disconnect());
    WriteFile("QMSL_auto_start_log.txt", "");
    EXPECT_EQ(g_pPlugin->List("\\brew\\"), "mod\\");
    EXPECT(g_pPlugin->Disconnect());
    std::remove("QMSL_auto_start_log.txt");
    EXPECT(ReadFile("QMSL_Log.txt").find("QLIB_EfsDirectory( sFolderPath = brew") != std::string::npos);
    g_pPlugin->TakeLog();
}

void BannerOfTheRoot() {
    EXPECT_EQ(PhotographBanner([] { EXPECT_EQ(g_pPlugin->Execute("\\", "properties"), "0 \\"); }), "ok");
}

/// The host unloads the library while the connection is open. The library stays loaded until the connection
/// has closed, and a host that loads it meanwhile gets the same library.
void UnloadsWithAConnectionOpen() {
    g_pPlugin->List("\\");
    g_pPlugin->Status(false);
    g_pPlugin->TakeLog();
    delete std::exchange(g_pPlugin, nullptr);
    EXPECT(IsLoaded());
    int iTicks = 0;
    PumpMessages([&] { return ++iTicks > 30; });
    EXPECT(IsLoaded());
    g_pPlugin = new HostedPlugin(g_sPluginFile);
    EXPECT_EQ(g_pPlugin->List("\\brew\\"), "mod\\");
    EXPECT(g_pPlugin->Disconnect());
    delete std::exchange(g_pPlugin, nullptr);
    EXPECT(!IsLoaded());
    g_pPlugin = new HostedPlugin(g_sPluginFile);
    g_pPlugin->Start();
    EXPECT_EQ(g_pPlugin->TakeLog(), "3 DISCONNECTED; 1 CONNECT; 1 CONNECT; 3 CONNECTED on port COM6");
}

} // namespace

int main(int iCount, char** asWords) {
    if (iCount < 2)
        return 2;
    g_sPluginFile = asWords[1];
    SetSerialPorts("COM5", "COM6");
    g_pPlugin = new HostedPlugin(g_sPluginFile);
    const int iStatus = RunChecks({{"starts without a handset", StartsWithoutPhone},
                                   {"connects and lists", ConnectsAndLists},
                                   {"copies both ways", CopiesBothWays},
                                   {"makes, renames, moves, deletes", ChangesNames},
                                   {"links and folders", LinksAndFolders},
                                   {"shows properties", ShowsProperties},
                                   {"ticks while a message box is open", TicksWhileABoxIsOpen},
                                   {"aborts copies", AbortsCopies},
                                   {"unplug and reconnect", UnplugAndReconnect},
                                   {"closes when idle", ClosesWhenIdle},
                                   {"the marker starts the text log", MarkerStartsTextLog},
                                   {"the banner", BannerOfTheRoot},
                                   {"unloads with a connection open", UnloadsWithAConnectionOpen}});
    // The process ends with the connection open. This must neither hang nor fail.
    return iStatus;
}
