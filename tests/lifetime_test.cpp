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

size_t CountIn(const char* sFolder) {
    const std::filesystem::directory_iterator entries(sFolder);
    return static_cast<size_t>(std::distance(begin(entries), end(entries)));
}

/// What the process held when it was made.
struct Holdings {
    size_t iThreads = CountIn("/proc/self/task");
    size_t iDescriptors = CountIn("/proc/self/fd");
    size_t iBytes = mallinfo2().uordblks;

    /// True as soon as there are iMore threads more than then: one that was joined stays listed for a moment.
    bool HasThreads(size_t iMore) const {
        return Eventually([&] { return CountIn("/proc/self/task") == iThreads + iMore; });
    }
    void ExpectAgain() const {
        constexpr size_t kNoise = 32 * 1024;
        EXPECT_TRUE(HasThreads(0)) << CountIn("/proc/self/task") << " threads instead of " << iThreads;
        EXPECT_EQ(CountIn("/proc/self/fd"), iDescriptors);
        EXPECT_LE(mallinfo2().uordblks, iBytes + kNoise);
    }
};

/// Phones on COM1, COM2 ...; they send records all the time.
class TalkingPhones {
public:
    explicit TalkingPhones(size_t iCount) : m_phones(iCount) {
        for (size_t i = 0; i < iCount; ++i) {
            m_phones[i].SetRecordLimit(0);
            m_folder.Link("dev/ttyUSB" + std::to_string(i), m_phones[i].TtyPath());
        }
        m_talk = std::thread([this] {
            for (size_t i = 0; !m_bStop; ++i) {
                m_phones[i % m_phones.size()].Send({0x10, 0, 4, 0, 4, 0, 1, 0});
                std::this_thread::sleep_for(std::chrono::microseconds(100));
            }
        });
    }
    ~TalkingPhones() {
        m_bStop = true;
        m_talk.join();
    }

private:
    DeviceFolder m_folder;
    std::vector<handset::Handset> m_phones;
    std::atomic<bool> m_bStop{false};
    std::thread m_talk;
};

bool Answers(Diag_FTM& connection) {
    unsigned char aVersion[100];
    unsigned short iSize = sizeof aVersion;
    constexpr unsigned char kVersion = 0;
    return connection.SendSync(1, &kVersion, &iSize, aVersion, kVersion, 10000, 0);
}

/// Makes, opens, uses, closes and destroys five connections in random order, iTimes in all.
void ComeAndGo(int iTimes, std::mt19937& random) {
    const Holdings before;
    std::unique_ptr<Diag_FTM> aConnections[5];
    std::array<bool, 5> aOpen{};
    for (int i = 0; i < iTimes; ++i) {
        const size_t iWhich = random() % 5;
        std::unique_ptr<Diag_FTM>& pConnection = aConnections[iWhich];
        if (!pConnection)
            pConnection = std::make_unique<Diag_FTM>(static_cast<int>(iWhich) + 1);
        else if (random() % 3 == 0)
            aOpen[iWhich] = (pConnection.reset(), false);
        else if (aOpen[iWhich] && random() % 2 == 0)
            aOpen[iWhich] = !pConnection->ClosePort();
        else
            aOpen[iWhich] = Answers(*pConnection);
        size_t iThreads = 0;
        for (size_t j = 0; j < 5; ++j)
            iThreads += (aConnections[j] ? 1u : 0u) + (aOpen[j] ? 1u : 0u);
        ASSERT_TRUE(before.HasThreads(iThreads)) << "a stop was lost, or stopped another";
    }
}

TEST(Lifetime, ConnectionsInAnyOrder) {
    TalkingPhones phones(5);
    std::mt19937 random(1);
    ComeAndGo(200, random); // what is made once is made now
    const Holdings before;
    ComeAndGo(3000, random);
    before.ExpectAgain();
}

TEST(Lifetime, ListenersWhileEventsArrive) {
    struct Listener : CQLibEvents_Listener {
        explicit Listener(std::atomic<int>& iCalls) : iAllCalls(iCalls) {}
        void messageReceived(LONG, unsigned char*, unsigned int, LONG, short, DWORD) override { ++iAllCalls; }
        std::atomic<int>& iAllCalls;
    };
    TalkingPhones phones(1);
    Diag_FTM connection(1);
    ASSERT_TRUE(Answers(connection));
    const Holdings before;
    std::mt19937 random(1);
    std::atomic<int> iCalls{0};
    std::unique_ptr<Listener> aListeners[8];
    for (int i = 0; i < 5000 || iCalls < 100; ++i) {
        std::unique_ptr<Listener>& pListener = aListeners[random() % 8];
        if (pListener) {
            connection.RemoveEventListener(pListener.get());
            pListener.reset(); // a call that still came would meet nothing
        } else {
            pListener = std::make_unique<Listener>(iCalls);
            connection.AddEventListener(pListener.get(), nullptr);
        }
    }
    for (std::unique_ptr<Listener>& pListener : aListeners)
        connection.RemoveEventListener(pListener.get()), pListener.reset();
    EXPECT_TRUE(Answers(connection));
    before.ExpectAgain();
}

void UseFiftyContexts() {
    const Holdings before;
    std::vector<void*> contexts;
    for (unsigned short i = 1; i <= 50; ++i)
        contexts.push_back(QLIB_ConnectPort(i));
    EXPECT_TRUE(before.HasThreads(2 * 50));
    std::vector<std::thread> users;
    std::atomic<int> iAnswers{0};
    for (size_t iUser = 0; iUser < 5; ++iUser)
        users.emplace_back([&, iUser] {
            for (size_t i = iUser; i < 200; i += 5)
                iAnswers += Answers(*QLib_ResourceManager::GetDiag_FTM(contexts[i % 50])) ? 1 : 0;
        });
    for (std::thread& user : users)
        user.join();
    EXPECT_EQ(iAnswers, 200);
    std::shuffle(contexts.begin(), contexts.end(), std::mt19937(1));
    for (size_t i = 0; i < 50; ++i) {
        QLIB_DisconnectPort(contexts[i]);
        EXPECT_TRUE(i == 49 || Answers(*QLib_ResourceManager::GetDiag_FTM(contexts[i + 1])));
    }
}

TEST(Lifetime, FiftyContextsAtOnce) {
    TalkingPhones phones(50);
    UseFiftyContexts();
    const Holdings before;
    for (int i = 0; i < 3; ++i)
        UseFiftyContexts();
    before.ExpectAgain();
}

/// The host gives the library back while it shows a folder: connection open, idle tick running.
void LoadListUnload() {
    void* const pLibrary = dlopen(QUILLET_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(pLibrary, nullptr) << dlerror();
    const auto pfnFindFirst = reinterpret_cast<decltype(&FsFindFirst)>(dlsym(pLibrary, "FsFindFirst"));
    WIN32_FIND_DATAA data;
    char sRoot[] = "/";
    ASSERT_NE(pfnFindFirst, nullptr);
    EXPECT_NE(reinterpret_cast<uintptr_t>(pfnFindFirst(sRoot, &data)), UINTPTR_MAX);
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
