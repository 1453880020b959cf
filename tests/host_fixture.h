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
#include "plugin/front_state.h"

constexpr int kPluginNumber = 7;
const HANDLE kNoListing = reinterpret_cast<HANDLE>(UINTPTR_MAX);

/// FakeHost records what the plug-in reports. The hooks run inside the callbacks, on the calling thread.
struct FakeHost {
    std::function<int(int iPercent)> onProgress;
    std::function<void(const std::string& sLine)> onLog;

    FakeHost() { s_pCurrent = this; }
    ~FakeHost() { s_pCurrent = nullptr; }

    /// The log lines since the last call, each with its type in front.
    Lines TakeLog() {
        std::lock_guard lock(m_lock);
        return std::exchange(m_log, {});
    }
    /// The percentages since the last call.
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
        const std::string sLine = std::to_string(iType) + " " + sText;
        std::unique_lock lock(s_pCurrent->m_lock);
        s_pCurrent->m_log.push_back(sLine);
        lock.unlock();
        if (s_pCurrent->onLog)
            s_pCurrent->onLog(sLine);
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
    uint64_t iTime;
};

inline uint64_t AsNumber(const FILETIME& time) {
    return static_cast<uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

/// Calls of the entry points with the texts that they change; results are theirs.
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

/// The entries of a folder, walked to the end and closed; nothing when FsFindFirst gave no handle.
inline std::vector<HostEntry> List(const std::string& sPath) {
    std::vector<HostEntry> entries;
    WIN32_FIND_DATAA data;
    const HANDLE hListing = FindFirst(sPath, data);
    if (hListing == kNoListing)
        return entries;
    do
        entries.push_back(
            {data.cFileName, data.dwFileAttributes, data.nFileSizeLow, AsNumber(data.ftLastWriteTime)});
    while (FsFindNext(hListing, &data));
    EXPECT_EQ(FsFindNext(hListing, &data), 0);
    EXPECT_EQ(FsFindClose(hListing), 0);
    return entries;
}

inline Lines NamesIn(const std::string& sPath) {
    Lines names;
    for (const HostEntry& entry : List(sPath))
        names.push_back(entry.sName);
    return names;
}

/// The two sides of "left > right".
inline std::pair<std::string, std::string> Sides(const std::string& sRow) {
    const size_t iArrow = sRow.find(" > ");
    return {sRow.substr(0, iArrow), sRow.substr(iArrow + 3)};
}

/// HostTest is a host after FsInit's work, without its waiting time: callbacks are there, nothing is open
/// yet.
class HostTest : public testing::Test {
protected:
    HostTest() {
        front.PluginNumber = kPluginNumber;
        front.ProgressProc = FakeHost::Progress;
        front.LogProc = FakeHost::Log;
    }
    ~HostTest() override { FsDisconnect(nullptr); }

    /// Opens the connection and leaves ticking to Tick.
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
