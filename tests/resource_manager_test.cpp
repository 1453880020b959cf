// Library contexts, port lists and aliases, and the call layer over them.
#include <cstring>
#include <set>

#include "phone_fixture.h"
#include "platform/posix/test_faults.h"
#include "qlib/call_layer.h"
#include "qlib/resource_manager.h"

namespace {

using Manager = QLib_ResourceManager;
using PortNumbers = std::vector<unsigned short>;

void* const kUnknown = reinterpret_cast<void*>(uintptr_t{0x1234});

PortNumbers AllPorts(unsigned short iCapacity) {
    PortNumbers ports(iCapacity);
    EXPECT_TRUE(Manager::GetAllPortList(&iCapacity, ports.data()));
    ports.resize(iCapacity);
    return ports;
}

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
    EXPECT_FALSE(Manager::GetComPortNumber(hFirst, nullptr));
    Diag_FTM* const pPhone = Manager::GetDiag_FTM(hFirst);
    ASSERT_NE(pPhone, nullptr);
    EXPECT_EQ(Manager::GetDiag_FTM(hFirst), pPhone);
    EXPECT_NE(Manager::GetDiag_FTM(hOther), pPhone);
    Manager::DestroyContext(hFirst, false);
    iPort = 99;
    for (void* hGone : {hFirst, kUnknown, static_cast<void*>(nullptr)}) {
        EXPECT_FALSE(Manager::GetComPortNumber(hGone, &iPort));
        EXPECT_EQ(Manager::GetDiag_FTM(hGone), nullptr);
        Manager::DestroyContext(hGone, true);
    }
    EXPECT_EQ(iPort, 99);
    EXPECT_EQ(Manager::CreateContext(8), hOther);
    Manager::DestroyContext(hOther, true);
    EXPECT_EQ(Manager::GetDiag_FTM(hOther), nullptr);
}

TEST(ResourceManager, FiftyContextsAtMostAndNoneWithoutAHandle) {
    std::set<void*> handles;
    for (unsigned short i = 1; i <= 50; ++i)
        handles.insert(Manager::CreateContext(i));
    EXPECT_EQ(handles.size(), 50u);
    EXPECT_EQ(handles.count(nullptr), 0u);
    EXPECT_EQ(Manager::CreateContext(51), nullptr);
    Manager::DestroyContext(*handles.begin(), false);
    EXPECT_NE(Manager::CreateContext(51), nullptr);
    EXPECT_EQ(Manager::CreateContext(52), nullptr);
    Manager::DestroyAll();
    InjectedFaults().bContextHandleFails = true;
    for (unsigned short i = 0; i < 60; ++i)
        EXPECT_EQ(Manager::CreateContext(5), nullptr);
    InjectedFaults().bContextHandleFails = false;
    EXPECT_NE(Manager::CreateContext(5), nullptr); // the entry was given back each time
    Manager::DestroyAll();
}

TEST(ResourceManager, Modes) {
    void* const hContext = Manager::CreateContext(5);
    for (const auto& [iMode, sExpected] :
         {std::pair(0, "QLIB V04.23,QPHONEMS"), {1, "QLIB V04.23,QPST"}, {2, "QLIB V04.23,QPHONEMS"}}) {
        QLIB_SetQpstMode(static_cast<unsigned char>(iMode));
        char sVersion[21];
        Manager::GetLibraryVersion(sVersion);
        EXPECT_STREQ(sVersion, sExpected);
    }
    EXPECT_EQ(Manager::GetQpstServer(hContext), nullptr);
    EXPECT_EQ(Manager::GetEFS(hContext), nullptr);
    EXPECT_EQ(Manager::GetSoftwareDownload(hContext), nullptr);
    // Without a port server nothing can be listed or made in its mode.
    Manager::SetIsUsingQpst(true);
    unsigned short iCount = 4;
    unsigned short aPorts[4];
    EXPECT_FALSE(Manager::GetAllPortList(&iCount, aPorts));
    EXPECT_EQ(iCount, 0);
    EXPECT_EQ(Manager::GetDiag_FTM(hContext), nullptr);
    Manager::SetIsUsingQpst(false);
    EXPECT_NE(Manager::GetDiag_FTM(hContext), nullptr);
    Manager::DestroyAll();
}

