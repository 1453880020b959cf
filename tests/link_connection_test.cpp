// The connection against a handset on a pseudo-terminal: requests, replies, controls and failures.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "diag/command_frame.h"
#include "eventually.h"
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
    /// What one request brought back.
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

    PluggedPhone plugged;
    handset::Handset& phone = plugged.phone;
    Connection connection;
};

TEST_F(ConnectionTest, AResponseIsCutToTheCapacityAndItsFcsNotCounted) {
    phone.Script(kPing, {kPing});
    const struct {
        unsigned short iCapacity;
        unsigned short iSize;
        size_t iWritten;
    } cases[] = {{4096, 4, 6}, {5, 4, 5}, {4, 4, 4}, {3, 3, 3}, {0, 0, 0}};
    for (const auto& entry : cases) {
        const Exchange exchange = Sync(kPing, entry.iCapacity);
        ASSERT_TRUE(exchange.bAnswered);
        EXPECT_EQ(exchange.iSize, entry.iSize);
        EXPECT_EQ(exchange.buffer[entry.iWritten], 0xEE);
        if (entry.iWritten > 0) {
            EXPECT_NE(exchange.buffer[entry.iWritten - 1], 0xEE);
        }
    }
    const Bytes wire = phone.WireBytes();
    ASSERT_EQ(wire.size(), 5U * 7);
    EXPECT_EQ(Bytes(wire.begin(), wire.begin() + 7), (Bytes{0x4B, 0x13, 0x00, 0x00, 0x8D, 0x40, 0x7E}));
}

TEST_F(ConnectionTest, AnOversizeAnswerIsCutByTheBufferAndTheNextRequestWorks) {
    Bytes big(4094, 0x4B); // with its FCS exactly what a packet may hold
    phone.Script(kPing, {big});
    const Exchange exchange = Sync(kPing);
    ASSERT_TRUE(exchange.bAnswered);
    EXPECT_EQ(exchange.iSize, 4094);
    phone.Script(kPing, {kPing});
    EXPECT_EQ(Sync(kPing).iSize, 4);
}

TEST_F(ConnectionTest, NoAnswerLeavesTheCallersBufferAlone) {
    LogCapture log(connection);
    for (const Action eAction : {Action::Drop, Action::Corrupt}) {
        phone.Behave();
        phone.Script(kPing, {kPing});
        phone.Misbehave({eAction, kPing});
        const Exchange exchange = Sync(kPing, 100, 50);
        EXPECT_FALSE(exchange.bAnswered);
        EXPECT_EQ(exchange.iSize, 100);
        EXPECT_EQ(exchange.buffer, Bytes(4100, 0xEE));
    }
    EXPECT_TRUE(log.Has(LOG_ERR, "Error. Read failed."));
}

TEST_F(ConnectionTest, AnErrorReplyIsLoggedAndNotTaken) {
    LogCapture log(connection);
    phone.Misbehave({Action::ProtocolError, kPing, 0, 1, 0x13});
    EXPECT_FALSE(Sync(kPing, 100, 100).bAnswered);
    const std::vector<std::string> lines = log.Of(LOG_IO);
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& sLine) {
        return sLine.starts_with("REC \t13 4B 13 00 00 ");
    }));
}

TEST_F(ConnectionTest, ALateAnswerIsNotTakenByTheNextRequest) {
    const Bytes first = {0x4B, 1}, second = {0x4B, 2};
    phone.Script(first, {first});
    phone.Script(second, {second});
    phone.Misbehave({Action::Delay, first, 0, 1, 60});
    EXPECT_FALSE(Sync(first, 100, 10).bAnswered);
    // It has arrived once the phone has recorded and answered this one.
    EXPECT_TRUE(connection.IsPhoneConnected() || connection.IsPhoneConnected());
    const Exchange exchange = Sync(second);
    ASSERT_TRUE(exchange.bAnswered);
    EXPECT_EQ(exchange.buffer[1], 2);
}

TEST_F(ConnectionTest, ThousandsOfUnsolicitedPacketsDoNotHideTheAnswer) {
    std::atomic<int> iSeen{0};
    connection.ConfigureAsyncMessageCallBack(&iSeen, [](unsigned short, unsigned char*, void* pSeen) {
        ++*static_cast<std::atomic<int>*>(pSeen);
    });
    phone.Script(kPing, {kPing});
    phone.SetChatter(3000);
    EXPECT_TRUE(Sync(kPing).bAnswered);
    EXPECT_EQ(iSeen, 3001); // the callback sees every packet, the answer included
}

