// The connection to a handset on a pseudo-terminal: requests, responses, controls and failures.
#include <pthread.h>

#include <atomic>
#include <optional>
#include <thread>

#include "diag/command_frame.h"
#include "eventually.h"
#include "link/time_out_table.h"
#include "phone_fixture.h"

namespace {

const Bytes kLoopback = {0x7B, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
const Bytes kPing = {0x4B, 0x13, 0x00, 0x00};

class Connection : public DiagConnection {
public:
    explicit Connection(int iPort = 1) : DiagConnection(iPort) { StartUp(); }
    ~Connection() override { ShutDown(); }
};

class ConnectionTest : public testing::Test {
protected:
    ConnectionTest() { phone.Script(kPing, {kPing}); }

    /// The outcome of one request.
    struct Exchange {
        bool bAnswered;
        unsigned short iSize;
        Bytes buffer;
    };

    Exchange Sync(const Bytes& request, unsigned short iCapacity = 4096, DWORD iTimeout = 10000) {
        Exchange exchange{false, iCapacity, Bytes(4100, 0xEE)};
        exchange.bAnswered =
            connection.SendSync(static_cast<unsigned short>(request.size()), request.data(), &exchange.iSize,
                                exchange.buffer.data(), request[0], iTimeout, 0);
        return exchange;
    }

    /// Returns the response to a raw request. A failure fails the test.
    Bytes Raw(const Bytes& request) {
        Bytes reply(64);
        unsigned short iSize = 64;
        EXPECT_TRUE(connection.SendRAW(static_cast<unsigned short>(request.size()), request.data(), &iSize,
                                       reply.data(), 0, 10000, 0));
        reply.resize(iSize);
        return reply;
    }

    PluggedPhone plugged;
    handset::Handset& phone = plugged.phone;
    Connection connection;
};

/// While an object lives, no thread can start: its stack would exceed the address space.
class NoMoreThreads {
public:
    NoMoreThreads() {
        pthread_getattr_default_np(&m_former);
        pthread_attr_t huge;
        pthread_attr_init(&huge);
        pthread_attr_setstacksize(&huge, size_t{1} << 50);
        EXPECT_EQ(pthread_setattr_default_np(&huge), 0);
        pthread_attr_destroy(&huge);
    }
    ~NoMoreThreads() { pthread_setattr_default_np(&m_former); }

private:
    pthread_attr_t m_former;
};

TEST_F(ConnectionTest, PortDoesNotOpenWithoutItsThreads) {
    std::optional<NoMoreThreads> none(std::in_place);
    Connection other;
    EXPECT_FALSE(other.OpenPort());      // no delivery thread
    EXPECT_FALSE(connection.OpenPort()); // no receive thread
    none.reset();
    ASSERT_TRUE(connection.OpenPort());
    EXPECT_TRUE(Sync(kPing).bAnswered);
    connection.ClosePort();
    EXPECT_TRUE(other.OpenPort());
}

TEST_F(ConnectionTest, ResponseIsCutToTheCapacityWithoutItsFcs) {
    const std::tuple<unsigned short, unsigned short, size_t> cases[] = {
        {4096, 4, 6}, {5, 4, 5}, {4, 4, 4}, {3, 3, 3}, {0, 0, 0}};
    for (const auto& [iCapacity, iSize, iWritten] : cases) {
        const Exchange exchange = Sync(kPing, iCapacity);
        ASSERT_TRUE(exchange.bAnswered);
        EXPECT_EQ(exchange.iSize, iSize);
        EXPECT_EQ(exchange.buffer[iWritten], 0xEE);
        EXPECT_TRUE(iWritten == 0 || exchange.buffer[iWritten - 1] != 0xEE);
    }
    phone.Script(kPing, {Bytes(4094, 0x4B)}); // with its FCS the longest possible packet
    EXPECT_EQ(Sync(kPing).iSize, 4094);
    phone.Script(kPing, {kPing});
    EXPECT_EQ(Sync(kPing).iSize, 4);
}

TEST_F(ConnectionTest, UnusableResponsesLeaveTheCallersBufferUnchanged) {
    LogCapture log(connection);
    for (const Action eAction : {Action::Drop, Action::Corrupt, Action::ProtocolError}) {
        phone.Misbehave({eAction, kPing, 0, 1, 0x13});
        const Exchange exchange = Sync(kPing, 100, 50);
        EXPECT_FALSE(exchange.bAnswered);
        EXPECT_EQ(exchange.iSize, 100);
        EXPECT_EQ(exchange.buffer, Bytes(4100, 0xEE));
    }
    EXPECT_TRUE(log.Has(LOG_ERR, "Error. Read failed."));
    EXPECT_TRUE(std::ranges::any_of(
        log.Of(LOG_IO), [](const std::string& sLine) { return sLine.starts_with("REC \t13 4B 13 00 00 "); }));
}

TEST_F(ConnectionTest, LateResponseDoesNotAnswerTheNextRequest) {
    const Bytes first = {0x4B, 1}, second = {0x4B, 2};
    phone.Script(first, {first});
    phone.Script(second, {second});
    phone.Misbehave({Action::Delay, first, 0, 1, 60});
    EXPECT_FALSE(Sync(first, 100, 10).bAnswered);
    // The late response has arrived when the phone has answered the phone check.
    EXPECT_TRUE(connection.IsPhoneConnected() || connection.IsPhoneConnected());
    const Exchange exchange = Sync(second);
    ASSERT_TRUE(exchange.bAnswered);
    EXPECT_EQ(exchange.buffer[1], 2);
}

TEST_F(ConnectionTest, ThousandsOfUnsolicitedPacketsDoNotHideTheResponse) {
    std::atomic<int> iSeen{0};
    connection.ConfigureAsyncMessageCallBack(&iSeen, [](unsigned short, unsigned char*, void* pSeen) {
        ++*static_cast<std::atomic<int>*>(pSeen);
    });
    phone.SetChatter(3000);
    EXPECT_TRUE(Sync(kPing).bAnswered);
    EXPECT_EQ(iSeen, 3001); // the callback receives every packet, including the response
}

TEST_F(ConnectionTest, PhoneCheckUsesLoopbackAndVersion) {
    const Bytes wrongEcho = {0x7B, 0, 1, 2, 3, 4, 5, 6, 7, 8, 8};
    const Bytes shortEcho(kLoopback.begin(), kLoopback.end() - 1);
    const std::tuple<const char*, std::vector<Bytes>, std::vector<Bytes>, bool> cases[] = {
        {"both answered", {kLoopback}, {{0x00, 0x01}}, true},
        {"no version", {kLoopback}, {}, true},
        {"version of one byte", {kLoopback}, {{0x00}}, false},
        {"wrong echo, version good", {wrongEcho}, {{0x00, 0x01}}, true},
        {"wrong echo, no version", {wrongEcho}, {}, false},
        {"echo too short, no version", {shortEcho}, {}, false},
        {"silent", {}, {}, false},
    };
    connection.SetData2DiagSearch(false);
    for (const auto& [sWhat, loopback, version, bConnected] : cases) {
        phone.Script({0x7B}, loopback);
        phone.Script({0x00}, version);
        phone.ClearRequests();
        EXPECT_EQ(connection.IsPhoneConnected(), bConnected) << sWhat;
        EXPECT_EQ(phone.Requests().front(), kLoopback);
    }
}

TEST_F(ConnectionTest, PhoneInDataModeIsSwitchedBack) {
    phone.SetDataMode(true);
    connection.SetData2DiagSearch(false);
    EXPECT_FALSE(connection.IsPhoneConnected());
    EXPECT_TRUE(phone.DataMode());
    connection.SetData2DiagSearch(true);
    EXPECT_TRUE(connection.IsPhoneConnected());
    EXPECT_FALSE(phone.DataMode());
}

TEST_F(ConnectionTest, PacketModesSwitchThePhoneAndTransferText) {
    LogCapture log(connection);
    EXPECT_FALSE(connection.SetPacketMode(3));
    EXPECT_TRUE(log.Has(LOG_FN, "QLIB_SetPacketMode() -  Error, Invalid packet mode"));
    ASSERT_TRUE(connection.SetPacketMode(1));
    EXPECT_TRUE(phone.DataMode());
    const Bytes reply = Raw({'A', 'T', '\r'});
    EXPECT_TRUE(std::string(reply.begin(), reply.end()).ends_with("OK")); // full length, nothing stripped
    ASSERT_TRUE(connection.SetPacketMode(0));
    EXPECT_FALSE(phone.DataMode());
    EXPECT_TRUE(connection.IsPhoneConnected());
    phone.Script({0x44}, {{0x44, 0x00}});
    EXPECT_FALSE(connection.SetPacketMode(1)); // the phone does not comply
    EXPECT_TRUE(connection.IsPhoneConnected());
    EXPECT_EQ(log.Of(LOG_IO).front(), "SEND (1 bytes):44 ");
    phone.Script(kPing, {{0x13, 0x4B}});
    const Bytes other = Raw(kPing); // the first packet, whatever it is
    EXPECT_EQ(other.size(), 4u);    // two bytes and their FCS
    EXPECT_EQ(other.at(0), 0x13);
}

TEST_F(ConnectionTest, ResponseMayHaveAnotherFirstByte) {
    CommandFrame frame(connection);
    phone.Script({0x07}, {{0x13, 0x07}, {0x07, 1}, {0x08, 2, 3}});
    frame.BeginRequest().U8(0x07);
    ASSERT_TRUE(frame.SendWithDifferentResponseCmd(0x08, 0));
    EXPECT_EQ(Bytes(frame.Buffer().ResponseBytes(), frame.Buffer().ResponseBytes() + 3), (Bytes{0x08, 2, 3}));
    EXPECT_EQ(frame.Response().Size(), 3U);
    connection.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 50);
    frame.BeginRequest().U8(0x07);
    EXPECT_FALSE(frame.SendWithDifferentResponseCmd(0x09, 0));
    frame.BeginRequest();
    EXPECT_FALSE(frame.SendWithDifferentResponseCmd(0x08, 0)); // nothing to send
}

TEST_F(ConnectionTest, StartFlagPrecedesFrames) {
    EXPECT_FALSE(connection.SetStartFlag(true));
    EXPECT_TRUE(connection.SetStartFlag(true));
    ASSERT_TRUE(Sync(kPing).bAnswered);
    EXPECT_TRUE(connection.SetStartFlag(false));
    ASSERT_TRUE(connection.SendASync(4, kPing.data(), 1, true));
    ASSERT_TRUE(connection.SendASync(4, kPing.data(), 1, false));
    ASSERT_TRUE(phone.WaitForRequests(3));
    EXPECT_EQ(phone.WireBytes(), Hex("7E 4B 13 00 00 8D 40 7E 7E 4B 13 00 00 8D 40 7E 4B 13 00 00 8D 40 7E"));
}

TEST_F(ConnectionTest, TooLongRequestsAreNotSent) {
    LogCapture log(connection);
    EXPECT_TRUE(connection.SendASync(4093, Bytes(4093, 0x20).data(), 1, false));
    EXPECT_FALSE(connection.SendASync(4094, Bytes(4094, 0x20).data(), 1, false));
    EXPECT_FALSE(Sync(Bytes(4093, 0x7E)).bAnswered);
    EXPECT_EQ(log.Of(LOG_ERR_AHDLC),
              std::vector<std::string>(2, "  Error. String size exceeds maximum buffer size."));
    EXPECT_TRUE(log.Has(LOG_ERR, "Error. Send data failed."));
    ASSERT_TRUE(phone.WaitForRequests(1));
}

TEST_F(ConnectionTest, UnpluggingFailsRequestsUntilThePortIsReopened) {
    ASSERT_TRUE(Sync(kPing).bAnswered);
    phone.Misbehave({Action::Unplug, kPing});
    EXPECT_FALSE(Sync(kPing, 100, 300).bAnswered);
    EXPECT_FALSE(Sync(kPing, 100, 300).bAnswered);
    EXPECT_FALSE(connection.IsPhoneConnected());
    phone.Replug();
    EXPECT_FALSE(Sync(kPing, 100, 100).bAnswered); // the old port remains unusable
    EXPECT_TRUE(connection.ClosePort());
    EXPECT_TRUE(Sync(kPing).bAnswered);
}

TEST_F(ConnectionTest, RepeatedOpeningAndClosingDuringTraffic) {
    std::atomic<bool> bStop{false};
    std::thread chatter([&] {
        while (!bStop) {
            phone.Send({0x10, 0, 4, 0, 4, 0, 1, 0});
            std::this_thread::sleep_for(std::chrono::microseconds(20)); // faster than any serial line
        }
    });
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(connection.OpenPort());
        ASSERT_TRUE(Sync(kPing).bAnswered);
        ASSERT_TRUE(connection.ClosePort());
    }
    bStop = true;
    chatter.join();
}

