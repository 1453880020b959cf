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

Bytes Send(QpstServer& server, const Bytes& request, unsigned short iCapacity = 64,
           DWORD iTimeOut_ms = 10000) {
    Bytes response(iCapacity);
    server.sendSync(static_cast<unsigned short>(request.size()), request.data(), &iCapacity, response.data(),
                    iTimeOut_ms);
    response.resize(iCapacity);
    return response;
}

/// Every operation of QpstServer that needs a port, by its name.
struct Operation {
    const char* sName;
    const char* sFunction; // of the server
    std::function<void(QpstServer&)> call;
};

std::vector<Operation> Operations() {
    static unsigned char aData[4] = {9, 8, 7, 6};
    return {
        {"sendSync", "sendSync", [](QpstServer& s) { Send(s, {0}); }},
        {"readNv", "readNv", [](QpstServer& s) { s.readNv(5, aData, 4); }},
        {"writeNv", "writeNv", [](QpstServer& s) { s.writeNv(6, aData, 4); }},
        {"reset", "reset", [](QpstServer& s) { s.reset(100); }},
        {"offline", "control", [](QpstServer& s) { s.offline(); }},
        {"lock", "control", [](QpstServer& s) { s.lock(); }},
        {"unlock", "control", [](QpstServer& s) { s.unlock(); }},
        {"detectBadPhoneMode", "control", [](QpstServer& s) { s.detectBadPhoneMode(); }},
        {"sendSpc", "control", [](QpstServer& s) { s.sendSpc("000000"); }},
        {"sendTmob", "control", [](QpstServer& s) { s.sendTmob("x"); }},
        {"getDiagVerno", "control",
         [](QpstServer& s) {
             DWORD iVersion = 0;
             s.getDiagVerno(iVersion);
         }},
    };
}

