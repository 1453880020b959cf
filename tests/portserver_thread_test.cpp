// The thread that carries the calls to a port server: one at a time, bounded, and never in the way.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <atomic>
#include <functional>
#include <future>
#include <thread>
#include <vector>

#include "eventually.h"
#include "fake_port_server.h"
#include "portserver/com_thread_manager.h"
#include "portserver/efs.h"
#include "portserver/function_dispatcher.h"
#include "portserver/qpst_server.h"

namespace {

using Texts = std::vector<std::string>;

/// A call that runs a function of the test's.
class Call : public FunctionDispatcher {
public:
    explicit Call(std::function<void(void*)> work)
        : FunctionDispatcher("Test::call"), m_work(std::move(work)) {}
    void dispatch(void* pArgument) override { m_work(pArgument); }

private:
    std::function<void(void*)> m_work;
};

void Execute(ComThreadManager& manager, std::function<void(void*)> work, DWORD iLimit_ms = 10000,
             std::shared_ptr<void> pArgument = nullptr) {
    manager.executeFunction(std::make_shared<Call>(std::move(work)), pArgument, iLimit_ms);
}

std::string TimeOutText(ComThreadManager& manager, std::function<void(void*)> work, DWORD iLimit_ms) {
    try {
        Execute(manager, std::move(work), iLimit_ms);
        return "done";
    } catch (const ComThreadManager::TimeoutException& error) {
        return error.what();
    }
}

constexpr const char* kTimedOut = "ComThreadManager::executeFunction - Timed out";

TEST(ComThread, OneThreadForAllCallersOneCallAtATime) {
    const auto pManager = ComThreadManager::Use();
    EXPECT_EQ(ComThreadManager::Use(), pManager);
    std::atomic<int> iInside{0};
    std::atomic<int> iCalls{0};
    std::atomic<bool> bOverlap{false};
    std::set<std::thread::id> threads; // only the worker touches it
    const auto work = [&](void* pArgument) {
        bOverlap = bOverlap || ++iInside > 1;
        threads.insert(std::this_thread::get_id());
        iCalls += *static_cast<int*>(pArgument);
        --iInside;
    };
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i)
        callers.emplace_back([&] {
            for (int j = 0; j < 50; ++j)
                Execute(*pManager, work, 60000, std::make_shared<int>(1));
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
    Execute(*pManager, [&](void*) { Execute(*pManager, [&](void*) { bInner = true; }); });
    EXPECT_TRUE(bInner);
}

TEST(ComThread, WhatACallThrowsBecomesItsText) {
    const struct {
        std::function<void(void*)> work;
        const char* sText;
    } cases[] = {
        {[](void*) {}, ""},
        {[](void*) { throw ServerException("as it is"); }, "as it is"},
        {[](void*) { throw ComException("x"); }, "Test::call - COM exception thrown."},
        {[](void*) { throw std::bad_alloc(); }, "Test::call - Unknown exception thrown."},
        {[](void*) { throw 42; }, "Test::call - Unknown exception thrown."},
    };
    const auto pManager = ComThreadManager::Use();
    for (const auto& entry : cases) {
        const auto pCall = std::make_shared<Call>(entry.work);
        pManager->executeFunction(pCall, nullptr, 10000);
        EXPECT_EQ(pCall->ErrorText(), entry.sText);
    }
}

TEST(ComThread, AHangingCallCostsTheOthersTheirLimitAndNoMore) {
    const auto pManager = ComThreadManager::Use();
    std::promise<void> release;
    std::atomic<bool> bBegun{false};
    std::atomic<int> iSeen{0};
    const auto hang = [&](void* pArgument) {
        bBegun = true;
        release.get_future().wait();
        iSeen = *static_cast<int*>(pArgument);
    };
    while (!bBegun)
        EXPECT_THROW(Execute(*pManager, hang, 20, std::make_shared<int>(7)),
                     ComThreadManager::TimeoutException);
    bool bRan = false;
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(TimeOutText(
                      *pManager, [&](void*) { bRan = true; }, 1),
                  kTimedOut);
    release.set_value();
    // The calls that were given up before they began never run; the hanging one kept its argument.
    EXPECT_EQ(TimeOutText(
                  *pManager, [](void*) {}, 10000),
              "done");
    EXPECT_FALSE(bRan);
    EXPECT_EQ(iSeen, 7);
}

TEST(ComThread, ObjectsAreReleasedOnTheWorker) {
    std::thread::id worker;
    std::thread::id released;
    {
        const auto pManager = ComThreadManager::Use();
        Execute(*pManager, [&](void*) { worker = std::this_thread::get_id(); });
        const auto note = [&](int* p) {
            released = std::this_thread::get_id();
            delete p;
        };
        pManager->ReleaseOnThread(std::shared_ptr<int>(new int, note));
    } // the last user waits for the worker
    EXPECT_EQ(released, worker);
}

/// Leaves the process room for a number of descriptors while it lives.
class FewDescriptors {
public:
    explicit FewDescriptors(rlim_t iRoom) {
        const int iFirstFree = dup(0);
        EXPECT_GE(iFirstFree, 0);
        close(iFirstFree);
        EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &m_former), 0);
        const rlimit tight{static_cast<rlim_t>(iFirstFree) + iRoom, m_former.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &tight), 0);
    }
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &m_former); }

