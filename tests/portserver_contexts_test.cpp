// Connections in server mode, and the contexts and port lists for them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fake_port_server.h"
#include "log_capture.h"
#include "portserver/efs.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"
#include "qlib/call_layer.h"
#include "qlib/diag_ftm.h"
#include "qlib/resource_manager.h"

namespace {

using handset::Bytes;
using Manager = QLib_ResourceManager;
using Trouble = FakeProgram::Trouble;
using Texts = std::vector<std::string>;

class ServerMode : public testing::Test {
protected:
    ServerMode() { m_server.connect(5, 200); }

    FakeProgram m_program;
    QpstServer m_server{"test"};
    Diag_FTM m_diag{&m_server, 5};
    LogCapture m_log{m_diag};
};

TEST_F(ServerMode, RequestAndItsFailures) {
    const Bytes request = {0x4B, 0x13};
    Bytes response(8, 0xEE);
    unsigned short iSize = 3;
    const auto send = [&](unsigned char iExpected) {
        return m_diag.SendSync(2, request.data(), &iSize, response.data(), iExpected, 10000, 0);
    };
    EXPECT_TRUE(send(0x4B));
    EXPECT_EQ(iSize, 3);
    EXPECT_EQ(response, (Bytes{0x4B, 0x13, 0, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE}));
    response.assign(8, 0xEE);
    EXPECT_FALSE(send(0x4C));
    for (const auto& [eTrouble, sText] :
         {std::pair(Trouble::Refuse, "Timeout waiting for response"),
          {Trouble::ComError, "QpstServer::sendSync - COM exception thrown."}}) {
        m_program.Set("sendSync", eTrouble);
        EXPECT_FALSE(send(0x4B));
        EXPECT_TRUE(m_log.Has(LOG_ERR, sText));
    }
    EXPECT_EQ(response, Bytes(8, 0xEE));
}

TEST_F(ServerMode, OperationsOfTheSerialLinkAreRefused) {
    ASSERT_TRUE(m_diag.OpenPort());
    unsigned char aBytes[2] = {};
    unsigned short iSize = 2;
    for (const bool bDone :
         {m_diag.SendASync(1, aBytes, 10, false), m_diag.SendRAW(1, aBytes, &iSize, aBytes, 0, 10, 0),
          m_diag.SetStartFlag(true), m_diag.SetPacketMode(1), m_diag.SetDTR_State(true),
          m_diag.SetRTS_State(true), m_diag.FlushRxBuffer()})
        EXPECT_FALSE(bDone);
    EXPECT_EQ(m_log.Of(LOG_RET),
              (Texts{"QLIB_SendASync() : FAIL in QPST mode", "QLIB_SendRAW() : FAIL in QPST mode",
                     "QLIB_SetStartFlag() : FAIL in QPST mode", "QLIB_SetPacketMode() : FAIL in QPST mode"}));
}

TEST_F(ServerMode, ReconnectionTriesTheRequestedNumberOfTimes) {
    ASSERT_TRUE(m_diag.OpenPort());
    m_program.TakeCalls();
    m_program.Set("selectPort", Trouble::Refuse);
    EXPECT_FALSE(m_diag.DisconnectAndWaitForReconnection(3));
    EXPECT_EQ(m_program.TakeCalls(), Texts(3, "selectPort COM5"));
    m_program.Set("selectPort", Trouble::None);
    EXPECT_FALSE(m_diag.DisconnectAndWaitForReconnection(0));
    EXPECT_TRUE(m_diag.DisconnectAndWaitForReconnection(3));
    EXPECT_EQ(m_program.TakeCalls(), Texts{"selectPort COM5"});
}

TEST_F(ServerMode, UnsolicitedPacketsArriveWhileThePortIsOpen) {
    std::vector<Bytes> packets;
    m_diag.ConfigureAsyncMessageCallBack(
        &packets, [](unsigned short iLength, unsigned char* pPacket, void* pUserData) {
            static_cast<std::vector<Bytes>*>(pUserData)->push_back({pPacket, pPacket + iLength});
        });
    Bytes packet = {0x10, 1, 0, 0};
    m_program.pPacketEvents->packetReceived(packet);
    ASSERT_TRUE(m_diag.OpenPort());
    packet[1] = 2;
    m_program.pPacketEvents->packetReceived(packet);
    m_program.pPacketEvents.reset();
    m_program.Kill();
    m_program.Start();
    EXPECT_TRUE(m_diag.IsPhoneConnected()); // attaches again
    m_program.pPacketEvents->packetReceived(packet);
    EXPECT_TRUE(m_diag.ClosePort());
    m_program.pPacketEvents->packetReceived(packet);
    EXPECT_EQ(packets, (std::vector<Bytes>{packet, packet}));
}

class ServerContexts : public testing::Test {
protected:
    ServerContexts() { QLIB_SetQpstMode(1); }
    ~ServerContexts() override {
        Manager::DestroyAll();
        QLIB_SetQpstMode(0);
    }
    static void ExpectNoObjects(void* hContext) {
        EXPECT_EQ(Manager::GetQpstServer(hContext), nullptr);
        EXPECT_EQ(Manager::GetEFS(hContext), nullptr);
        EXPECT_EQ(Manager::GetSoftwareDownload(hContext), nullptr);
    }