TEST(QpstServerTest, NothingWorksBeforeConnect) {
    QpstServer server("test");
    for (const Operation& operation : Operations())
        EXPECT_EQ(Thrown([&] { operation.call(server); }),
                  std::string("QpstServer::") + operation.sName +
                      " - QpstServer::connect must be called before calling this member function.");
    EFS files("test");
    EXPECT_FALSE(files.EfsDelete("a"));
    EXPECT_STREQ(files.GetErrorInfo(),
                 "EFS::EfsDelete - EFS::connect must be called before calling this member function.");
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

TEST(QpstServerTest, RequestsReachThePhone) {
    FakeProgram program;
    QpstServer server("test");
    server.connect(5, 200);
    EXPECT_EQ(program.TakeCalls(), (Texts{"make", "attach test", "selectPort COM5"}));
    program.phone.Script({0x4B}, {{0x4B, 1, 0x7E, 3}});
    EXPECT_EQ(Send(server, {0x4B, 0x7D}), (Bytes{0x4B, 1, 0x7E, 3}));
    EXPECT_EQ(Send(server, {0x4B, 0x7D}, 2), (Bytes{0x4B, 1}));
    EXPECT_EQ(program.phone.Requests().back(), (Bytes{0x4B, 0x7D}));
    program.phone.Misbehave({.action = handset::Misbehaviour::Action::Drop, .prefix = {0x4B}});
    EXPECT_EQ(Thrown([&] { Send(server, {0x4B}, 64, 50); }), "Timeout waiting for response");
    program.phone.Misbehave({.action = handset::Misbehaviour::Action::Unplug, .prefix = {0x4B}});
    EXPECT_EQ(Thrown([&] { Send(server, {0x4B}); }), "QpstServer::sendSync - COM exception thrown.");
}

TEST(QpstServerTest, ItemsAndControls) {
    FakeProgram program;
    QpstServer server("test");
    server.connect(5, 200);
    program.TakeCalls();
    for (const Operation& operation : Operations())
        if (std::string(operation.sFunction) == "control")
            operation.call(server);
    EXPECT_EQ(program.TakeCalls(), (Texts{"control 0", "control 1", "control 2", "control 3",
                                          "control 4000000", "control 6x", "control 5"}));
    unsigned char aData[5] = {9, 9, 9, 9, 9};
    EXPECT_TRUE(server.readNv(5, aData, 4)); // the server's three bytes, a zero, and no more
    EXPECT_EQ(Bytes(aData, aData + 5), (Bytes{1, 2, 3, 0, 9}));
    EXPECT_TRUE(server.writeNv(6, aData, 2));
    EXPECT_EQ(program.TakeCalls(), (Texts{"readNv 5", "writeNv 6: 01 02"}));
    program.Set("readNv", Trouble::Refuse);
    EXPECT_FALSE(server.readNv(5, aData, 5));
    EXPECT_EQ(aData[4], 9);
    DWORD iVersion = 0;
    EXPECT_TRUE(server.getDiagVerno(iVersion));
    EXPECT_EQ(iVersion, 8U);
    program.Set("control", Trouble::Refuse);
    EXPECT_FALSE(server.detectBadPhoneMode());
    EXPECT_EQ(Thrown([&] { server.reset(100); }), "");
    program.eReset = ResetOutcome::NeverReset;
    EXPECT_EQ(Thrown([&] { server.reset(100); }), "QpstServer::reset - The phone never reset.");
    program.eReset = ResetOutcome::NeverRecovered;
    EXPECT_EQ(Thrown([&] { server.reset(100); }),
              "QpstServer::reset - The phone never recovered from the reset");
    EXPECT_EQ(server.getPhoneList().at(0), (PhoneEntry{"COM300", "b", "c", "d"}));
}

TEST(QpstServerTest, AServerThatThrowsIsReportedAndUsedOn) {
    FakeProgram program;
    QpstServer server("test");
    server.connect(5, 200);
    for (const Operation& operation : Operations()) {
        for (const auto& [eTrouble, sKind] : {std::pair(Trouble::ComError, "COM"),
                                              {Trouble::Exception, "Unknown"},
                                              {Trouble::OddThrow, "Unknown"}}) {
            program.Set(operation.sFunction, eTrouble);
            EXPECT_EQ(Thrown([&] { operation.call(server); }),
                      std::string("QpstServer::") + operation.sName + " - " + sKind + " exception thrown.");
        }
        program.Set(operation.sFunction, Trouble::None);
        EXPECT_EQ(Thrown([&] { operation.call(server); }), "");
    }
}

/// Keeps the names that a listing brings.
unsigned char Collect(char* const sName, unsigned char isFile, unsigned short, unsigned char, unsigned char,
                      DWORD, DWORD iSize, void* pUserData) {
    static_cast<Texts*>(pUserData)->push_back(sName + (":" + std::to_string(isFile)) + ":" +
                                              std::to_string(iSize));
    return 0;
}

TEST(EfsTest, EveryOperationReachesTheServer) {
    FakeProgram program;
    EFS files("test");
    ASSERT_TRUE(files.connect(5));
    program.TakeCalls();
    const struct {
        const char* sName;
        bool bDone;
        const char* sCall;
        std::function<bool()> call;
        const char* sFailure = "failed";
    } cases[] = {
        {"EfsRead", true, "1|p|l", [&] { return files.EfsRead("p", "l"); }},
        {"EfsWrite", true, "2|l|p", [&] { return files.EfsWrite("l", "p"); }},
        {"EfsDelete", true, "3|p", [&] { return files.EfsDelete("p"); }},
        {"EfsMkDir", true, "4|p", [&] { return files.EfsMkDir("p"); }, "pAtlasEfs->CreateDir() failed"},
        {"EfsRmDir", true, "5|p", [&] { return files.EfsRmDir("p"); }},
        {"EfsRmTree", true, "6|p", [&] { return files.EfsRmTree("p"); }},
        {"CreateCEFS", true, "7|l", [&] { return files.CreateCEFS("l"); }},
        {"DownloadPRL", true, "8|l", [&] { return files.DownloadPRL("l"); }},
        {"UploadPRL", true, "9|l", [&] { return files.UploadPRL("l"); }},
        {"EfsSetPermissions", false, "", [&] { return files.EfsSetPermissions("p", 1); }, "not implemented"},
        {"EfsBackupDir", false, "", [&] { return files.EfsBackupDir("p", "l"); }, "not implemented"},
        {"EfsRestoreDir", false, "", [&] { return files.EfsRestoreDir("l", "p"); }, "not implemented"},
        {"EfsVerify", false, "", [&] { return files.EfsVerify("l", "p"); }, "not implemented"},
        {"EfsMkDir", false, "", [&] { return files.EfsMkDir(nullptr); }, "an argument is missing"},
    };
    for (const auto& entry : cases) {
        EXPECT_EQ(entry.call(), entry.bDone) << entry.sName;
        const Texts calls = program.TakeCalls();
        EXPECT_EQ(calls, entry.bDone ? Texts{std::string("begin ") + entry.sCall} : Texts{});
        for (const bool bRefusedAtOnce : {true, false}) {
            program.Set("begin", bRefusedAtOnce ? Trouble::Refuse : Trouble::None);
            program.bTasksSucceed = false;
            EXPECT_FALSE(entry.call());
            EXPECT_EQ(files.GetErrorInfo(), std::string("EFS::") + entry.sName + " - " + entry.sFailure);
        }
        program.bTasksSucceed = true;
        program.TakeCalls();
    }
    program.Set("begin", Trouble::ComError);
    EXPECT_FALSE(files.EfsRead("p", "l"));
    EXPECT_STREQ(files.GetErrorInfo(), "EFS::EfsRead - COM exception thrown.");
}

TEST(EfsTest, AListingArrivesWholeOrNotAtAll) {
    FakeProgram program;
    program.entries.resize(2);
    std::copy_n("a/b", 4, program.entries[0].sName);
    program.entries[0].isFile = 1;
    program.entries[0].FileSize = 7;
    std::fill_n(program.entries[1].sName, sizeof program.entries[1].sName, 'n'); // without its zero
    EFS files("test");
    Texts names;
    files.ConfigureCallBacks(Collect, &names);
    ASSERT_TRUE(files.connect(5));
    EXPECT_TRUE(files.EfsDirectory("a"));
    EXPECT_EQ(names, (Texts{"a/b:1:7", std::string(131, 'n') + ":0:0"}));
    names.clear();
    program.bTasksSucceed = false;
    EXPECT_FALSE(files.EfsDirectory("a"));
    EXPECT_EQ(names, Texts{});
}

/// Notes progress, and aborts on request.
struct Watcher : SoftwareDownloadListener {
    explicit Watcher(SoftwareDownload& observed) : download(observed) { download.addListener(this); }
    ~Watcher() override { download.removeListener(this); }
    void downloadProgressed(DWORD iDone, DWORD iInAll) override {
        sLast = std::to_string(iDone) + "/" + std::to_string(iInAll);
        if (bAbort)
            bAborted = download.abort();
    }

    SoftwareDownload& download;
    std::string sLast;
    bool bAbort = false;
    bool bAborted = false;
};

TEST(SoftwareDownloadTest, EveryOperationReachesTheServer) {
    FakeProgram program;
    SoftwareDownload download(nullptr, "test");
    ASSERT_TRUE(download.connect(5));
    program.TakeCalls();
    const std::pair<const char*, std::function<bool()>> cases[] = {
        {"10|f", [&] { return download.uploadHexFile("f"); }},
        {"11|f", [&] { return download.uploadBHexFile("f"); }},
        {"12|b|i", [&] { return download.UploadBootLoaderBeforeImageHexFile("b", "i"); }},
        {"13|f", [&] { return download.uploadBootfile("f"); }},
        {"14|f", [&] { return download.uploadCEFS_File("f"); }},
        {"15|f|g", [&] { return download.uploadCEFS_File2("f", "g"); }},
        {"16|d", [&] { return download.uploadMultiImage("d"); }},
        {"17|f", [&] { return download.uploadQcnFile("f"); }},
        {"17|f|123456", [&] { return download.uploadQcnFile("f", "123456"); }},
        {"18|f|123456", [&] { return download.downloadQcnFile("f", "123456"); }},
    };
    for (const auto& [sCall, call] : cases) {
        EXPECT_TRUE(call());
        EXPECT_EQ(program.TakeCalls(), Texts{std::string("begin ") + sCall});
    }
    DWORD iMode = 0;
    EXPECT_TRUE(download.getPhoneMode(iMode));
    EXPECT_EQ(iMode, 8U);
    program.Set("control", Trouble::Refuse);
    EXPECT_FALSE(download.getPhoneMode(iMode));
    EXPECT_STREQ(download.GetErrorInfo(), "SoftwareDownload::getPhoneMode - failed");
    download.ClearError();
    EXPECT_STREQ(download.GetErrorInfo(), "");
}

TEST(SoftwareDownloadTest, ProgressSilenceAndAbort) {
    FakeProgram program;
    program.iProgressReports = 3;
    int iContext = 0;
    SoftwareDownload download(&iContext, "test");
    ASSERT_TRUE(download.connect(5));
    Watcher watcher(download);
    void* pSeen = nullptr;
    static void** ppSeen;
    ppSeen = &pSeen;
    download.ConfigureCallBacks([](void* pUserData) { return (*ppSeen = pUserData) == nullptr; }, nullptr);
    EXPECT_TRUE(download.uploadHexFile("f"));
    EXPECT_EQ(watcher.sLast, "3/10");
    EXPECT_EQ(pSeen, &iContext);

    program.bTasksEnd = false;
    watcher.bAbort = true;
    EXPECT_FALSE(download.uploadHexFile("f"));
    EXPECT_STREQ(download.GetErrorInfo(), "SoftwareDownload::uploadHexFile - failed");
    EXPECT_TRUE(watcher.bAborted);

    watcher.bAbort = false;
    EXPECT_TRUE(download.ConfigureTimeOut(QMSL_TimeOut_MultipleResponse, 20));
    EXPECT_EQ(download.GetTimeOut(QMSL_TimeOut_MultipleResponse), 20U);
    EXPECT_FALSE(download.ConfigureTimeOut(static_cast<QMSL_TimeOutType_Enum>(7), 1));
    EXPECT_EQ(download.GetTimeOut(static_cast<QMSL_TimeOutType_Enum>(-1)), 0U);
    program.TakeCalls();
    EXPECT_FALSE(download.uploadHexFile("f"));
    EXPECT_STREQ(download.GetErrorInfo(), "SoftwareDownload::waitWithMessageLoop() -- Timeout exceeded");
    EXPECT_EQ(program.TakeCalls(), (Texts{"begin 10|f", "abort"}));
}

TEST(SoftwareDownloadTest, AbortFromAnotherThreadAndTheLog) {
    FakeProgram program;
    program.bTasksEnd = false;
    DiagConnection connection(1);
    LogCapture log(connection, LOG_FN | LOG_ERR);
    SoftwareDownload download(nullptr, "test");
    download.SetLogManager(connection.GetDataLogFileHandler());
    ASSERT_TRUE(download.connect("COM5"));
    program.TakeCalls();
    log.Clear();
    std::thread helper([&] {
        while (program.TakeCalls().empty())
            std::this_thread::yield();
        EXPECT_TRUE(download.abort());
    });
    EXPECT_FALSE(download.uploadQcnFile("f"));
    helper.join();
    EXPECT_EQ(log.Lines(), (Texts{"0x0002 SoftwareDownload::uploadQcnFile",
                                  "0x0010 SoftwareDownload::uploadQcnFile - failed"}));
}

} // namespace
