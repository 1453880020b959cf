// The clients of a port server: what reaches the server, what comes back, and how failures read.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "fake_port_server.h"
#include "link/diag_connection.h"
#include "log_capture.h"
#include "portserver/efs.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"

namespace {

using Bytes = handset::Bytes;
using Trouble = FakeProgram::Trouble;
using Texts = std::vector<std::string>;

/// The text of what `body` throws; empty for nothing.
std::string Thrown(const std::function<void()>& body) {
    try {
        body();
        return "";
    } catch (const std::exception& error) {
        return error.what();
    }
}

/// Every operation of QpstServer that needs a port, by its name.
struct Operation {
    const char* sName;
    const char* sFunction; // of the server
    std::function<void(QpstServer&)> call;
};

unsigned char g_aData[8] = {9, 8, 7, 6};
unsigned short g_iSize = sizeof g_aData;
DWORD g_iVersion = 0;

const Operation kOperations[] = {
    {"sendSync", "sendSync", [](QpstServer& s) { s.sendSync(1, g_aData, &g_iSize, g_aData, 10000); }},
    {"readNv", "readNv", [](QpstServer& s) { s.readNv(5, g_aData, 4); }},
    {"writeNv", "writeNv", [](QpstServer& s) { s.writeNv(6, g_aData, 4); }},
    {"reset", "reset", [](QpstServer& s) { s.reset(100); }},
    {"offline", "control", [](QpstServer& s) { s.offline(); }},
    {"lock", "control", [](QpstServer& s) { s.lock(); }},
    {"unlock", "control", [](QpstServer& s) { s.unlock(); }},
    {"detectBadPhoneMode", "control", [](QpstServer& s) { s.detectBadPhoneMode(); }},
    {"sendSpc", "control", [](QpstServer& s) { s.sendSpc("000000"); }},
    {"sendTmob", "control", [](QpstServer& s) { s.sendTmob("x"); }},
    {"getDiagVerno", "control", [](QpstServer& s) { s.getDiagVerno(g_iVersion); }},
};

TEST(QpstServerTest, OperationsNeedAPortAndOutliveAServerThatThrows) {
    FakeProgram program;
    QpstServer server("test");
    const auto expectFailures = [&](const std::string& sReason) {
        for (const Operation& operation : kOperations)
            EXPECT_EQ(Thrown([&] { operation.call(server); }),
                      std::string("QpstServer::") + operation.sName + " - " + sReason);
    };
    expectFailures("QpstServer::connect must be called before calling this member function.");
    server.connect(5, 200);
    for (const Operation& operation : kOperations)
        program.Set(operation.sFunction, Trouble::ComError);
    expectFailures("COM exception thrown.");
    for (const Operation& operation : kOperations) {
        program.Set(operation.sFunction, Trouble::None);
        EXPECT_EQ(Thrown([&] { operation.call(server); }), "");
    }
}

TEST(QpstServerTest, StartUpFailuresHaveTheirTexts) {
    FakeProgram program;
    const struct {
        const char* sFunction;
        Trouble eTrouble;
        const char* sText; // behind the class
    } cases[] = {
        {"make", Trouble::Refuse, "::initialize - Unable to connect to the QPST server"},
        {"make", Trouble::ComError, "::initialize - COM exception thrown."},
        {"attach", Trouble::Refuse, "::initialize - Unable to attach to the QPST server."},
        {"attach", Trouble::OddThrow, "::initialize - Unknown exception thrown."},
        {"selectPort", Trouble::Refuse, "::changeComPortImpl - Unable to change COM ports."},
        {"selectPort", Trouble::Exception, "::changeComPortImpl - Unknown exception thrown."},
    };
    QpstServer server("test");
    EFS files("test");
    SoftwareDownload download(nullptr, "test");
    EXPECT_FALSE(files.EfsDelete("a"));
    EXPECT_STREQ(files.GetErrorInfo(),
                 "EFS::EfsDelete - EFS::connect must be called before calling this member function.");
    for (const auto& entry : cases) {
        program.Set(entry.sFunction, entry.eTrouble);
        EXPECT_EQ(Thrown([&] { server.connect(5, 200); }), std::string("QpstServer") + entry.sText);
        EXPECT_FALSE(files.connect(5));
        EXPECT_EQ(files.GetErrorInfo(), std::string("EFS") + entry.sText);
        EXPECT_FALSE(download.connect("COM5"));
        EXPECT_EQ(download.GetErrorInfo(), std::string("SoftwareDownload") + entry.sText);
        EXPECT_NE(Thrown([&] { server.offline(); }), "");
        program.Set(entry.sFunction, Trouble::None);
    }
    program.TakeCalls();
    server.connect(kNoParticularPort, 200);
    EXPECT_TRUE(files.connect(300));
    EXPECT_STREQ(files.GetErrorInfo(), "");
    EXPECT_EQ(program.TakeCalls(), (Texts{"selectPort", "selectPort COM300"}));
}

/// All clients, connected.
class ServerClients : public testing::Test {
protected:
    ServerClients() {
        m_server.connect(5, 200);
        EXPECT_TRUE(m_files.connect(5));
        EXPECT_TRUE(m_download.connect("COM5"));
        m_program.TakeCalls();
    }