private:
    rlimit m_former{};
};

TEST(ComThread, WithoutEventsThereIsNoManager) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers need descriptors for their own checks, and here there are none";
#endif
    const struct {
        rlim_t iEvents;
        const char* sText;
    } cases[] = {{0, "ComThreadManager::ComThreadManager - Unable to creat a mutex"},
                 {1, "ComThreadManager::ComThreadManager - Unable to creat an event"},
                 {4, "ComThreadManager::ComThreadManager - Unable to creat an event"}};
    for (const auto& entry : cases) {
        std::string sText;
        try {
            const FewDescriptors few(entry.iEvents);
            ComThreadManager::Use();
        } catch (const ComThreadManager::ComThreadManagerException& error) {
            sText = error.what();
        }
        EXPECT_EQ(sText, entry.sText);
    }
    EXPECT_NE(ComThreadManager::Use(), nullptr);
}

TEST(ComThread, TheServerIsMadeUsedAndDestroyedOnOneThread) {
    FakeProgram program;
    {
        QpstServer server("a");
        server.connect(5, 200);
        EFS files("b");
        EXPECT_TRUE(files.connect(5));
        EXPECT_EQ(program.Views(), 2);
    }
    EXPECT_EQ(program.Views(), 0);
    EXPECT_EQ(program.Threads().size(), 1U);
    EXPECT_EQ(program.Threads().count(std::this_thread::get_id()), 0U);
}

TEST(ComThread, AClientOfAHangingServerCanGo) {
    FakeProgram program;
    program.Set("sendSync", FakeProgram::Trouble::Hang);
    {
        QpstServer server("a");
        server.connect(5, 200);
        const unsigned char aRequest[] = {0};
        unsigned char aResponse[8];
        unsigned short iSize = sizeof aResponse;
        Texts calls;
        while (std::count(calls.begin(), calls.end(), "sendSync") == 0) {
            EXPECT_THROW(server.sendSync(1, aRequest, &iSize, aResponse, 0),
                         ComThreadManager::TimeoutException);
            calls = program.TakeCalls();
        }
        EXPECT_EQ(iSize, sizeof aResponse);
    }
    EXPECT_EQ(program.Views(), 1); // the worker that is left behind still has it ...
    program.Release();
    EXPECT_TRUE(Eventually([&] { return program.Views() == 0; })); // ... until the server comes back
    QpstServer next("b");
    next.connect(5, 200);
    EXPECT_EQ(program.Views(), 1);
}

} // namespace
