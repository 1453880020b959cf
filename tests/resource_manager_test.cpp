// Library contexts, port lists and aliases, and the call layer above them.
#include <set>

#include "phone_fixture.h"
#include "platform/posix/test_faults.h"
#include "qlib/call_layer.h"
#include "qlib/resource_manager.h"

namespace {

using Manager = QLib_ResourceManager;
using PortNumbers = std::vector<unsigned short>;

PortNumbers PhonePorts(unsigned short iCapacity, PortNumbers ignored = {}) {
    PortNumbers ports(iCapacity);
    EXPECT_TRUE(Manager::GetAvailablePhonesPortList(
        &iCapacity, ports.data(), static_cast<unsigned short>(ignored.size()), ignored.data()));
    ports.resize(iCapacity);
    return ports;
}

TEST(ResourceManager, ReferencesOfAContext) {
    void* const hFirst = Manager::CreateContext(7);
    ASSERT_NE(hFirst, nullptr);
    EXPECT_EQ(Manager::CreateContext(7), hFirst);
    void* const hOther = Manager::CreateContext(8);
    EXPECT_NE(hOther, hFirst);
    unsigned short iPort = 0;
    Manager::DestroyContext(hFirst, false);
    EXPECT_TRUE(Manager::GetComPortNumber(hFirst, &iPort));
    EXPECT_EQ(iPort, 7);
    Diag_FTM* const pPhone = Manager::GetDiag_FTM(hFirst);
    EXPECT_EQ(Manager::GetDiag_FTM(hFirst), pPhone);
    EXPECT_NE(Manager::GetDiag_FTM(hOther), pPhone);
    Manager::DestroyContext(hFirst, false);
    EXPECT_FALSE(Manager::GetComPortNumber(hFirst, &iPort));
    EXPECT_EQ(Manager::GetDiag_FTM(hFirst), nullptr);
    Manager::DestroyContext(hFirst, true);
    EXPECT_EQ(Manager::CreateContext(8), hOther);
    Manager::DestroyContext(hOther, true); // regardless of its references
    EXPECT_EQ(Manager::GetDiag_FTM(hOther), nullptr);
}

TEST(ResourceManager, AtMostFiftyContextsAndNoneWithoutAHandle) {
    std::set<void*> handles;
    for (unsigned short i = 1; i <= 50; ++i)
        handles.insert(Manager::CreateContext(i));
    EXPECT_EQ(handles.size(), 50u);
    EXPECT_EQ(Manager::CreateContext(51), nullptr);
    Manager::DestroyAll();
    InjectedFaults().bContextHandleFails = true;
    for (unsigned short i = 0; i < 60; ++i)
        EXPECT_EQ(Manager::CreateContext(5), nullptr);
    InjectedFaults().bContextHandleFails = false;
    EXPECT_NE(Manager::CreateContext(5), nullptr); // the entry was released each time
    Manager::DestroyAll();
}

TEST(ResourceManager, Version) {
    char sVersion[21];
    Manager::GetLibraryVersion(sVersion);
    EXPECT_STREQ(sVersion, "QLIB V04.23,QPHONEMS");
}

TEST(ResourceManager, Aliases) {
    unsigned short iPort = 1;
    EXPECT_EQ(Manager::CreateContext_LogicalPort(5), nullptr);
    Manager::AddPortAliasEntry(5, 7);
    Manager::AddPortAliasEntry(5, 9);
    EXPECT_TRUE(Manager::GetPortAliasEntry(5, iPort));
    EXPECT_EQ(iPort, 7);
    void* const hContext = Manager::CreateContext_LogicalPort(5);
    EXPECT_EQ(Manager::CreateContext(7), hContext);
    EXPECT_TRUE(Manager::ClearPortAliasList());
    EXPECT_FALSE(Manager::GetPortAliasEntry(5, iPort));
    Manager::DestroyAll();
}

class PortLists : public testing::Test {
protected:
    PluggedPhone m_phone; // COM1 answers, COM51 has no line
};

TEST_F(PortLists, AllPorts) {
    m_phone.root.AddPlainTty("ttyUSB2", "");
    unsigned short iCount = 2;
    PortNumbers ports(2);
    EXPECT_TRUE(Manager::GetAllPortList(&iCount, ports.data()));
    EXPECT_EQ(ports, (PortNumbers{1, 3})); // COM51 does not fit
    setenv("QUILLET_DEVICE_ROOT", "/nonexistent", 1);
    EXPECT_FALSE(Manager::GetAllPortList(&iCount, ports.data()));
    EXPECT_FALSE(Manager::GetAvailablePhonesPortList(&iCount, ports.data(), 0, nullptr));
    EXPECT_EQ(iCount, 2);
}

TEST_F(PortLists, PortsWithAPhone) {
    handset::Handset second;
    m_phone.root.Plug(second, {0x05C6, 0x9002, "1-7"}, {{"ttyUSB1", 1, true}});
    void* const hBefore = Manager::CreateContext(1);
    EXPECT_EQ(PhonePorts(10), (PortNumbers{1, 2}));
    EXPECT_EQ(Manager::GetDiag_FTM(hBefore), nullptr); // the search destroys all contexts
    second.ClearRequests();
    EXPECT_EQ(PhonePorts(1), PortNumbers{1});
    EXPECT_EQ(PhonePorts(10, {9, 2}), PortNumbers{1});
    EXPECT_TRUE(second.Requests().empty());
}

TEST_F(PortLists, ConnectingToTheFirstPhoneOrToAPort) {
    void* const hFirst = QLIB_ConnectPort(0xFFFF);
    unsigned short iPort = 0;
    ASSERT_TRUE(Manager::GetComPortNumber(hFirst, &iPort));
    EXPECT_EQ(iPort, 1);
    EXPECT_TRUE(QLIB_IsPhoneConnected(hFirst));
    QLIB_DisconnectPort(hFirst);
    m_phone.phone.Unplug();
    EXPECT_EQ(QLIB_ConnectPort(0xFFFF), nullptr);
    void* const hContext = QLIB_ConnectPort(1); // a port that cannot be opened still has a context
    EXPECT_FALSE(QLIB_IsPhoneConnected(hContext));
    m_phone.phone.Replug();
    EXPECT_TRUE(QLIB_IsPhoneConnected(hContext));
    QLIB_DisconnectPort(hContext);
    EXPECT_FALSE(QLIB_IsPhoneConnected(hContext));
}

TEST_F(PortLists, DisconnectingCreatesNoConnection) {
    void* const hContext = Manager::CreateContext(1);
    Manager::CreateContext(1);
    QLIB_DisconnectPort(hContext);
    EXPECT_FALSE(Manager::HasDiag_FTM(hContext));
    EXPECT_NE(Manager::GetDiag_FTM(hContext), nullptr);
    EXPECT_TRUE(Manager::HasDiag_FTM(hContext));
    QLIB_DisconnectPort(hContext);
}

TEST_F(PortLists, CallLayerRejectsInvalidArguments) {
    DWORD e = 9;
    void* const h = QLIB_ConnectPort(1);
    EXPECT_TRUE(QLIB_EFS2_DIAG_MKDIR(h, "d"));
    EXPECT_FALSE(QLIB_EfsRead(h, "none", nullptr)); // null means the file's own name, so the request is sent
    EXPECT_EQ(m_phone.phone.Requests().back()[2], 2);
    m_phone.phone.ClearRequests();
    EXPECT_FALSE(QLIB_EFS2_DIAG_MKDIR(nullptr, "d"));
    EXPECT_FALSE(QLIB_EFS2_DIAG_RENAME(h, "a", nullptr, &e));
    EXPECT_FALSE(QLIB_EFS2_DIAG_READ_LINK(h, "link", nullptr));
    EXPECT_FALSE(QLIB_EfsRead(h, nullptr, "x"));
    EXPECT_FALSE(QLIB_EfsWrite(h, nullptr, "x"));
    QLIB_ConfigureCallBacks(nullptr, nullptr, nullptr, nullptr);
    EXPECT_TRUE(m_phone.phone.Requests().empty());
    QLIB_DisconnectPort(h);
    QLIB_DisconnectPort(h);
}

} // namespace
