// Opening, checking and closing the one connection, and what the host's log says about it.
#include "host_fixture.h"

namespace {

const Lines kOpened{"1 CONNECT", "3 CONNECTED on port COM1"};
const Lines kClosed{"3 DISCONNECTED"};

class FrontConnection : public HostTest {
protected:
    /// Downloads the file a.bin; the first progress report runs `hook`.
    int GetWithHook(const std::function<void()>& hook) {
        m_host.onProgress = [&, bDone = false](int) mutable {
            if (!std::exchange(bDone, true))
                hook();
            return 0;
        };
        return Get("/a.bin", local.Path("a.bin"), FS_COPYFLAGS_OVERWRITE);
    }

    LocalFolder local;
};

TEST_F(FrontConnection, StartAndEnd) {
    EXPECT_EQ(FsInit(kPluginNumber, FakeHost::Progress, FakeHost::Log, nullptr), 0);
    EXPECT_EQ(m_host.TakeLog(), (Lines{"1 CONNECT", "1 CONNECT", "3 CONNECTED on port COM1"}));
    EXPECT_NE(front.ContextHandle, nullptr);
    FsStatusInfo(nullptr, FS_STATUS_START, FS_STATUS_OP_LIST);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(FsDisconnect(nullptr), 1);
        EXPECT_EQ(m_host.TakeLog(), kClosed);
    }
    m_phone.phone.Unplug();
    FsInit(kPluginNumber, FakeHost::Progress, FakeHost::Log, nullptr);
    EXPECT_EQ(m_host.TakeLog(), (Lines{"1 CONNECT", "1 CONNECT", "3 NOT CONNECTED"}));
}

TEST_F(FrontConnection, ClosesAfterThirtyIdleTicks) {
    Connect();
    Tick(29);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
    Tick();
    EXPECT_EQ(m_host.TakeLog(), kClosed);
    EXPECT_EQ(front.ContextHandle, nullptr);
    m_phone.phone.ClearRequests();
    Tick(40); // nothing is open
    EXPECT_TRUE(m_phone.Requests().empty());
    NamesIn("/");
    EXPECT_EQ(m_host.TakeLog(), kOpened);
    StopIdleTick(front.IdleTimerId);
    Tick(29);
    NamesIn("/"); // activity begins the countdown anew
    Tick(29);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
}

TEST_F(FrontConnection, StaysOpenDuringAnOperation) {
    Connect();
    const uintptr_t iOldTick = front.IdleTimerId;
    FsStatusInfo(nullptr, FS_STATUS_START, 0);
    EXPECT_EQ(front.IdleTimerId, 0u);
    for (const int iNeither : {2, -1, 256})
        FsStatusInfo(nullptr, iNeither, 0);
    EXPECT_EQ(front.IdleTimerId, 0u);
    for (int i = 0; i < 40; ++i)
        IdleTimerProc(iOldTick); // one that was on its way when it was stopped
    EXPECT_EQ(m_host.TakeLog(), Lines{});
    FsStatusInfo(nullptr, FS_STATUS_END, 0);
    EXPECT_NE(front.IdleTimerId, 0u);
    EXPECT_EQ(front.IdleTicks, 30);
}

TEST_F(FrontConnection, NoticesALostPhone) {
    m_phone.AddFolder("brew");
    Connect();
    m_phone.phone.Unplug();
    Tick();
    EXPECT_EQ(m_host.TakeLog(), kClosed);
    m_phone.phone.Replug();
    EXPECT_EQ(NamesIn("/"), Lines{"brew"});
    EXPECT_EQ(m_host.TakeLog(), kOpened);

    m_phone.phone.Unplug();
    m_phone.phone.Replug();
    EXPECT_EQ(NamesIn("/"), Lines{"brew"});
    EXPECT_EQ(m_host.TakeLog(), (Lines{"3 CONNECTED on port COM1", "3 DISCONNECTED"}));

    m_phone.phone.Unplug();
    EXPECT_EQ(NamesIn("/"), Lines{});
    EXPECT_EQ(m_host.TakeLog(), (Lines{"3 DISCONNECTED", "3 NOT CONNECTED"}));
}

TEST_F(FrontConnection, SilentPhoneStaysUnverified) {
    m_phone.Misbehave(Action::Ignore, "", -1);
    FsStatusInfo(nullptr, FS_STATUS_START, 0);
    EXPECT_EQ(m_host.TakeLog(), kOpened);
    EXPECT_NE(front.ContextHandle, nullptr);
    EXPECT_EQ(front.IdleTimerId, 0u);
    m_phone.phone.Behave();
    m_phone.Misbehave(Action::Ignore, "", 2); // the check before the reconnection
    FsStatusInfo(nullptr, FS_STATUS_START, 0);
    EXPECT_EQ(m_host.TakeLog(), (Lines{"3 CONNECTED on port COM1", "3 DISCONNECTED"}));
}

TEST_F(FrontConnection, RootNameFitsTheHostsBuffer) {
    const std::pair<int, const char*> cases[] = {
        {260, "Korvane EFS"}, {12, "Korvane EFS"}, {11, "Korvane EF"}, {1, ""}, {0, "#"}, {-1, "#"}};
    for (const auto& [iSize, sExpected] : cases) {
        char sName[300] = "#";
        FsGetDefRootName(sName, iSize);
        EXPECT_STREQ(sName, sExpected) << iSize;
    }
    FsGetDefRootName(nullptr, 20);
}

