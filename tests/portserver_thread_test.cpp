// The worker thread for calls of a port server: one call at a time, with a time-out, without blocking others
// for ever.
#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "eventually.h"
#include "fake_port_server.h"
#include "link/clock.h"
#include "portserver/com_thread_manager.h"
#include "portserver/function_dispatcher.h"
#include "portserver/qpst_server.h"

namespace {

using Texts = std::vector<std::string>;

/// A call that runs a function of the test.
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

TEST(ComThread, OneThreadRunsAllCallsOneAtATime) {
    const auto pManager = ComThreadManager::Use();
    EXPECT_EQ(ComThreadManager::Use(), pManager);
    int iCalls = 0; // only the worker uses these two
    std::set<std::thread::id> threads;
    const auto work = [&] { ++iCalls, threads.insert(std::this_thread::get_id()); };
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i)
        callers.emplace_back([&] {
            for (int j = 0; j < 50; ++j)
                Execute(*pManager, [&] { Execute(*pManager, work); }); // the inner call runs at once
        });
    for (std::thread& caller : callers)
        caller.join();
    EXPECT_EQ(iCalls, 200);
    EXPECT_EQ(threads.size(), 1U);
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

TEST(ComThread, SignsOfLifeRestartTheTimeOut) {
    const auto pManager = ComThreadManager::Use();
    std::promise<void> enough;
    int iSigns = 0;
    const auto lives = [&] {
        if (++iSigns == 10)
            enough.set_value();
        return Clock::now();
    };
    const auto call = std::make_shared<Call>([&] { enough.get_future().wait(); });
    EXPECT_NO_THROW(pManager->executeFunction(call, nullptr, 1, lives));
    EXPECT_GE(iSigns, 10);
}

TEST(ComThread, HangingServerTimesOutAndItsClientCanBeDestroyed) {
    FakeProgram program;
    program.Set("sendSync", FakeProgram::Trouble::Hang);
    bool bRan = false;
    {
        QpstServer server("a");
        server.connect(5, 200);
        unsigned char aBytes[8] = {};
        unsigned short iSize = sizeof aBytes;
        Texts calls;
        while (std::count(calls.begin(), calls.end(), "sendSync 00") == 0) {
            EXPECT_THROW(server.sendSync(1, aBytes, &iSize, aBytes, 0), ComThreadManager::TimeoutException);
            calls = program.TakeCalls();
        }
        const auto pManager = ComThreadManager::Use();
        const auto run = [&] { bRan = true; };
        EXPECT_THROW(Execute(*pManager, run, 1), ComThreadManager::TimeoutException);
    }
    EXPECT_EQ(program.Views(), 1); // the abandoned worker still holds the view ...
    program.Set("sendSync", FakeProgram::Trouble::None);
    EXPECT_TRUE(Eventually([&] { return program.Views() == 0; })); // ... until the server responds
    EXPECT_FALSE(bRan); // a call abandoned before it started never runs
    QpstServer next("b");
    next.connect(5, 200);
    EXPECT_EQ(program.Views(), 1);
}

} // namespace
