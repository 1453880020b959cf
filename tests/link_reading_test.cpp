// Who reads the port: a waiting caller, or the receive thread when no caller waits.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <future>

#include "eventually.h"
#include "handset/framing.h"
#include "link/event_listener.h"
#include "link/serial_line.h"
#include "link/text_log.h"
#include "phone_fixture.h"

namespace {

const Bytes kPing = {0x4B, 0x13, 0x00, 0x00};
const Bytes kRecord = {0x10, 0, 4, 0, 4, 0, 1, 0};
const Bytes kSecondRecord = {0x10, 0, 4, 0, 4, 0, 2, 0};

Bytes operator+(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Bytes Take(CQLibMessageQueue& queue) {
    QueueItem item;
    const bool bTaken = queue.WaitPop(&item, 10000);
    return bTaken ? Bytes(item.data, item.data + item.length - 2) : Bytes{};
}

/// A listener, and the threads that called it.
struct ThreadsOfCalls : CQLibEvents_Listener {
    void messageReceived(LONG, unsigned char*, unsigned int, LONG, short, DWORD) override { Note(); }
    void Note() {
        const std::lock_guard lock(m_lock);
        m_threads.push_back(std::this_thread::get_id());
    }
    std::vector<std::thread::id> Threads() {
        const std::lock_guard lock(m_lock);
        return m_threads;
    }

private:
    std::mutex m_lock;
    std::vector<std::thread::id> m_threads;
};

/// An open line with phone logging on.
class ReadingTest : public testing::Test {
protected:
    ReadingTest() {
        listener.SetLoggingEnabled(true);
        line.Start({log, listener, responses});
        EXPECT_TRUE(line.Open(0));
    }
    ~ReadingTest() override { line.Stop(); }

    /// Calls `work` on the handset's thread for every ping; nothing else is sent.
    void OnPing(std::function<void()> work) {
        phone.Script(kPing, [work = std::move(work)](const Bytes&) {
            work();
            return std::vector<Bytes>{};
        });
    }

    /// Returns the response to a request without its FCS; empty when none came.
    Bytes Exchange(const Bytes& request, DWORD iTimeOut_ms = 10000, DWORD iReadDelay_ms = 0) {
        LineResponse response;
        if (!line.Exchange({request, request[0], true, iTimeOut_ms, iReadDelay_ms}, response))
            return {};
        return {response.item.data, response.item.data + response.iLength};
    }

    PluggedPhone plugged;
    handset::Handset& phone = plugged.phone;
    CQLibMessageQueue responses{16};
    CQLibMessageQueue unsolicited{16};
    CQLibEventListener listener{&unsolicited, &responses};
    DataLogFileHandler log;
    SerialLine line{1};
};

TEST_F(ReadingTest, RecordsAroundAResponseInOneReadKeepTheirOrder) {
    OnPing([&] {
        phone.SendWire(handset::Frame(kRecord) + handset::Frame(kPing) + handset::Frame(kSecondRecord));
    });
    EXPECT_EQ(Exchange(kPing), kPing);
    EXPECT_EQ(Take(unsolicited), kRecord);
    EXPECT_EQ(Take(unsolicited), kSecondRecord);
}

TEST_F(ReadingTest, FrameThatACallerLeavesIncompleteIsCompletedByTheReceiveThread) {
    const Bytes late = {0x4B, 0x7E, 0x7D, 3};
    const Bytes frame = handset::Frame(late);
    for (size_t iCut = 1; iCut < frame.size(); ++iCut) { // one cut is within an escape
        const auto middle = frame.begin() + static_cast<ptrdiff_t>(iCut);
        OnPing([&] { phone.SendWire(handset::Frame(kPing) + Bytes(frame.begin(), middle)); });
        EXPECT_EQ(Exchange(kPing), kPing);
        phone.SendWire({middle, frame.end()});
        EXPECT_EQ(Take(responses), late) << iCut;
    }
}

TEST_F(ReadingTest, AfterATimeOutTheReceiveThreadReadsOn) {
    OnPing([] {});
    EXPECT_EQ(Exchange(kPing, 30), Bytes{});
    phone.Send(kRecord);
    EXPECT_EQ(Take(unsolicited), kRecord);
    phone.Send({0x4B, 2});
    EXPECT_TRUE(Eventually([&] { return !responses.IsEmpty(); }));
    const Bytes next = {0x4B, 1};
    phone.Script(next, {next});
    EXPECT_EQ(Exchange(next), next);
}

TEST_F(ReadingTest, WhatArrivedJustBeforeARequestIsNoResponseToIt) {
    line.Close();
    const int fd = open(phone.TtyPath().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(line.Open(0));
    const auto HasArrived = [&] {
        int iWaiting = 0;
        return ioctl(fd, FIONREAD, &iWaiting) != 0 || iWaiting > 0 || !responses.IsEmpty();
    };
    const Bytes next = {0x4B, 1};
    phone.Script(next, {next});
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(Exchange(next), next);
        phone.Send({0x4B, 2});
        while (!HasArrived()) // usually before the receive thread resumes
            continue;
        constexpr DWORD kReadDelay_ms = 1; // this caller does not read
        ASSERT_EQ(Exchange(next, 10000, kReadDelay_ms), next);
        phone.Send({0x4B, 2});
        while (!HasArrived())
            continue;
    }
    close(fd);
}

TEST_F(ReadingTest, ObserversAddedWhileACallerReadsAreCalledOnTheDeliveryThread) {
    ThreadsOfCalls calls;
    const std::pair<std::function<void()>, std::function<void()>> cases[] = {
        {[&] { line.AddListener(&calls, nullptr); }, [&] { line.RemoveListener(&calls); }},
        {[&] {
             listener.ConfigureAsyncMessageCallBack(&calls, [](unsigned short, unsigned char*, void* pCalls) {
                 static_cast<ThreadsOfCalls*>(pCalls)->Note();
             });
         },
         [&] { listener.ConfigureAsyncMessageCallBack(nullptr, nullptr); }},
    };
    size_t iCalls = 0;
    for (const auto& [add, remove] : cases) {
        OnPing([&phone = phone, &add = add] {
            add();
            phone.SendWire(handset::Frame(kRecord) + handset::Frame(kPing));
        });
        EXPECT_EQ(Exchange(kPing), kPing);
        EXPECT_EQ(Take(unsolicited), kRecord); // before the response
        iCalls += 2;
        EXPECT_TRUE(Eventually([&] { return calls.Threads().size() == iCalls; }));
        remove();
        OnPing([&] { phone.Send(kPing); });
        EXPECT_EQ(Exchange(kPing), kPing);
    }
    EXPECT_EQ(calls.Threads().size(), iCalls);
    EXPECT_EQ(std::ranges::count(calls.Threads(), calls.Threads().front()), static_cast<ptrdiff_t>(iCalls));
    EXPECT_EQ(std::ranges::count(calls.Threads(), std::this_thread::get_id()), 0);
}

TEST_F(ReadingTest, ListenersComeAndGoWhileACallerReads) {
    phone.Script(kPing, {kPing});
    phone.SetChatter(3);
    std::atomic<bool> bStop{false};
    auto others = std::async(std::launch::async, [&] {
        while (!bStop) {
            const auto pCalls = std::make_unique<ThreadsOfCalls>();
            line.AddListener(pCalls.get(), nullptr);
            line.RemoveListener(pCalls.get());
        }
    });
    for (int i = 0; i < 2000; ++i)
        ASSERT_EQ(Exchange(kPing), kPing) << i;
    bStop = true;
}

TEST_F(ReadingTest, ClosingAndUnpluggingEndACallersTurn) {
    OnPing([&] { line.Close(); });
    EXPECT_EQ(Exchange(kPing, 50), Bytes{});
    OnPing([&] { phone.Unplug(); });
    ASSERT_TRUE(line.Open(0));
    EXPECT_EQ(Exchange(kPing, 50), Bytes{});
    line.Close();
    phone.Replug();
    phone.Script(kPing, {kPing});
    ASSERT_TRUE(line.Open(0));
    EXPECT_EQ(Exchange(kPing), kPing);
}

} // namespace
