#include "tests/windows/checks.h"

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <mutex>

namespace {

std::atomic<int> g_failures = 0;
std::mutex g_outputLock;

void Print(const std::string& sLine) {
    const std::lock_guard lock(g_outputLock);
    std::printf("%s\n", sLine.c_str());
    std::fflush(stdout);
}

std::string ReadLine() {
    std::string sLine;
    for (int c = std::getchar(); c != EOF && c != '\n'; c = std::getchar())
        if (c != '\r')
            sLine += static_cast<char>(c);
    return sLine;
}

} // namespace

int RunChecks(const std::vector<Check>& checks) {
    int iFailed = 0;
    for (const Check& check : checks) {
        g_failures = 0;
        check.pfnRun();
        Print((g_failures == 0 ? "ok " : "FAILED ") + std::string(check.sName));
        iFailed += g_failures != 0;
    }
    return iFailed == 0 ? 0 : 1;
}

void Fail(const char* sFile, int iLine, const std::string& sWhat) {
    ++g_failures;
    Print(std::string(sFile) + ":" + std::to_string(iLine) + ": " + sWhat);
}

void Inform(const std::string& sWhat) {
    Print(sWhat);
}

std::string Ask(const std::string& sRequest) {
    static std::mutex askLock;
    const std::lock_guard lock(askLock);
    Print("@" + sRequest);
    return ReadLine();
}

bool Eventually(const std::function<bool()>& condition) {
    const ULONGLONG iEnd = GetTickCount64() + 30000;
    while (!condition()) {
        if (GetTickCount64() > iEnd)
            return false;
        Sleep(10);
    }
    return true;
}