    FakeProgram m_program;
    QpstServer m_server{"test"};
    EFS m_files{"test"};
    int m_iContext = 0;
    SoftwareDownload m_download{&m_iContext, "test"};
};

TEST_F(ServerClients, ItemsAndControls) {
    for (const Operation& operation : kOperations)
        if (std::string(operation.sFunction) == "control")
            operation.call(m_server);
    EXPECT_EQ(m_program.TakeCalls(), (Texts{"control 0", "control 1", "control 2", "control 3",
                                            "control 4000000", "control 6x", "control 5"}));
    EXPECT_EQ(g_iVersion, 8U);
    unsigned char aData[5] = {9, 9, 9, 9, 9};
    EXPECT_TRUE(m_server.readNv(5, aData, 4)); // the server's three bytes, a zero, and no more
    EXPECT_EQ(Bytes(aData, aData + 5), (Bytes{1, 2, 3, 0, 9}));
    EXPECT_TRUE(m_server.writeNv(6, aData, 2));
    EXPECT_EQ(m_program.TakeCalls(), (Texts{"readNv 5", "writeNv 6: 01 02"}));
    m_program.Set("readNv", Trouble::Refuse);
    EXPECT_FALSE(m_server.readNv(5, aData, 5));
    EXPECT_EQ(aData[4], 9);
    DWORD iMode = 0;
    EXPECT_TRUE(m_download.getPhoneMode(iMode));
    EXPECT_EQ(iMode, 8U);
    m_program.Set("control", Trouble::Refuse);
    EXPECT_FALSE(m_server.detectBadPhoneMode());
    EXPECT_FALSE(m_download.getPhoneMode(iMode));
    EXPECT_STREQ(m_download.GetErrorInfo(), "SoftwareDownload::getPhoneMode - failed");
    EXPECT_EQ(m_server.getPhoneList().at(0), (PhoneEntry{"COM300", "b", "c", "d"}));
    m_program.eReset = ResetOutcome::NeverReset;
    EXPECT_EQ(Thrown([&] { m_server.reset(100); }), "QpstServer::reset - The phone never reset.");
    m_program.eReset = ResetOutcome::NeverRecovered;
    EXPECT_EQ(Thrown([&] { m_server.reset(100); }),
              "QpstServer::reset - The phone never recovered from the reset");
}

TEST_F(ServerClients, EveryTaskReachesTheServer) {
    EFS& files = m_files;
    SoftwareDownload& loader = m_download;
    const struct {
        const char* sName;
        const char* sCall; // empty: none, it fails at once
        std::function<bool()> call;
        const char* sFailure = "failed";
    } cases[] = {
        {"EFS::EfsRead", "1|p|l", [&] { return files.EfsRead("p", "l"); }},
        {"EFS::EfsWrite", "2|l|p", [&] { return files.EfsWrite("l", "p"); }},
        {"EFS::EfsDelete", "3|p", [&] { return files.EfsDelete("p"); }},
        {"EFS::EfsMkDir", "4|p", [&] { return files.EfsMkDir("p"); }, "pAtlasEfs->CreateDir() failed"},
        {"EFS::EfsRmDir", "5|p", [&] { return files.EfsRmDir("p"); }},
        {"EFS::EfsRmTree", "6|p", [&] { return files.EfsRmTree("p"); }},
        {"EFS::CreateCEFS", "7|l", [&] { return files.CreateCEFS("l"); }},
        {"EFS::DownloadPRL", "8|l", [&] { return files.DownloadPRL("l"); }},
        {"EFS::UploadPRL", "9|l", [&] { return files.UploadPRL("l"); }},
        {"EFS::EfsSetPermissions", "", [&] { return files.EfsSetPermissions("p", 1); }, "not implemented"},
        {"EFS::EfsBackupDir", "", [&] { return files.EfsBackupDir("p", "l"); }, "not implemented"},
        {"EFS::EfsRestoreDir", "", [&] { return files.EfsRestoreDir("l", "p"); }, "not implemented"},
        {"EFS::EfsVerify", "", [&] { return files.EfsVerify("l", "p"); }, "not implemented"},
        {"EFS::EfsMkDir", "", [&] { return files.EfsMkDir(nullptr); }, "an argument is missing"},
        {"SoftwareDownload::uploadHexFile", "10|f", [&] { return loader.uploadHexFile("f"); }},
        {"SoftwareDownload::uploadBHexFile", "11|f", [&] { return loader.uploadBHexFile("f"); }},
        {"SoftwareDownload::UploadBootLoaderBeforeImageHexFile", "12|b|i",
         [&] { return loader.UploadBootLoaderBeforeImageHexFile("b", "i"); }},
        {"SoftwareDownload::uploadBootfile", "13|f", [&] { return loader.uploadBootfile("f"); }},
        {"SoftwareDownload::uploadCEFS_File", "14|f", [&] { return loader.uploadCEFS_File("f"); }},
        {"SoftwareDownload::uploadCEFS_File2", "15|f|g", [&] { return loader.uploadCEFS_File2("f", "g"); }},
        {"SoftwareDownload::uploadMultiImage", "16|d", [&] { return loader.uploadMultiImage("d"); }},
        {"SoftwareDownload::uploadQcnFile", "17|f", [&] { return loader.uploadQcnFile("f"); }},
        {"SoftwareDownload::uploadQcnFile", "17|f|12", [&] { return loader.uploadQcnFile("f", "12"); }},
        {"SoftwareDownload::downloadQcnFile", "18|f|12", [&] { return loader.downloadQcnFile("f", "12"); }},
    };
    const auto succeed = m_program.task;
    for (const auto& entry : cases) {
        const bool bReaches = *entry.sCall != '\0';
        EXPECT_EQ(entry.call(), bReaches) << entry.sName;
        EXPECT_EQ(m_program.TakeCalls(), bReaches ? Texts{std::string("begin ") + entry.sCall} : Texts{});
        for (const Trouble eTrouble : {Trouble::Refuse, Trouble::ComError, Trouble::None}) {
            m_program.Set("begin", eTrouble);
            m_program.task = [](TaskEvents& events) { events.finished(false); };
            files.ClearError();
            loader.ClearError();
            EXPECT_FALSE(entry.call());
            const bool bThrown = eTrouble == Trouble::ComError && bReaches;
            EXPECT_EQ(
                std::string(files.GetErrorInfo()) + loader.GetErrorInfo(),
                std::string(entry.sName) + " - " + (bThrown ? "COM exception thrown." : entry.sFailure));
        }
        m_program.task = succeed;
        m_program.TakeCalls();
    }
}

TEST_F(ServerClients, AListingArrivesWholeOrNotAtAll) {
    EfsDirItem items[2] = {{"a/b", 1, 0, 0, 0, 0, 70}, {}};
    std::fill_n(items[1].sName, sizeof items[1].sName, 'n'); // without its zero
    bool bSucceeds = true;
    m_program.task = [&](TaskEvents& events) {
        for (const EfsDirItem& item : items)
            events.entryListed(item);
        events.finished(bSucceeds);
    };
    Texts names;
    m_files.ConfigureCallBacks(
        [](char* const sName, unsigned char isFile, unsigned short, unsigned char, unsigned char, DWORD,
           DWORD iSize, void* pNames) -> unsigned char {
            static_cast<Texts*>(pNames)->push_back(sName + (":" + std::to_string(isFile + iSize)));
            return 0;
        },
        &names);
    EXPECT_TRUE(m_files.EfsDirectory("a"));
    EXPECT_EQ(names, (Texts{"a/b:71", std::string(131, 'n') + ":0"}));
    names.clear();
    bSucceeds = false;
    EXPECT_FALSE(m_files.EfsDirectory("a"));
    EXPECT_EQ(names, Texts{});
}

/// Notes progress, and aborts on request.
struct Watcher : SoftwareDownloadListener {
    void downloadProgressed(DWORD iDone, DWORD iInAll) override {
        sLast = std::to_string(iDone) + "/" + std::to_string(iInAll);
        EXPECT_TRUE(!pToAbort || pToAbort->abort());
    }

