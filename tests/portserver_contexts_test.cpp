// Connections in server mode, and the contexts and lists that lead to them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fake_port_server.h"
#include "link/event_listener.h"
#include "log_capture.h"
#include "phone_fixture.h"
#include "portserver/efs.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"
#include "qlib/call_layer.h"
#include "qlib/resource_manager.h"

namespace {

using Manager = QLib_ResourceManager;
using Trouble = FakeProgram::Trouble;
using Texts = std::vector<std::string>;

class ServerMode : public testing::Test {
protected:
    ServerMode() {
        m_server.connect(5, 200);
        m_diag.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 10000);
    }

    FakeProgram m_program;
    QpstServer m_server{"test"};
    Diag_FTM m_diag{&m_server, 5};
    LogCapture m_log{m_diag};
};

TEST_F(ServerMode, ARequestAndItsFailures) {
    m_program.phone.Script(Hex("4B 13"), {Hex("4B 13 01 02")});
    const Bytes request = Hex("4B 13");
    Bytes response(8, 0xEE);
    unsigned short iSize = 3;
    const auto send = [&](unsigned char iExpected, DWORD iTimeOut = 10000) {
        return m_diag.SendSync(2, request.data(), &iSize, response.data(), iExpected, iTimeOut, 0);
    };
    EXPECT_TRUE(send(0x4B));
    EXPECT_EQ(iSize, 3);
    EXPECT_EQ(response, Hex("4B 13 01 EE EE EE EE EE"));
    EXPECT_TRUE(m_log.Has(LOG_IO, "SEND: 4B 13 "));
    EXPECT_TRUE(m_log.Has(LOG_IO, "REC: 4B 13 01 02 "));
    response.assign(8, 0xEE);
    EXPECT_FALSE(send(0x4C));
    EXPECT_TRUE(m_log.Has(LOG_IO, "SEND SYNC Failed: expected 76 recreived 75"));
    m_program.phone.Misbehave({.action = Action::Drop});
    EXPECT_FALSE(send(0x4B, 50));
    EXPECT_TRUE(m_log.Has(LOG_ERR, "Timeout waiting for response"));
    m_program.phone.Unplug();
    EXPECT_FALSE(send(0x4B));
    EXPECT_TRUE(m_log.Has(LOG_ERR, "QpstServer::sendSync - COM exception thrown."));
    EXPECT_FALSE(m_diag.SendSync(0, request.data(), &iSize, response.data(), 0, 0, 0));
    EXPECT_EQ(iSize, 3);
    EXPECT_EQ(response, Bytes(8, 0xEE));
}

TEST_F(ServerMode, WhatNeedsTheSerialLinkIsRefused) {
    ASSERT_TRUE(m_diag.OpenPort());
    unsigned char aBytes[2] = {};
    unsigned short iSize = 2;
    EXPECT_FALSE(m_diag.SendASync(1, aBytes, 10, false));
    EXPECT_FALSE(m_diag.SendRAW(1, aBytes, &iSize, aBytes, 0, 10, 0));
    EXPECT_FALSE(m_diag.SetStartFlag(true));
    EXPECT_FALSE(m_diag.SetPacketMode(1));
    EXPECT_EQ(m_log.Of(LOG_RET),
              (Texts{"QLIB_SendASync() : FAIL in QPST mode", "QLIB_SendRAW() : FAIL in QPST mode",
                     "QLIB_SetStartFlag() : FAIL in QPST mode", "QLIB_SetPacketMode() : FAIL in QPST mode"}));
    EXPECT_FALSE(m_diag.SetPacketMode(3));
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_SetPacketMode() -  Error, Invalid packet mode"));
    EXPECT_FALSE(m_diag.SetDTR_State(true));
    EXPECT_FALSE(m_diag.SetRTS_State(true));
    EXPECT_FALSE(m_diag.FlushRxBuffer());
    CQLibMessageQueue queue(1);
    CQLibEventListener listener(&queue, &queue);
    EXPECT_FALSE(m_diag.AddEventListener(&listener, nullptr));
    EXPECT_EQ(m_program.phone.Requests(), std::vector<Bytes>{});
}