TEST_F(ConnectionTest, ListenersReceivePacketsThatTheirFilterAccepts) {
    struct Counter : CQLibEvents_Listener {
        void messageReceived(LONG, unsigned char*, unsigned int, LONG, short, DWORD) override { ++iCount; }
        std::atomic<int> iCount{0};
    } all, logsOnly;
    struct LogFilter : CQLibEvents_Filter {
        bool acceptMessage(LONG, unsigned char* pData, unsigned int, LONG, short, DWORD) override {
            return pData[0] == 0x10;
        }
    } filter;
    EXPECT_TRUE(connection.AddEventListener(&all, nullptr));
    EXPECT_TRUE(connection.AddEventListener(&logsOnly, &filter));
    phone.SetChatter(2);
    ASSERT_TRUE(Sync(kPing).bAnswered);
    EXPECT_TRUE(Eventually([&] { return all.iCount == 3 && logsOnly.iCount == 2; }));
    connection.RemoveEventListener(&all);
    ASSERT_TRUE(Sync(kPing).bAnswered);
    EXPECT_TRUE(Eventually([&] { return logsOnly.iCount == 4; }));
    EXPECT_EQ(all.iCount, 3);
    connection.RemoveEventListener(&logsOnly);
}

TEST(ConnectionSettings, TimeOutsAndTimers) {
    Connection connection(99);
    const DWORD aDefaults[] = {4000, 80, 200, 1000, 6000, 10000, 10000};
    for (int i = 0; i < kTimeOutCount; ++i)
        EXPECT_EQ(connection.GetTimeOut(static_cast<QMSL_TimeOutType_Enum>(i)), aDefaults[i]);
    for (const int iId : {-1, 7}) {
        EXPECT_FALSE(connection.ConfigureTimeOut(static_cast<QMSL_TimeOutType_Enum>(iId), 5));
        EXPECT_EQ(connection.GetTimeOut(static_cast<QMSL_TimeOutType_Enum>(iId)), 0U);
    }
    EXPECT_TRUE(connection.ConfigureTimeOut(QMSL_TimeOut_SyncRequest, 0));
    EXPECT_EQ(connection.GetTimeOut(QMSL_TimeOut_SyncRequest), 0U);
    for (const int iNoPort : {2, 0, 101})
        EXPECT_FALSE(Connection(iNoPort).OpenPort()) << iNoPort;
    EXPECT_TRUE(connection.ClosePort());
    EXPECT_FALSE(connection.DisconnectAndWaitForReconnection(5));

    LogCapture log(connection, LOG_RET);
    EXPECT_EQ(connection.StartTimer(), 1U);
    EXPECT_EQ(Connection(98).StartTimer(), 2U);
    EXPECT_EQ(connection.GetTimerElapsed(2), 0U);
    EXPECT_EQ(connection.StopTimer(2), 0U);
    EXPECT_TRUE(Eventually([&] { return connection.StopTimer(1) >= 2; }));
    EXPECT_GE(connection.PrintTimer(1, "took "), 2U);
    EXPECT_EQ(log.Of(LOG_RET).front(), " Timer handle not found: 2");
    EXPECT_TRUE(log.Of(LOG_RET).back().starts_with("took "));
    EXPECT_EQ(log.Of(LOG_RET).size(), 2U);
}