TEST_F(ConnectionTest, ThePhoneCheckFollowsLoopbackAndVersion) {
    const Bytes version = {0x00};
    const Bytes wrongEcho = {0x7B, 0, 1, 2, 3, 4, 5, 6, 7, 8, 8};
    const struct {
        const char* sWhat;
        std::vector<Bytes> loopback;
        std::vector<Bytes> version;
        bool bConnected;
    } cases[] = {
        {"both answered", {kLoopback}, {{0x00, 0x01}}, true},
        {"no version", {kLoopback}, {}, true},
        {"version of one byte", {kLoopback}, {{0x00}}, false},
        {"wrong echo, version good", {wrongEcho}, {{0x00, 0x01}}, true},
        {"wrong echo, no version", {wrongEcho}, {}, false},
        {"echo too long, no version", {Bytes(kLoopback.begin(), kLoopback.end() - 1)}, {}, false},
        {"silent", {}, {}, false},
    };
    connection.SetData2DiagSearch(false);
    for (const auto& entry : cases) {
        phone.Script({0x7B}, entry.loopback);
        phone.Script(version, entry.version);
        phone.ClearRequests();
        EXPECT_EQ(connection.IsPhoneConnected(), entry.bConnected) << entry.sWhat;
        EXPECT_EQ(phone.Requests().front(), kLoopback);
    }
}

TEST_F(ConnectionTest, APhoneInDataModeIsSwitchedBack) {
    phone.SetDataMode(true);
    connection.SetData2DiagSearch(false);
    EXPECT_FALSE(connection.IsPhoneConnected());
    EXPECT_TRUE(phone.DataMode());
    connection.SetData2DiagSearch(true);
    EXPECT_TRUE(connection.IsPhoneConnected());
    EXPECT_FALSE(phone.DataMode());
    EXPECT_TRUE(connection.IsPhoneConnected());
}

TEST_F(ConnectionTest, PacketModesSwitchThePhoneAndCarryText) {
    LogCapture log(connection);
    EXPECT_FALSE(connection.SetPacketMode(3));
    EXPECT_TRUE(log.Has(LOG_FN, "QLIB_SetPacketMode() -  Error, Invalid packet mode"));
    ASSERT_TRUE(connection.SetPacketMode(1));
    EXPECT_TRUE(phone.DataMode());
    unsigned char aReply[64];
    unsigned short iSize = sizeof aReply;
    const unsigned char aCommand[] = {'A', 'T', '\r'};
    ASSERT_TRUE(connection.SendRAW(sizeof aCommand, aCommand, &iSize, aReply, 0, 10000, 0));
    EXPECT_TRUE(std::string(aReply, aReply + iSize).ends_with("OK")); // its full length, nothing stripped
    ASSERT_TRUE(connection.SetPacketMode(0));
    EXPECT_FALSE(phone.DataMode());
    EXPECT_TRUE(connection.IsPhoneConnected());
    phone.Script({0x44}, {{0x44, 0x00}});
    EXPECT_FALSE(connection.SetPacketMode(1)); // the phone does not follow
    EXPECT_TRUE(connection.IsPhoneConnected());
    EXPECT_EQ(log.Of(LOG_IO).front(), "SEND (1 bytes):44 ");
}

