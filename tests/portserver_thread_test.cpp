// The thread that carries the calls to a port server: one at a time, bounded, and never in the way.
#include <gmock/gmock.h>
#include <sys/resource.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "eventually.h"
#include "fake_port_server.h"
#include "portserver/com_thread_manager.h"
#include "portserver/function_dispatcher.h"
#include "portserver/qpst_server.h"

namespace {

using Texts = std::vector<std::string>;

/// A call that runs a function of the test's.
class Call : public FunctionDispatcher {
public:
    explicit Call(std::function<void()> work) : FunctionDispatcher("Test::call"), m_work(std::move(work)) {}
    void dispatch(void*) override { m_work(); }

private:
    std::function<void()> m_work;
};

void Execute(ComThreadManager& manager, std::function<void()> work, DWORD iLimit_ms = 60000) {
    manager.executeFunction(std::make_shared<Call>(std::move(work)), nullptr, iLimit_ms);
}

TEST(ComThread, OneThreadForAllCallersOneCallAtATime) {
    const auto pManager = ComThreadManager::Use();
    EXPECT_EQ(ComThreadManager::Use(), pManager);
    std::atomic<int> iInside{0};
    std::atomic<int> iCalls{0};
    std::atomic<bool> bOverlap{false};
    std::set<std::thread::id> threads; // only the worker touches it
    const auto work = [&] {
        bOverlap = bOverlap || ++iInside > 1;
        threads.insert(std::this_thread::get_id());
        ++iCalls;
        --iInside;
    };
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i)
        callers.emplace_back([&] {
            for (int j = 0; j < 50; ++j)
                Execute(*pManager, work);
        });
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(iCalls, 200);
    EXPECT_FALSE(bOverlap);
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

TEST(ComThread, ACallFromInsideACallRunsAtOnce) {
    const auto pManager = ComThreadManager::Use();
    bool bInner = false;
    Execute(*pManager, [&] { Execute(*pManager, [&] { bInner = true; }); });
    EXPECT_TRUE(bInner);
}

TEST(ComThread, WithoutEventsThereIsNoManager) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers need descriptors for their own checks, and here there are none";
#endif
    rlimit former{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &former), 0);
    const int iFirstFree = dup(0);
    close(iFirstFree);
    for (const rlim_t iRoom : {0u, 1u, 4u}) {
        const rlimit tight{static_cast<rlim_t>(iFirstFree) + iRoom, former.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &tight), 0);
        std::string sText;
        try {
            ComThreadManager::Use();
        } catch (const ComThreadManager::ComThreadManagerException& error) {
            sText = error.what();
        }
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &former), 0);
        EXPECT_EQ(sText, std::string("ComThreadManager::ComThreadManager - Unable to creat ") +
                             (iRoom == 0 ? "a mutex" : "an event"));
    }
    EXPECT_NE(ComThreadManager::Use(), nullptr);
}

TEST(ComThread, AHangingServerCostsOthersTheirLimitAndItsClientCanGo) {
    FakeProgram program;
    program.Set("sendSync", FakeProgram::Trouble::Hang);
    bool bRan = false;
    {
        QpstServer server("a");
        server.connect(5, 200);
        unsigned char aBytes[8] = {};
        unsigned short iSize = sizeof aBytes;
        Texts calls;
        while (std::count(calls.begin(), calls.end(), "sendSync") == 0) {
            EXPECT_THROW(server.sendSync(1, aBytes, &iSize, aBytes, 0), ComThreadManager::TimeoutException);
            calls = program.TakeCalls();
        }
        EXPECT_EQ(iSize, sizeof aBytes);
        const auto pManager = ComThreadManager::Use();
        for (int i = 0; i < 2; ++i)
            EXPECT_THAT(
                [&] {
                    Execute(
                        *pManager, [&] { bRan = true; }, 1);
                },
                testing::ThrowsMessage<ComThreadManager::TimeoutException>(
                    "ComThreadManager::executeFunction - Timed out"));
    }
    EXPECT_EQ(program.Views(), 1); // the worker that is left behind still has it ...
    program.Release();
    EXPECT_TRUE(Eventually([&] { return program.Views() == 0; })); // ... until the server comes back
    EXPECT_FALSE(bRan); // what was given up before it began never runs
    QpstServer next("b");
    next.connect(5, 200);
    EXPECT_EQ(program.Views(), 1);
}

} // namespace