TEST_F(ServerMode, PacketsOfThePhoneArriveWhileThePortIsOpen) {
    std::vector<Bytes> packets;
    m_diag.ConfigureAsyncMessageCallBack(
        &packets, [](unsigned short iLength, unsigned char* pPacket, void* pUserData) {
            static_cast<std::vector<Bytes>*>(pUserData)->push_back({pPacket, pPacket + iLength});
        });
    Bytes packet = Hex("10 01 00 00");
    m_program.pPacketEvents->packetReceived(packet);
    ASSERT_TRUE(m_diag.OpenPort());
    ASSERT_TRUE(m_diag.OpenPort());
    packet[1] = 2;
    m_program.pPacketEvents->packetReceived(packet);
    EXPECT_TRUE(m_diag.ClosePort());
    m_program.pPacketEvents->packetReceived(packet);
    EXPECT_EQ(packets, std::vector<Bytes>{Hex("10 02 00 00")});
}

TEST_F(ServerMode, ReconnectingTriesAsOftenAsAsked) {
    ASSERT_TRUE(m_diag.OpenPort());
    m_program.TakeCalls();
    m_program.Set("selectPort", Trouble::Refuse);
    EXPECT_FALSE(m_diag.DisconnectAndWaitForReconnection(3));
    EXPECT_EQ(m_program.TakeCalls(), Texts(3, "selectPort COM5"));
    EXPECT_TRUE(m_log.Has(LOG_FN, "QLIB_DisconnectAndWaitForReconnection(iTimeOut_ms=3)"));
    EXPECT_TRUE(m_log.Has(LOG_ERR, "QpstServer::changeComPortImpl - Unable to change COM ports."));
    EXPECT_FALSE(m_diag.IsPhoneConnected());
    m_program.Set("selectPort", Trouble::None);
    m_program.TakeCalls();
    EXPECT_FALSE(m_diag.DisconnectAndWaitForReconnection(0));
    EXPECT_TRUE(m_diag.DisconnectAndWaitForReconnection(3));
    EXPECT_EQ(m_program.TakeCalls(), Texts{"selectPort COM5"});
}

TEST(ServerModeWithoutServer, EverythingFails) {
    Diag_FTM diag(nullptr, 5);
    unsigned char iByte = 0;
    unsigned short iSize = 1;
    EXPECT_FALSE(diag.OpenPort() || diag.IsPhoneConnected() || diag.DisconnectAndWaitForReconnection(2));
    EXPECT_FALSE(diag.SendSync(1, &iByte, &iSize, &iByte, 0, 10, 0));
    EXPECT_TRUE(diag.ClosePort());
}

class ServerContexts : public testing::Test {
protected:
    ServerContexts() { QLIB_SetQpstMode(1); }
    ~ServerContexts() override {
        Manager::DestroyAll();
        QLIB_SetQpstMode(0);
    }
    static std::vector<unsigned short> List(bool bPhones, unsigned short iCapacity, bool bExpected) {
        std::vector<unsigned short> ports(iCapacity);
        EXPECT_EQ(bPhones ? Manager::GetAvailablePhonesPortList(&iCapacity, ports.data(), 0, nullptr)
                          : Manager::GetAllPortList(&iCapacity, ports.data()),
                  bExpected);
        ports.resize(iCapacity);
        return ports;
    }
    static void ExpectNoObjects(void* hContext) {
        EXPECT_EQ(Manager::GetQpstServer(hContext), nullptr);
        EXPECT_EQ(Manager::GetEFS(hContext), nullptr);
        EXPECT_EQ(Manager::GetSoftwareDownload(hContext), nullptr);
    }

    FakeProgram m_program;
};

TEST_F(ServerContexts, EveryWayOfFailingIsTheAbsenceOfTheObject) {
    void* const hContext = Manager::CreateContext(5);
    for (const auto& [sFunction, eTrouble] : {std::pair("make", Trouble::Refuse),
                                              {"attach", Trouble::ComError},
                                              {"selectPort", Trouble::OddThrow}}) {
        m_program.Set(sFunction, eTrouble);
        ExpectNoObjects(hContext);
        EXPECT_EQ(Manager::GetDiag_FTM(hContext), nullptr);
        EXPECT_FALSE(QLIB_IsPhoneConnected(hContext));
        m_program.Set(sFunction, Trouble::None);
    }
    EXPECT_NE(Manager::GetDiag_FTM(hContext), nullptr); // a later call tries again
    for (const Trouble eTrouble : {Trouble::Refuse, Trouble::ComError, Trouble::OddThrow}) {
        m_program.Set("portNames", eTrouble);
        EXPECT_TRUE(List(false, 4, false).empty());
    }
    AttachPortServer(nullptr);
    Manager::DestroyAll();
    EXPECT_EQ(Manager::GetDiag_FTM(QLIB_ConnectPort(6)), nullptr);
    EXPECT_EQ(Manager::CreateContext(Manager::kAnyPort), nullptr);
    EXPECT_TRUE(List(true, 4, false).empty());
}