TEST(ResourceManager, Aliases) {
    unsigned short iPort = 1;
    EXPECT_FALSE(Manager::GetPortAliasEntry(5, iPort));
    EXPECT_EQ(iPort, 1);
    EXPECT_EQ(Manager::CreateContext_LogicalPort(5), nullptr);
    Manager::AddPortAliasEntry(5, 7);
    Manager::AddPortAliasEntry(5, 9);
    EXPECT_TRUE(Manager::GetPortAliasEntry(5, iPort));
    EXPECT_EQ(iPort, 7);
    void* const hContext = Manager::CreateContext_LogicalPort(5);
    EXPECT_NE(hContext, nullptr);
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
    EXPECT_EQ(AllPorts(10), (PortNumbers{1, 3, 51}));
    EXPECT_EQ(AllPorts(1), PortNumbers{1});
    EXPECT_EQ(AllPorts(0), PortNumbers{});
    setenv("QUILLET_DEVICE_ROOT", "/nonexistent", 1);
    unsigned short iCount = 3;
    unsigned short aPorts[3];
    EXPECT_FALSE(Manager::GetAllPortList(&iCount, aPorts));
    EXPECT_FALSE(Manager::GetAvailablePhonesPortList(&iCount, aPorts, 0, nullptr));
    EXPECT_EQ(iCount, 3);
    EXPECT_FALSE(Manager::GetAllPortList(nullptr, aPorts));
    EXPECT_FALSE(Manager::GetAvailablePhonesPortList(nullptr, aPorts, 0, nullptr));
}

TEST_F(PortLists, PortsWithAPhone) {
    handset::Handset second;
    m_phone.root.Plug(second, {0x05C6, 0x9002, "1-7"}, {{"ttyUSB1", 1, true}});
    void* const hBefore = Manager::CreateContext(1);
    EXPECT_EQ(PhonePorts(10), (PortNumbers{1, 2}));
    EXPECT_EQ(Manager::GetDiag_FTM(hBefore), nullptr); // the search takes every port for itself
    second.ClearRequests();
    EXPECT_EQ(PhonePorts(1), PortNumbers{1});
    EXPECT_EQ(PhonePorts(10, {9, 2}), PortNumbers{1});
    EXPECT_TRUE(second.Requests().empty());
    EXPECT_EQ(PhonePorts(10, {1, 51}), PortNumbers{2});
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
    EXPECT_EQ(PhonePorts(5), PortNumbers{});
    void* const hContext = QLIB_ConnectPort(1); // a port that cannot be opened still gives a context
    EXPECT_NE(hContext, nullptr);
    EXPECT_FALSE(QLIB_IsPhoneConnected(hContext));
    m_phone.phone.Replug();
    EXPECT_TRUE(QLIB_IsPhoneConnected(hContext));
    QLIB_DisconnectPort(hContext);
    EXPECT_FALSE(QLIB_IsPhoneConnected(hContext));
}

TEST_F(PortLists, CallLayerRefusesWhatItCannotUse) {
    DWORD e = 9, a[9] = {};
    m_phone.AddFile("d/g", {1, 2, 3});
    void* const h = QLIB_ConnectPort(1);
    EXPECT_TRUE(QLIB_DIAG_GET_FILE_ATTRIBUTES(h, "d/g", &a[0], &a[1], &a[2]));
    EXPECT_TRUE(QLIB_EFS2_DIAG_STAT(h, "d/g", &e, &a[0], &a[1], &a[2], &a[3], &a[4], &a[5]));
    EXPECT_EQ(a[1], 3u);
    EXPECT_TRUE(
        QLIB_EFS2_DIAG_STATFS(h, "/", &e, &a[0], &a[1], &a[2], &a[3], &a[4], &a[5], &a[6], &a[7], &a[8]));
    EXPECT_EQ(a[2], 512u);
    m_phone.phone.ClearRequests();
    EXPECT_FALSE(QLIB_EFS2_DIAG_STAT(h, nullptr, &e, &a[0], &a[1], &a[2], &a[3], &a[4], &a[5]));
    EXPECT_FALSE(QLIB_EFS2_DIAG_STAT(h, "d", nullptr, &a[0], &a[1], &a[2], &a[3], &a[4], &a[5]));
    EXPECT_FALSE(QLIB_EFS2_DIAG_RENAME(h, "a", nullptr, &e));
    EXPECT_FALSE(QLIB_EFS2_DIAG_READ_LINK(h, "link", nullptr));
    EXPECT_FALSE(QLIB_EfsRead(h, nullptr, "x"));
    EXPECT_FALSE(QLIB_EfsDirectory(kUnknown, ""));
    EXPECT_FALSE(QLIB_EFS2_DIAG_MKDIR(nullptr, "d"));
    EXPECT_FALSE(QLIB_EfsWriteOpenedTarget(nullptr));
    QLIB_ConfigureEfsCallbacks(nullptr, nullptr, nullptr);
    QLIB_ConfigureCallBacks(nullptr, nullptr, nullptr, nullptr);
    EXPECT_TRUE(m_phone.phone.Requests().empty());
    QLIB_DisconnectPort(h);
    QLIB_DisconnectPort(h);
}

} // namespace
