// A file manager that calls the plug-in's entry points, with a simulated handset on COM1.
#pragma once

#include <functional>
#include <mutex>
#include <thread>
#include <utility>

#include "phone_fixture.h"
#include "platform/idle_tick.h"
#include "plugin/connection.h"
#include "plugin/entry_points.h"
#include "plugin/front.h"

constexpr int kPluginNumber = 7;
inline FrontState& front = TheFront().state;
const HANDLE kNoListing = reinterpret_cast<HANDLE>(UINTPTR_MAX);

/// FakeHost records what the plug-in reports. `onProgress` runs inside the callback, on the calling thread.
struct FakeHost {
    std::function<int(int iPercent)> onProgress;

    FakeHost() { s_pCurrent = this; }

    /// Returns the log lines since the last call, each preceded by its type.
    Lines TakeLog() {
        std::lock_guard lock(m_lock);
        return std::exchange(m_log, {});
    }
    /// Returns the percentages since the last call.
    std::vector<int> TakePercents() {
        std::lock_guard lock(m_lock);
        return std::exchange(m_percents, {});
    }

    static int HOST_CALL Progress(int iNumber, char*, char*, int iPercent) {
        EXPECT_EQ(iNumber, kPluginNumber);
        std::unique_lock lock(s_pCurrent->m_lock);
        s_pCurrent->m_percents.push_back(iPercent);
        lock.unlock();
        return s_pCurrent->onProgress ? s_pCurrent->onProgress(iPercent) : 0;
    }
    static void HOST_CALL Log(int iNumber, int iType, char* sText) {
        EXPECT_EQ(iNumber, kPluginNumber);
        std::lock_guard lock(s_pCurrent->m_lock);
        s_pCurrent->m_log.push_back(std::to_string(iType) + " " + sText);
    }

private:
    static inline FakeHost* s_pCurrent = nullptr;

    std::mutex m_lock;
    Lines m_log;
    std::vector<int> m_percents;
};

/// One listed entry as the host sees it.
struct HostEntry {
    std::string sName;
    DWORD iAttributes;
    DWORD iSize;
};

/// These functions call the entry points with copies of the texts, which the entry points may change, and
/// return their results.
inline HANDLE FindFirst(std::string sPath, WIN32_FIND_DATAA& data) {
    return FsFindFirst(sPath.data(), &data);
}
inline int Get(std::string sPhone, std::string sLocal, int iFlags = 0) {
    return FsGetFile(sPhone.data(), sLocal.data(), iFlags, nullptr);
}
inline int Put(std::string sLocal, std::string sPhone, int iFlags = 0) {
    return FsPutFile(sLocal.data(), sPhone.data(), iFlags);
}
inline int Move(std::string sOld, std::string sNew, BOOL bMove, BOOL bOverWrite) {
    return FsRenMovFile(sOld.data(), sNew.data(), bMove, bOverWrite, nullptr);
}

/// Returns the result of FsExecuteFile and the content of the host's name buffer afterwards.
inline std::pair<int, std::string> Execute(std::string sName, std::string sVerb) {
    sName.resize(std::max<size_t>(MAX_PATH - 1, sName.size()));
    const int iResult = FsExecuteFile(nullptr, sName.data(), sVerb.data());
    return {iResult, sName.c_str()};
}

/// Lists a folder to the end, closes the listing and returns the entries; none when FsFindFirst failed.
inline std::vector<HostEntry> List(const std::string& sPath) {
    std::vector<HostEntry> entries;
    WIN32_FIND_DATAA data;
    const HANDLE hListing = FindFirst(sPath, data);
    if (hListing == kNoListing)
        return entries;
    do
        entries.push_back({data.cFileName, data.dwFileAttributes, data.nFileSizeLow});
    while (FsFindNext(hListing, &data));
    EXPECT_EQ(FsFindClose(hListing), 0);
    return entries;
}

inline Lines NamesIn(const std::string& sPath) {
    Lines names;
    for (const HostEntry& entry : List(sPath))
        names.push_back(entry.sName);
    return names;
}

/// HostTest is a host after FsInit, but without FsInit's waiting time: the callbacks are set, and nothing is
/// open yet.
class HostTest : public testing::Test {
protected:
    HostTest() {
        front.PluginNumber = kPluginNumber;
        front.ProgressProc = FakeHost::Progress;
        front.LogProc = FakeHost::Log;
    }
    ~HostTest() override { FsDisconnect(nullptr); }

    /// Opens the connection and stops its idle tick; tests call Tick instead.
    void Connect() {
        FsStatusInfo(nullptr, FS_STATUS_START, 0);
        FsStatusInfo(nullptr, FS_STATUS_END, 0);
        StopIdleTick(front.IdleTimerId);
        m_host.TakeLog();
    }
    static void Tick(int iTimes = 1) {
        for (int i = 0; i < iTimes; ++i)
            IdleTimerProc(front.IdleTimerId);
    }

    PluggedPhone m_phone;
    FakeHost m_host;
};
