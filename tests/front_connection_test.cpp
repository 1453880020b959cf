// Opening, checking and closing the connection, and the lines about it in the host's log.
#include "host_fixture.h"

namespace {

const Lines kOpened{"1 CONNECT", "3 CONNECTED on port COM1"};
const Lines kClosed{"3 DISCONNECTED"};

class FrontConnection : public HostTest {
protected:
    /// Downloads the file a.bin; its first progress report runs `hook`.
    int GetWithHook(const std::function<void()>& hook) {
        m_host.onProgress = [&](int iPercent) {
            if (iPercent == 0)
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
    FsStatusInfo(nullptr, FS_STATUS_START, FS_STATUS_OP_LIST);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
    EXPECT_EQ(FsDisconnect(nullptr), 1);
    EXPECT_EQ(m_host.TakeLog(), kClosed);
}

TEST_F(FrontConnection, ClosesAfterThirtyIdleTicks) {
    Connect();
    Tick(29);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
    Tick();
    EXPECT_EQ(m_host.TakeLog(), kClosed);
    NamesIn("/");
    EXPECT_EQ(m_host.TakeLog(), kOpened);
    StopIdleTick(front.IdleTimerId);
    Tick(29);
    NamesIn("/"); // activity restarts the countdown
    Tick(29);
    EXPECT_EQ(m_host.TakeLog(), Lines{});
}

TEST_F(FrontConnection, StaysOpenDuringAnOperation) {
    Connect();
    const uintptr_t iOldTick = front.IdleTimerId;
    FsStatusInfo(nullptr, FS_STATUS_START, 0);
    EXPECT_EQ(front.IdleTimerId, 0u);
    for (int i = 0; i < 40; ++i)
        IdleTimerProc(iOldTick); // a tick that was due when it was stopped
    EXPECT_EQ(m_host.TakeLog(), Lines{});
    FsStatusInfo(nullptr, FS_STATUS_END, 0);
    EXPECT_NE(front.IdleTimerId, 0u);
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
}

TEST_F(FrontConnection, RootNameFitsTheHostsBuffer) {
    for (const auto& [iSize, sExpected] :
         {std::pair(260, "Korvane EFS"), {11, "Korvane EF"}, {1, ""}, {0, "#"}, {-1, "#"}}) {
        char sName[300] = "#";
        FsGetDefRootName(sName, iSize);
        EXPECT_STREQ(sName, sExpected) << iSize;
    }
}

TEST_F(FrontConnection, CallsDuringATransferLeaveTheConnectionAlone) {
    m_phone.AddFile("a.bin", Pattern(5000));
    m_phone.AddFile("b.bin", Pattern(10));
    Connect();
    const auto calls = [&] {
        EXPECT_EQ(FsDisconnect(nullptr), 0);
        FsStatusInfo(nullptr, FS_STATUS_START, 0);
        FsStatusInfo(nullptr, FS_STATUS_END, 0);
        Tick(40);
        EXPECT_EQ(FsInit(1, nullptr, nullptr, nullptr), 0);
        EXPECT_EQ(NamesIn("/"), (Lines{"a.bin", "b.bin"}));
        EXPECT_EQ(Get("/b.bin", local.Path("b.bin")), FS_FILE_WRITEERROR);
        EXPECT_EQ(Put(local.Write("c.bin", Pattern(3)), "/c.bin"), FS_FILE_WRITEERROR);
    };
    const auto everywhere = [&] {
        calls();
        std::thread(calls).join();
    };
    EXPECT_EQ(GetWithHook(everywhere), FS_FILE_OK);
    EXPECT_EQ(local.Read("a.bin"), Pattern(5000));
    EXPECT_FALSE(local.Has("b.bin"));
    EXPECT_FALSE(m_phone.Exists("c.bin"));
    const std::string sGet = "6 copy from the phone: /b.bin: another copy is running";
    const std::string sPut = "6 copy to the phone: /c.bin: another copy is running";
    EXPECT_EQ(m_host.TakeLog(), (Lines{sGet, sPut, sGet, sPut}));
    EXPECT_EQ(m_host.TakePercents(), (std::vector<int>{0, 30, 61, 92, 100}));
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
    EXPECT_EQ(m_host.TakeLog(), (Lines{"6 list: /: the handset stopped answering",
                                       "6 copy from the phone: /a.bin: the handset stopped answering"}));
    EXPECT_EQ(NamesIn("/"), Lines{"a.bin"});
    EXPECT_EQ(m_host.TakeLog(), (Lines{"3 CONNECTED on port COM1", "3 DISCONNECTED"}));
}

// The host's worker pauses in a callback while its main thread, ticks and a second worker continue.
TEST_F(FrontConnection, ManyThreads) {
    m_phone.AddFile("a.bin", Pattern(100000));
    Connect();
    std::thread lister([&] {
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(NamesIn("/"), Lines{"a.bin"});
    });
    std::thread ticker([] {
        for (int i = 0; i < 100; ++i)
            IdleTimerProc(1);
    });
    EXPECT_EQ(Get("/a.bin", local.Path("a.bin")), FS_FILE_OK);
    lister.join();
    ticker.join();
    EXPECT_EQ(local.Read("a.bin"), Pattern(100000));
}

// The host may ask for properties or list before FsInit; nothing is reported then.
TEST(FrontBeforeInit, EveryEntryPointSurvives) {
    PluggedPhone phone;
    phone.AddFile("a.bin", Pattern(2000));
    LocalFolder local;
    EXPECT_EQ(NamesIn("/"), Lines{"a.bin"});
    EXPECT_EQ(Get("/a.bin", local.Path("a.bin")), FS_FILE_OK);
    EXPECT_EQ(FsDisconnect(nullptr), 1);
}

} // namespace
