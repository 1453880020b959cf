// Connections, listeners, contexts and the library itself come and go in any order while phones talk. What a
// stopped part leaves behind shows in the process's threads, descriptors and bytes.
#include <dlfcn.h>
#include <malloc.h>

#include <atomic>
#include <random>

#include "device_folder.h"
#include "eventually.h"
#include "phone_fixture.h"
#include "plugin/entry_points.h"
#include "qlib/call_layer.h"
#include "qlib/resource_manager.h"

namespace {

/// What the process held when it was made.
struct Holdings {
    size_t iThreads = CountIn("/proc/self/task");
    size_t iDescriptors = CountIn("/proc/self/fd");
    size_t iBytes = mallinfo2().uordblks;

    void ExpectAgain() const {
        // A thread that was joined stays listed for a moment.
        EXPECT_TRUE(Eventually([&] { return CountIn("/proc/self/task") == iThreads; }));
        EXPECT_EQ(CountIn("/proc/self/fd"), iDescriptors);
        EXPECT_LE(mallinfo2().uordblks, iBytes + 32 * 1024) << "more than noise";
    }
};

/// Fifty handsets on COM1 to COM50 that talk by themselves.
struct TalkingPhones {
    TalkingPhones() {
        for (size_t i = 0; i < 50; ++i) {
            aPhones[i].SetRecordLimit(0);
            aPhones[i].SetChatter(3);
            folder.Link("dev/ttyUSB" + std::to_string(i), aPhones[i].TtyPath());
        }
    }
    DeviceFolder folder;
    handset::Handset aPhones[50];
};

/// Makes, uses, closes and destroys as many contexts as there may be, in random order, iTimes in all.
void ComeAndGo(int iTimes, std::mt19937& random) {
    void* aContexts[50] = {};
    for (int i = 0; i < iTimes; ++i) {
        const size_t iWhich = random() % 50;
        void*& hContext = aContexts[iWhich];
        if (!hContext)
            hContext = QLIB_ConnectPort(static_cast<unsigned short>(iWhich + 1));
        else if (random() % 3 == 0)
            QLIB_DisconnectPort(std::exchange(hContext, nullptr));
        else if (random() % 2 == 0)
            QLib_ResourceManager::GetDiag_FTM(hContext)->ClosePort();
        else
            ASSERT_TRUE(QLIB_EFS2_DIAG_UNLINK(hContext, "f")) << "a stop reached another";
    }
    QLib_ResourceManager::DestroyAll();
}

TEST(Lifetime, ContextsInAnyOrder) {
    TalkingPhones phones;
    std::mt19937 random(1);
    for (int i = 0; i < 2; ++i)
        ComeAndGo(2000, random); // what is made once is made now
    const Holdings before;
    ComeAndGo(3000, random);
    before.ExpectAgain();
}

/// Five threads do the same with connections, each with ten phones of its own.
void ComeAndGoInThreads(int iTimes, unsigned iSeed) {
    const auto useTen = [&](unsigned iThread) {
        std::mt19937 random(iSeed + iThread);
        std::unique_ptr<Diag_FTM> aConnections[10];
        for (int i = 0; i < iTimes; ++i) {
            const unsigned iWhich = random() % 10;
            auto& pConnection = aConnections[iWhich];
            if (!pConnection)
                pConnection =
                    std::make_unique<Diag_FTM>(static_cast<unsigned short>(iThread * 10 + iWhich + 1));
            else if (random() % 3 == 0)
                pConnection.reset();
            else if (random() % 2 == 0)
                pConnection->ClosePort();
            else
                EXPECT_TRUE(pConnection->EFS2_DIAG_UNLINK("f")) << "a stop reached another";
        }
    };
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < 5; ++i)
        threads.emplace_back(useTen, i);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(Lifetime, ConnectionsInManyThreads) {
    TalkingPhones phones;
    for (unsigned i = 0; i < 2; ++i)
        ComeAndGoInThreads(400, i);
    const Holdings before;
    ComeAndGoInThreads(3000, 2);
    before.ExpectAgain();
}

struct Listener : CQLibEvents_Listener {
    void messageReceived(LONG, unsigned char*, unsigned int, LONG, short, DWORD) override { ++s_iCalls; }
    static inline std::atomic<int> s_iCalls{0};
};

TEST(Lifetime, ListenersWhileEventsArrive) {
    PluggedPhone phone;
    Diag_FTM connection(1);
    ASSERT_TRUE(connection.OpenPort());
    std::atomic<bool> bStop{false};
    std::thread talk([&] {
        while (!bStop) {
            phone.phone.Send({0x10, 0, 4, 0, 4, 0, 1, 0});
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
    });
    for (int i = 0; i < 5000 || Listener::s_iCalls < 100; ++i) {
        const auto pListener = std::make_unique<Listener>();
        connection.AddEventListener(pListener.get(), nullptr);
        connection.RemoveEventListener(pListener.get()); // a call that still came would meet nothing
    }
    bStop = true;
    talk.join();
}

/// The host gives the library back while it shows a folder: connection open, idle tick running.
void LoadListUnload() {
    void* const pLibrary = dlopen(QUILLET_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    const auto pfnFindFirst = reinterpret_cast<decltype(&FsFindFirst)>(dlsym(pLibrary, "FsFindFirst"));
    WIN32_FIND_DATAA data;
    char sRoot[] = "/";
    ASSERT_NE(pfnFindFirst, nullptr);
    pfnFindFirst(sRoot, &data);
    EXPECT_STREQ(data.cFileName, "f");
    EXPECT_EQ(dlclose(pLibrary), 0);
    EXPECT_EQ(dlopen(QUILLET_PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the library stays";
}

TEST(Lifetime, LibraryUnloadedWithAConnectionOpen) {
    PluggedPhone phone;
    phone.phone.SetRecordLimit(0);
    phone.AddFile("f", Pattern(10));
    LoadListUnload();
    const Holdings before;
    for (int i = 0; i < 20; ++i)
        LoadListUnload();
    before.ExpectAgain();
}

} // namespace