TEST_F(ConnectionTest, ARequestMayBeAnsweredWithAnotherFirstByte) {
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

TEST_F(ConnectionTest, TheRawRequestTakesWhateverComesFirst) {
    const Bytes other = {0x13, 0x4B};
    phone.Script(kPing, {other});
    unsigned char aReply[64];
    unsigned short iSize = sizeof aReply;
    ASSERT_TRUE(connection.SendRAW(4, kPing.data(), &iSize, aReply, 0, 10000, 0));
    EXPECT_EQ(iSize, 4); // two bytes and their FCS
    EXPECT_EQ(aReply[0], 0x13);
}

TEST_F(ConnectionTest, TheStartFlagGoesInFrontOfFrames) {
    phone.Script(kPing, {kPing});
    EXPECT_FALSE(connection.SetStartFlag(true));
    EXPECT_TRUE(connection.SetStartFlag(true));
    ASSERT_TRUE(Sync(kPing).bAnswered);
    EXPECT_TRUE(connection.SetStartFlag(false));
    ASSERT_TRUE(connection.SendASync(4, kPing.data(), 1, true));
    ASSERT_TRUE(connection.SendASync(4, kPing.data(), 1, false));
    ASSERT_TRUE(phone.WaitForRequests(3));
    const Bytes frame = {0x4B, 0x13, 0x00, 0x00, 0x8D, 0x40, 0x7E};
    Bytes expected;
    for (const bool bFlag : {true, true, false}) {
        if (bFlag)
            expected.push_back(0x7E);
        expected.insert(expected.end(), frame.begin(), frame.end());
    }
    EXPECT_EQ(phone.WireBytes(), expected);
}

TEST_F(ConnectionTest, RequestsThatDoNotFitAreNotWritten) {
    LogCapture log(connection);
    EXPECT_TRUE(connection.SendASync(4093, Bytes(4093, 0x20).data(), 1, false));
    EXPECT_FALSE(connection.SendASync(4094, Bytes(4094, 0x20).data(), 1, false));
    EXPECT_FALSE(Sync(Bytes(4093, 0x7E)).bAnswered);
    EXPECT_EQ(log.Of(LOG_ERR_AHDLC),
              std::vector<std::string>(2, "  Error. String size exceeds maximum buffer size."));
    EXPECT_TRUE(log.Has(LOG_ERR, "Error. Send data failed."));
    ASSERT_TRUE(phone.WaitForRequests(1));
}

TEST_F(ConnectionTest, UnpluggingFailsRequestsAndReplugNeedsANewPort) {
    phone.Script(kPing, {kPing});
    ASSERT_TRUE(Sync(kPing).bAnswered);
    phone.Misbehave({Action::Unplug, kPing});
    EXPECT_FALSE(Sync(kPing, 100, 300).bAnswered);
    EXPECT_FALSE(Sync(kPing, 100, 300).bAnswered);
    EXPECT_FALSE(connection.IsPhoneConnected());
    phone.Replug();
    EXPECT_FALSE(Sync(kPing, 100, 100).bAnswered); // the old port stays dead
    EXPECT_TRUE(connection.ClosePort());
    EXPECT_TRUE(Sync(kPing).bAnswered);
}

TEST_F(ConnectionTest, APortHeldByAnotherConnectionCannotBeOpened) {
    ASSERT_TRUE(connection.OpenPort());
    Connection second;
    EXPECT_FALSE(second.OpenPort());
    EXPECT_FALSE(second.IsPhoneConnected());
    EXPECT_TRUE(connection.ClosePort());
    EXPECT_TRUE(second.IsPhoneConnected());
    EXPECT_FALSE(Connection(2).OpenPort()); // no such port
    EXPECT_FALSE(Connection(0).OpenPort());
    EXPECT_FALSE(Connection(101).OpenPort());
}

TEST_F(ConnectionTest, OpeningAndClosingOverAndOverWhileTrafficRuns) {
    std::atomic<bool> bStop{false};
    std::thread chatter([&] {
        while (!bStop)
            phone.Send({0x10, 0, 4, 0, 4, 0, 1, 0});
    });
    phone.Script(kPing, {kPing});
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(connection.OpenPort());
        ASSERT_TRUE(Sync(kPing).bAnswered);
        ASSERT_TRUE(connection.ClosePort());
    }
    bStop = true;
    chatter.join();
}