TEST(EventListener, RoutesByTheFirstByte) {
    CQLibMessageQueue async(16), sync(16);
    CQLibEventListener listener(&async, &sync);
    const auto Receive = [&](Bytes packet) {
        listener.messageReceived(static_cast<LONG>(packet.size()), packet.data(), 0, 0, 0, 0);
        return std::string(!async.IsEmpty() && async.Clear() ? "async" : "") +
               (!sync.IsEmpty() && sync.Clear() ? "sync" : "");
    };
    const std::pair<Bytes, std::string> cases[] = {
        {{0x4B, 1}, "sync"},          {{0x13, 1}, "sync"},  {{0x10, 1}, "async"},
        {{0x1F, 1}, "async"},         {{0x79, 1}, "async"}, {{0x60, 5, 0, 1, 0}, "async"},
        {{0x60, 0, 0, 1, 0}, "sync"}, {{0x60, 0}, "async"}, {{0x4B}, ""},
        {Bytes(5000, 0x4B), "sync"},
    };
    for (const auto& [packet, sQueue] : cases) {
        listener.SetLoggingEnabled(true);
        EXPECT_EQ(Receive(packet), sQueue) << int(packet[0]);
        listener.SetLoggingEnabled(false); // drops unsolicited packets, but not responses
        EXPECT_EQ(Receive(packet), sQueue == "async" ? "" : sQueue) << int(packet[0]);
    }
}