TEST_F(ServerContexts, ObjectsAreConnectedToThePortOfTheirContextAndDieWithIt) {
    void* const hContext = QLIB_ConnectPort(5);
    Manager::GetDiag_FTM(hContext)->ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 10000);
    EXPECT_TRUE(QLIB_IsPhoneConnected(hContext));
    EXPECT_TRUE(QLIB_EFS2_DIAG_MKDIR(hContext, "folder"));
    m_program.phone.WithFiles([](handset::FileSystem& files) { EXPECT_TRUE(files.Exists("folder")); });
    EXPECT_EQ(m_program.TakeCalls().at(1), "attach QLIB");
    QLIB_ConfigureCallBacks(
        hContext,
        [](char* const, unsigned char, unsigned short, unsigned char, unsigned char, DWORD, DWORD,
           void*) -> unsigned char { return 0; },
        [](void*) { return true; }, nullptr);
    EXPECT_EQ(m_program.TakeCalls(), (Texts{"make", "attach QLIB-EFS", "selectPort COM5", "make",
                                            "attach QLIB-SW Download", "selectPort COM5"}));
    EXPECT_EQ(Manager::GetEFS(hContext), Manager::GetEFS(hContext));
    EXPECT_TRUE(Manager::GetSoftwareDownload(hContext)->uploadHexFile("f"));
    EXPECT_EQ(m_program.Views(), 3);
    for (const char* const sFunction : {"sendSync", "selectPort", "begin"})
        m_program.Set(sFunction, Trouble::ComError);
    EXPECT_FALSE(QLIB_IsPhoneConnected(hContext));
    EXPECT_FALSE(QLIB_EFS2_DIAG_MKDIR(hContext, "x"));
    QLIB_DisconnectPort(hContext);
    EXPECT_EQ(m_program.Views(), 0);
    ExpectNoObjects(hContext);
    EXPECT_EQ(m_program.Threads().size(), 1U); // made, used and destroyed on the worker
    EXPECT_EQ(m_program.Threads().count(std::this_thread::get_id()), 0U);
}

TEST_F(ServerContexts, ListsComeFromTheServer) {
    EXPECT_EQ(List(false, 4, true), (std::vector<unsigned short>{5, 300}));
    EXPECT_EQ(List(true, 1, true), std::vector<unsigned short>{300});
    EXPECT_EQ(List(true, 0, true), std::vector<unsigned short>{});
    EXPECT_EQ(m_program.TakeCalls(),
              (Texts{"make", "attach QLIB-PortInfo", "portNames", "phones", "phones"}));
    unsigned short iPort = 0;
    void* const hContext = Manager::CreateContext(Manager::kAnyPort);
    EXPECT_TRUE(Manager::GetComPortNumber(hContext, &iPort));
    EXPECT_EQ(iPort, 300);
}

TEST_F(ServerContexts, WhatLivesKeepsItsModeWhenTheModeChanges) {
    char sVersion[21];
    void* const hServer = Manager::CreateContext(5);
    Diag_FTM* const pThroughServer = Manager::GetDiag_FTM(hServer);
    pThroughServer->ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 10000);
    Manager::GetLibraryVersion(sVersion);
    EXPECT_STREQ(sVersion, "QLIB V04.23,QPST");
    QLIB_SetQpstMode(2);
    ExpectNoObjects(hServer);
    EXPECT_EQ(Manager::GetDiag_FTM(hServer), pThroughServer);
    EXPECT_TRUE(pThroughServer->IsPhoneConnected());
    void* const hDirect = Manager::CreateContext(6);
    Diag_FTM* const pDirect = Manager::GetDiag_FTM(hDirect);
    ASSERT_NE(pDirect, nullptr);
    QLIB_SetQpstMode(1);
    EXPECT_EQ(Manager::GetDiag_FTM(hDirect), pDirect);
    EXPECT_TRUE(pDirect->SetDTR_State(true)); // has a link of its own
}

} // namespace
