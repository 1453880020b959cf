// Connections, listeners, contexts and the library are created and destroyed in any order while phones send
// packets. Leaks show in the number of the process's threads, descriptors and bytes.
#include <dlfcn.h>
#include <malloc.h>

#include <atomic>
#include <cstddef>
#include <random>

#include "device_folder.h"
#include "eventually.h"
#include "phone_fixture.h"
#include "plugin/entry_points.h"
#include "portserver/qpst_server.h"
#include "qlib/call_layer.h"
#include "qlib/resource_manager.h"

namespace {

/// The resources that the process held when this object was created.
struct Holdings {
    size_t iThreads = CountIn("/proc/self/task");
    size_t iDescriptors = CountIn("/proc/self/fd");
    size_t iBytes = mallinfo2().uordblks;

    void ExpectThreadsAgain() const {
        // A joined thread stays listed for a moment.
        EXPECT_TRUE(Eventually([&] { return CountIn("/proc/self/task") == iThreads; }));
    }
    void ExpectAgain() const {
        ExpectThreadsAgain();
        EXPECT_EQ(CountIn("/proc/self/fd"), iDescriptors);
        EXPECT_LE(mallinfo2().uordblks, iBytes + 32 * 1024) << "leaked memory";
    }
};

/// Fifty handsets on COM1 to COM50 that send unsolicited packets.
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

using Connection = std::shared_ptr<Diag_FTM>;

Connection Directly(unsigned short iPort) {
    return std::make_shared<Diag_FTM>(iPort);
}

Connection ThroughAContext(unsigned short iPort) {
    void* const hContext = QLIB_ConnectPort(iPort);
    return {QLib_ResourceManager::GetDiag_FTM(hContext), [=](Diag_FTM*) { QLIB_DisconnectPort(hContext); }};
}

/// Creates, uses, closes and destroys connections to some ports in random order, `iTimes` steps in all.
void ComeAndGo(decltype(&Directly) pfnConnect, unsigned iFirst, unsigned iPorts, int iTimes, unsigned iSeed) {
    std::mt19937 random(iSeed);
    std::vector<Connection> connections(iPorts);
    for (int i = 0; i < iTimes; ++i) {
        const unsigned iWhich = random() % iPorts;
        Connection& pConnection = connections[iWhich];
        if (!pConnection)
            pConnection = pfnConnect(static_cast<unsigned short>(iFirst + iWhich));
        else if (random() % 3 == 0)
            pConnection.reset();
        else if (random() % 2 == 0)
            pConnection->ClosePort();
        else
            EXPECT_TRUE(pConnection->EFS2_DIAG_UNLINK("f")) << "closing one connection affected another";
    }
}

TEST(Lifetime, ContextsInAnyOrder) {
    TalkingPhones phones;
    ComeAndGo(ThroughAContext, 1, 50, 4000, 1); // allocates what is allocated only once
    const Holdings before;
    ComeAndGo(ThroughAContext, 1, 50, 3000, 2);
    before.ExpectAgain();
}

/// Five threads, each with ten phones of its own.
void ComeAndGoInThreads(int iTimes, unsigned iSeed) {
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < 5; ++i)
        threads.emplace_back(ComeAndGo, Directly, i * 10 + 1, 10u, iTimes, iSeed + i);
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
        connection.RemoveEventListener(pListener.get()); // a later call would use a destroyed listener
    }
    bStop = true;
    talk.join();
}

/// Unloads the library while a folder is listed: the connection is open and the idle tick is running.
void LoadListUnload() {
    void* const pLibrary = dlopen(QUILLET_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    const auto pfnFindFirst = reinterpret_cast<decltype(&FsFindFirst)>(dlsym(pLibrary, "FsFindFirst"));
    WIN32_FIND_DATAA data;
    char sRoot[] = "/";
    ASSERT_NE(pfnFindFirst, nullptr);
    pfnFindFirst(sRoot, &data);
    EXPECT_STREQ(data.cFileName, "f");
    EXPECT_EQ(dlclose(pLibrary), 0);
    EXPECT_EQ(dlopen(QUILLET_PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the library is still loaded";
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

/// What a program makes with libquillet and never destroys. The objects stay reachable, for the sanitizers.
struct Forgotten {
    alignas(Diag_FTM) std::byte connection[sizeof(Diag_FTM)];
    alignas(QpstServer) std::byte server[sizeof(QpstServer)];
} g_forgotten;

TEST(Lifetime, LibraryUnloadedWithForgottenObjects) {
    PluggedPhone phone;
    phone.phone.SetChatter(3);
    const Holdings before;
    void* const pLibrary = dlopen(QUILLET_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(pLibrary, nullptr) << dlerror();
    const auto find = [&](const char* sName, auto pfnExample) {
        return reinterpret_cast<decltype(pfnExample)>(dlsym(pLibrary, sName));
    };
    using Make = void (*)(void*, int);
    using MakeServer = void (*)(void*, const char*);
    using Ask = bool (*)(void*);
    find("_ZN10QpstServerC1EPKc", MakeServer())(g_forgotten.server, "test");
    find("_ZN8Diag_FTMC1Ei", Make())(g_forgotten.connection, 1);
    EXPECT_TRUE(find("_ZN14DiagConnection16IsPhoneConnectedEv", Ask())(g_forgotten.connection));
    EXPECT_GE(CountIn("/proc/self/task"), before.iThreads + 3) << "receive, delivery and automation thread";
    EXPECT_EQ(dlclose(pLibrary), 0);
    EXPECT_EQ(dlopen(QUILLET_LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the library is still loaded";
    before.ExpectThreadsAgain();
    Diag_FTM next(1);
    EXPECT_TRUE(next.OpenPort()) << "the port is still held";
}

} // namespace