TEST_F(FrontConnection, CallsDuringATransferLeaveTheConnectionAlone) {
    m_phone.AddFile("a.bin", Pattern(5000));
    m_phone.AddFile("b.bin", Pattern(10));
    Connect();
    const auto calls = [&] {
        const DWORD iSize = front.TransferSize;
        EXPECT_EQ(FsDisconnect(nullptr), 0);
        FsStatusInfo(nullptr, FS_STATUS_START, 0);
        FsStatusInfo(nullptr, FS_STATUS_END, 0);
        Tick(40);
        EXPECT_EQ(FsInit(1, nullptr, nullptr, nullptr), 0);
        EXPECT_EQ(NamesIn("/"), (Lines{"a.bin", "b.bin"}));
        EXPECT_EQ(Get("/b.bin", local.Path("b.bin")), FS_FILE_WRITEERROR);
        EXPECT_EQ(Put(local.Write("c.bin", Pattern(3)), "/c.bin"), FS_FILE_WRITEERROR);
        EXPECT_EQ(Move("/b.bin", "/d.bin", 1, 0), FS_FILE_OK);
        EXPECT_EQ(Move("/d.bin", "/b.bin", 1, 0), FS_FILE_OK);
        EXPECT_EQ(front.TransferSize, iSize);
    };
    const auto onAnotherThread = [&] { std::thread(calls).join(); };
    for (const std::function<void()>& hook : {std::function<void()>(calls), {onAnotherThread}}) {
        EXPECT_EQ(GetWithHook(hook), FS_FILE_OK);
        EXPECT_EQ(local.Read("a.bin"), Pattern(5000));
        EXPECT_FALSE(local.Has("b.bin"));
        EXPECT_EQ(m_host.TakeLog(), Lines{});
    }
    EXPECT_FALSE(m_phone.Exists("c.bin"));
    EXPECT_EQ(m_host.TakePercents(), (std::vector<int>{0, 30, 61, 92, 100, 0, 30, 61, 92, 100}));
}

TEST_F(FrontConnection, LostPhoneIsNotReopenedUnderATransfer) {
    m_phone.AddFile("a.bin", Pattern(5000));
    Connect();
    const auto loseIt = [&] {
        m_phone.phone.Unplug();
        m_phone.phone.Replug();
        FsStatusInfo(nullptr, FS_STATUS_START, 0);
        EXPECT_EQ(NamesIn("/"), Lines{});
    };
    EXPECT_EQ(GetWithHook(loseIt), FS_FILE_WRITEERROR);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
    EXPECT_EQ(NamesIn("/"), Lines{"a.bin"});
    EXPECT_EQ(m_host.TakeLog(), (Lines{"3 CONNECTED on port COM1", "3 DISCONNECTED"}));
}

TEST_F(FrontConnection, LogCallbackMayCallBack) {
    m_phone.AddFolder("brew");
    Lines listed;
    m_host.onLog = [&](const std::string& sLine) {
        if (sLine == kOpened.back())
            listed = NamesIn("/");
    };
    EXPECT_EQ(NamesIn("/"), Lines{"brew"});
    EXPECT_EQ(listed, Lines{"brew"});
    EXPECT_EQ(m_host.TakeLog(), kOpened);
}

// The host pauses in a callback of its worker while its main thread, ticks and a second worker go on.
TEST_F(FrontConnection, ManyThreads) {
    m_phone.AddFile("a.bin", Pattern(100000));
    m_phone.AddFolder("brew");
    Connect();
    std::thread lister([&] {
        for (int i = 0; i < 20; ++i) {
            FsStatusInfo(nullptr, FS_STATUS_START, 0);
            EXPECT_EQ(NamesIn("/"), (Lines{"a.bin", "brew"}));
        }
    });
    std::thread ticker([] {
        for (int i = 0; i < 100; ++i)
            IdleTimerProc(1);
    });
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Get("/a.bin", local.Path("a.bin"), FS_COPYFLAGS_OVERWRITE), FS_FILE_OK);
    lister.join();
    ticker.join();
    EXPECT_EQ(local.Read("a.bin"), Pattern(100000));
}

// The host may ask for properties or list before FsInit; there is nobody to report to.
TEST(FrontBeforeInit, EveryEntryPointSurvives) {
    PluggedPhone phone;
    phone.AddFile("a.bin", Pattern(2000));
    LocalFolder local;
    EXPECT_EQ(NamesIn("/"), Lines{"a.bin"});
    EXPECT_EQ(Get("/a.bin", local.Path("a.bin")), FS_FILE_OK);
    EXPECT_EQ(Put(local.Path("a.bin"), "/b.bin"), FS_FILE_OK);
    EXPECT_EQ(Move("/b.bin", "/c.bin", 1, 0), FS_FILE_OK);
    FsStatusInfo(nullptr, FS_STATUS_START, 0);
    FsStatusInfo(nullptr, FS_STATUS_END, 0);
    EXPECT_EQ(FsDisconnect(nullptr), 1);
}

} // namespace