TEST_F(ConnectionTest, ListenersSeeEveryPacketThatTheirFilterAccepts) {
    struct Counter : CQLibEvents_Listener {
        void messageReceived(LONG, unsigned char*, unsigned int, LONG, short, DWORD) override { ++iCount; }
        std::atomic<int> iCount{0};
    } all, logsOnly;
    struct LogFilter : CQLibEvents_Filter {
        bool acceptMessage(LONG, unsigned char* pData, unsigned int, LONG, short, DWORD) override {
            return pData[0] == 0x10;
        }
    } filter;
    phone.Script(kPing, {kPing});
    EXPECT_TRUE(connection.AddEventListener(&all, nullptr));
    EXPECT_TRUE(connection.AddEventListener(&logsOnly, &filter));
    phone.SetChatter(2);
    ASSERT_TRUE(Sync(kPing).bAnswered);
    EXPECT_TRUE(Eventually([&] { return all.iCount == 3; }));
    EXPECT_EQ(logsOnly.iCount, 2);
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
        return std::pair(!async.IsEmpty() && async.Clear(), !sync.IsEmpty() && sync.Clear());
    };
    const struct {
        Bytes packet;
        bool bAsync;
        bool bSync;
    } cases[] = {
        {{0x4B, 1}, false, true},          {{0x13, 1}, false, true}, {{0x10, 1}, true, false},
        {{0x1F, 1}, true, false},          {{0x79, 1}, true, false}, {{0x60, 5, 0, 1, 0}, true, false},
        {{0x60, 0, 0, 1, 0}, false, true}, {{0x60, 0}, true, false}, {{0x4B}, false, false},
        {Bytes(5000, 0x4B), false, true},
    };
    for (const auto& entry : cases) {
        listener.SetLoggingEnabled(true);
        EXPECT_EQ(Receive(entry.packet), std::pair(entry.bAsync, entry.bSync)) << int(entry.packet[0]);
        listener.SetLoggingEnabled(false); // unsolicited traffic is dropped, responses are not
        EXPECT_EQ(Receive(entry.packet), std::pair(false, entry.bSync)) << int(entry.packet[0]);
    }
}

TEST_F(ConnectionTest, FactoryTestAnswersAreJudgedByTheirHeader) {
    CommandFrame frame(connection);
    const auto Answer = [&](const Bytes& request, const Bytes& answer) {
        phone.Script({request[0]}, {answer});
    };
    const struct {
        FTM_Command_Type eType;
        bool (CommandFrame::*send)();
        Bytes answer;
        bool bAccepted;
    } cases[] = {
        {FTM_COMMAND_75, &CommandFrame::SendFtmCmd, {75, 11, 1, 0, 9}, true},
        {FTM_COMMAND_75, &CommandFrame::SendFtmCmd, {75, 11, 2, 0, 9}, false},
        {FTM_COMMAND_75, &CommandFrame::SendFtmCmd, {75, 12, 1, 0, 9}, false},
        {FTM_COMMAND_75, &CommandFrame::SendFtmCmd, {75, 11}, false},
        {FTM_COMMAND_59, &CommandFrame::SendFtmCmd, {59, 0x77, 0, 6, 0}, true},
        {FTM_COMMAND_59, &CommandFrame::SendFtmCmd, {59, 0x78, 0, 6, 0}, false},
        {FTM_COMMAND_75, &CommandFrame::SendEVDO, {75, 11, 8, 0, 1, 0, 0}, true},
        {FTM_COMMAND_75, &CommandFrame::SendEVDO, {75, 11, 8, 0, 1, 0, 1}, false},
        {FTM_COMMAND_75, &CommandFrame::SendEVDO, {75, 11, 8, 0, 1, 0}, false},
        {FTM_COMMAND_75, &CommandFrame::SendCDMA2000, {75, 99}, true},
        {FTM_COMMAND_59, &CommandFrame::SendCDMA2000, {59, 0x77, 0}, true},
    };
    for (const auto& entry : cases) {
        frame.SetCommandType(entry.eType);
        frame.FormatFTMHeader().U16(1).U32(2);
        Answer({static_cast<unsigned char>(entry.eType)}, entry.answer);
        EXPECT_EQ((frame.*entry.send)(), entry.bAccepted);
    }
    EXPECT_EQ(phone.Requests().back(), (Bytes{59, 0x77, 0, 6, 0, 1, 0, 2, 0, 0, 0}));

    // Behind the fields that mirror a type-59 request the phone may send more: takes skip it.
    frame.FormatFTMHeader().U16(1).U32(2);
    Answer({59}, {59, 0x77, 0, 6, 0, 0xAA, 0xBB, 1, 2, 3, 4, 5, 6});
    ASSERT_TRUE(frame.SendFtmCmd());
    DWORD iValue = 0;
    ASSERT_TRUE(frame.Response().Take(iValue));
    EXPECT_EQ(iValue, 0x04030201U);
}

} // namespace