TEST_F(ConnectionTest, FactoryTestResponsesAreCheckedByTheirHeader) {
    CommandFrame frame(connection);
    using Frame = CommandFrame;
    const std::tuple<bool (Frame::*)(), Bytes, bool> cases[] = {
        {&Frame::SendFtmCmd, {75, 11, 1, 0, 9}, true},     {&Frame::SendFtmCmd, {75, 11, 2, 0, 9}, false},
        {&Frame::SendFtmCmd, {75, 12, 1, 0, 9}, false},    {&Frame::SendFtmCmd, {75, 11}, false},
        {&Frame::SendFtmCmd, {59, 0x77, 0, 6, 0}, true},   {&Frame::SendFtmCmd, {59, 0x78, 0, 6, 0}, false},
        {&Frame::SendEVDO, {75, 11, 8, 0, 1, 0, 0}, true}, {&Frame::SendEVDO, {75, 11, 8, 0, 1, 0, 1}, false},
        {&Frame::SendEVDO, {75, 11, 8, 0, 1, 0}, false},   {&Frame::SendCDMA2000, {75, 99}, true},
        {&Frame::SendCDMA2000, {59, 0x77, 0}, true},
    };
    for (const auto& [send, answer, bAccepted] : cases) {
        frame.SetCommandType(static_cast<FTM_Command_Type>(answer[0]));
        frame.FormatFTMHeader().U16(1).U32(2);
        phone.Script({answer[0]}, {answer});
        EXPECT_EQ((frame.*send)(), bAccepted);
    }
    EXPECT_EQ(phone.Requests().back(), (Bytes{59, 0x77, 0, 6, 0, 1, 0, 2, 0, 0, 0}));

    // After the fields that mirror a type-59 request, the phone may send more bytes, which Take skips.
    frame.FormatFTMHeader().U16(1).U32(2);
    phone.Script({59}, {{59, 0x77, 0, 6, 0, 0xAA, 0xBB, 1, 2, 3, 4, 5, 6}});
    ASSERT_TRUE(frame.SendFtmCmd());
    DWORD iValue = 0;
    ASSERT_TRUE(frame.Response().Take(iValue));
    EXPECT_EQ(iValue, 0x04030201U);
}

} // namespace