    FakeProgram m_program;
};

TEST_F(ServerContexts, EveryFailureHasItsTextAndYieldsNoObject) {
    const std::tuple<const char*, Trouble, std::string> cases[] = {
        {"make", Trouble::Refuse, "EFS::initialize - Unable to connect to the QPST server"},
        {"attach", Trouble::Refuse, "EFS::initialize - Unable to attach to the QPST server."},
        {"selectPort", Trouble::Refuse, "EFS::changeComPortImpl - Unable to change COM ports."},
        {"selectPort", Trouble::OddThrow, "EFS::changeComPortImpl - Unknown exception thrown."},
    };
    void* const hContext = Manager::CreateContext(5);
    EFS files("test");
    for (const auto& [sFunction, eTrouble, sText] : cases) {
        m_program.Set(sFunction, eTrouble);
        EXPECT_FALSE(files.connect(5));
        EXPECT_EQ(files.GetErrorInfo(), sText);
        ExpectNoObjects(hContext);
        EXPECT_EQ(Manager::GetDiag_FTM(hContext), nullptr);
        m_program.Set(sFunction, Trouble::None);
    }
    EXPECT_NE(Manager::GetDiag_FTM(hContext), nullptr); // a later call tries again
    AttachPortServer(nullptr);
    EXPECT_EQ(Manager::GetDiag_FTM(QLIB_ConnectPort(6)), nullptr);
}

TEST_F(ServerContexts, ObjectsUseTheirContextsPortAndAreDestroyedWithIt) {
    void* const hContext = QLIB_ConnectPort(5);
    EXPECT_TRUE(QLIB_IsPhoneConnected(hContext));
    m_program.TakeCalls();
    EXPECT_TRUE(QLIB_EFS2_DIAG_RMDIR(hContext, "d"));
    EXPECT_EQ(m_program.TakeCalls(), Texts{"sendSync 4B 13 0A 00 64 00"});
    EXPECT_EQ(Manager::GetEFS(hContext), Manager::GetEFS(hContext));
    EXPECT_EQ(m_program.TakeCalls(), (Texts{"make", "attach QLIB-EFS", "selectPort COM5"}));
    EXPECT_TRUE(Manager::GetSoftwareDownload(hContext)->uploadHexFile("f"));
    EXPECT_EQ(m_program.Views(), 3);
    QLIB_DisconnectPort(hContext);
    EXPECT_EQ(m_program.Views(), 0);
    ExpectNoObjects(hContext);
    EXPECT_EQ(m_program.Threads().size(), 1U); // created, used and destroyed on the worker
}

TEST_F(ServerContexts, ReconnectsToARestartedServer) {
    void* const hContext = QLIB_ConnectPort(5);
    Diag_FTM& diag = *Manager::GetDiag_FTM(hContext);
    EFS& files = *Manager::GetEFS(hContext);
    SoftwareDownload& loader = *Manager::GetSoftwareDownload(hContext);
    unsigned short aPorts[4] = {};
    const auto list = [&](unsigned short iCount = 4) { return Manager::GetAllPortList(&iCount, aPorts); };
    EXPECT_TRUE(list());
    const std::function<bool()> calls[] = {
        [&] { return diag.IsPhoneConnected(); },
        [&] { return diag.ClosePort() && diag.OpenPort(); },
        [&] { return diag.DisconnectAndWaitForReconnection(1); },
        [&] { return files.connect(5); },
        [&] { return loader.connect(5); },
        [&] { return list(); },
        [&](unsigned short i = 4) { return Manager::GetAvailablePhonesPortList(&i, aPorts, 0, nullptr); },
    };
    for (size_t i = 0; i < std::size(calls); ++i) {
        m_program.Kill();
        m_program.Start();
        EXPECT_TRUE(calls[i]()) << i; // the first call after a restart
        m_program.Kill();
        EXPECT_FALSE(calls[i]()) << i;
        m_program.Start();
        EXPECT_TRUE(calls[i]()) << i; // after a call that noticed the failure
    }
    // An operation that the server may have performed is not repeated, but the next operation works.
    const auto remove = [&] { return QLIB_EFS2_DIAG_RMDIR(hContext, "d") != 0; };
    EXPECT_TRUE(diag.IsPhoneConnected() && files.connect(5));
    m_program.Kill();
    m_program.Start();
    EXPECT_FALSE(remove());
    EXPECT_FALSE(files.EfsDelete("p"));
    m_program.TakeCalls();
    EXPECT_TRUE(remove());
    EXPECT_TRUE(files.EfsDelete("p"));
    EXPECT_EQ(m_program.TakeCalls(),
              (Texts{"make", "attach QLIB", "selectPort COM5", "sendSync 4B 13 0A 00 64 00", "make",
                     "attach QLIB-EFS", "selectPort COM5", "begin 3|p"}));
    QLIB_DisconnectPort(hContext);
    EXPECT_TRUE(list());
    EXPECT_EQ(m_program.Views(), 1);
    EXPECT_EQ(m_program.Threads().size(), 1U);
}

TEST_F(ServerContexts, ListsComeFromTheServer) {
    unsigned short aPorts[4] = {};
    unsigned short iCount = 4;
    EXPECT_TRUE(Manager::GetAllPortList(&iCount, aPorts));
    EXPECT_EQ(std::vector(aPorts, aPorts + iCount), (std::vector<unsigned short>{5, 300}));
    iCount = 1;
    EXPECT_TRUE(Manager::GetAvailablePhonesPortList(&iCount, aPorts, 0, nullptr));
    EXPECT_EQ(std::vector(aPorts, aPorts + iCount), std::vector<unsigned short>{300});
}

TEST_F(ServerContexts, ExistingConnectionsKeepTheirModeWhenTheModeChanges) {
    void* const hServer = Manager::CreateContext(5);
    Diag_FTM* const pThroughServer = Manager::GetDiag_FTM(hServer);
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