    std::string sLast;
    SoftwareDownload* pToAbort = nullptr;
};

TEST_F(ServerClients, ProgressSilenceAndAbort) {
    bool bEnds = true;
    m_program.task = [&](TaskEvents& events) {
        events.progressed(3, 10);
        if (bEnds)
            events.finished(true);
    };
    DiagConnection connection(1);
    LogCapture log(connection, LOG_FN | LOG_ERR);
    m_download.SetLogManager(connection.GetDataLogFileHandler());
    log.Clear();
    Watcher watcher;
    m_download.addListener(&watcher);
    m_download.ConfigureCallBacks([](void* pSeen) { return ++*static_cast<int*>(pSeen) > 0; }, nullptr);
    EXPECT_TRUE(m_download.uploadHexFile("f"));
    EXPECT_EQ(watcher.sLast, "3/10");
    EXPECT_GT(m_iContext, 0);

    bEnds = false;
    watcher.pToAbort = &m_download;
    EXPECT_FALSE(m_download.uploadHexFile("f"));
    EXPECT_EQ(log.Of(LOG_ERR), Texts{"SoftwareDownload::uploadHexFile - failed"});
    EXPECT_EQ(log.Of(LOG_FN), Texts(2, "SoftwareDownload::uploadHexFile"));

    m_download.removeListener(&watcher);
    m_program.TakeCalls();
    std::thread helper([&] {
        while (m_program.TakeCalls().empty())
            std::this_thread::yield();
        EXPECT_TRUE(m_download.abort());
    });
    EXPECT_FALSE(m_download.uploadQcnFile("f"));
    helper.join();

    EXPECT_TRUE(m_download.ConfigureTimeOut(QMSL_TimeOut_MultipleResponse, 20));
    EXPECT_EQ(m_download.GetTimeOut(QMSL_TimeOut_MultipleResponse), 20U);
    EXPECT_FALSE(m_download.ConfigureTimeOut(static_cast<QMSL_TimeOutType_Enum>(7), 1));
    EXPECT_EQ(m_download.GetTimeOut(static_cast<QMSL_TimeOutType_Enum>(-1)), 0U);
    m_program.TakeCalls();
    EXPECT_FALSE(m_download.uploadHexFile("f"));
    EXPECT_STREQ(m_download.GetErrorInfo(), "SoftwareDownload::waitWithMessageLoop() -- Timeout exceeded");
    EXPECT_EQ(m_program.TakeCalls(), (Texts{"begin 10|f", "abort"}));
    m_download.SetLogManager(nullptr);
}

} // namespace
