// The clients of a port server: their calls of the server, their results, and the texts of failures.
#include <gtest/gtest.h>

#include <functional>
#include <future>
#include <string>
#include <vector>

#include "fake_port_server.h"
#include "log_capture.h"
#include "portserver/efs.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"
#include "qlib/diag_ftm.h"

namespace {

using Trouble = FakeProgram::Trouble;
using Texts = std::vector<std::string>;

unsigned char g_aData[8] = {9, 8, 7, 6};

/// Every operation of QpstServer that needs a port: the server call that it makes, and a function that calls
/// it.
const std::pair<std::string, std::function<void(QpstServer&)>> kOperations[] = {
    {"sendSync 09", [](QpstServer& s, unsigned short i = 1) { s.sendSync(1, g_aData, &i, g_aData, 10000); }},
    {"readNv 5", [](QpstServer& s) { s.readNv(5, g_aData + 4, 4); }},
    {"writeNv 6: 07 06", [](QpstServer& s) { s.writeNv(6, g_aData + 2, 2); }},
    {"reset", [](QpstServer& s) { s.reset(100); }},
    {"control 0", [](QpstServer& s) { s.offline(); }},
    {"control 1", [](QpstServer& s) { s.lock(); }},
    {"control 2", [](QpstServer& s) { s.unlock(); }},
    {"control 3", [](QpstServer& s) { s.detectBadPhoneMode(); }},
    {"control 4000000", [](QpstServer& s) { s.sendSpc("000000"); }},
    {"control 6x", [](QpstServer& s) { s.sendTmob("x"); }},
    {"control 5", [](QpstServer& s, DWORD i = 0) { s.getDiagVerno(i); }},
};

TEST(QpstServerTest, OperationsNeedAPortAndRecoverFromServerExceptions) {
    FakeProgram program;
    QpstServer server("test");
    const auto expectNotConnected = [&] {
        program.TakeCalls();
        for (const auto& [sCall, call] : kOperations)
            EXPECT_THROW(call(server), ServerException) << sCall;
        EXPECT_EQ(program.TakeCalls(), Texts{});
    };
    expectNotConnected();
    server.connect(5, 200);
    for (const char* const sFunction : {"selectPort", "make"}) {
        program.Set(sFunction, Trouble::ComError);
        EXPECT_THROW(server.connect(6, 200), ServerException);
        expectNotConnected();
        program.Set(sFunction, Trouble::None);
        server.connect(5, 200);
        program.Kill();
        program.Start();
    }
    EXPECT_NO_THROW(server.connect(5, 200));
    for (const auto& [sCall, call] : kOperations) {
        const std::string sFunction = sCall.substr(0, sCall.find(' '));
        program.Set(sFunction, Trouble::ComError);
        EXPECT_THROW(call(server), std::exception) << sCall;
        program.Set(sFunction, Trouble::None);
        program.TakeCalls();
        call(server);
        EXPECT_EQ(program.TakeCalls(), (Texts{"make", "attach test", "selectPort COM5", sCall}));
        call(server);
        EXPECT_EQ(program.TakeCalls(), Texts{sCall});
    }
    unsigned char aData[5] = {9, 9, 9, 9, 9};
    EXPECT_TRUE(server.readNv(5, aData, 4)); // the server's three bytes and one zero
    EXPECT_EQ(std::vector(aData, aData + 5), (std::vector<unsigned char>{1, 2, 3, 0, 9}));
    for (const char* const sFunction : {"readNv", "control", "reset"})
        program.Set(sFunction, Trouble::Refuse);
    EXPECT_FALSE(server.readNv(5, aData, 5) || server.offline());
    EXPECT_THROW(server.reset(100), std::exception);
}

/// Connected clients that run tasks.
class ServerClients : public testing::Test {
protected:
    ServerClients() {
        EXPECT_TRUE(m_files.connect(5));
        EXPECT_TRUE(m_download.connect("COM5"));
        m_program.TakeCalls();
    }

    FakeProgram m_program;
    EFS m_files{"test"};
    int m_iContext = 0;
    SoftwareDownload m_download{&m_iContext, "test"};
};

TEST_F(ServerClients, EveryTaskReachesTheServer) {
    EFS& files = m_files;
    SoftwareDownload& loader = m_download;
    // The operation's name, its task and arguments as the server receives them, and a function that calls it.
    const std::tuple<std::string, std::string, std::function<bool()>> cases[] = {
        {"EfsRead", "1|p|l", [&] { return files.EfsRead("p", "l"); }},
        {"EfsWrite", "2|l|p", [&] { return files.EfsWrite("l", "p"); }},
        {"EfsDelete", "3|p", [&] { return files.EfsDelete("p"); }},
        {"EfsMkDir", "4|p", [&] { return files.EfsMkDir("p"); }},
        {"EfsRmDir", "5|p", [&] { return files.EfsRmDir("p"); }},
        {"EfsRmTree", "6|p", [&] { return files.EfsRmTree("p"); }},
        {"CreateCEFS", "7|l", [&] { return files.CreateCEFS("l"); }},
        {"DownloadPRL", "8|l", [&] { return files.DownloadPRL("l"); }},
        {"UploadPRL", "9|l", [&] { return files.UploadPRL("l"); }},
        {"uploadHexFile", "10|f", [&] { return loader.uploadHexFile("f"); }},
        {"uploadBHexFile", "11|f", [&] { return loader.uploadBHexFile("f"); }},
        {"UploadBootLoaderBeforeImageHexFile", "12|b|i",
         [&] { return loader.UploadBootLoaderBeforeImageHexFile("b", "i"); }},
        {"uploadBootfile", "13|f", [&] { return loader.uploadBootfile("f"); }},
        {"uploadCEFS_File", "14|f", [&] { return loader.uploadCEFS_File("f"); }},
        {"uploadCEFS_File2", "15|f|g", [&] { return loader.uploadCEFS_File2("f", "g"); }},
        {"uploadMultiImage", "16|d", [&] { return loader.uploadMultiImage("d"); }},
        {"uploadQcnFile", "17|f", [&] { return loader.uploadQcnFile("f"); }},
        {"uploadQcnFile", "17|f|12", [&] { return loader.uploadQcnFile("f", "12"); }},
        {"downloadQcnFile", "18|f|12", [&] { return loader.downloadQcnFile("f", "12"); }},
    };
    for (const bool bSucceeds : {true, false})
        for (const auto& [sName, sCall, call] : cases) {
            m_program.task = [=](TaskEvents& events) { events.finished(bSucceeds); };
            files.ClearError();
            loader.ClearError();
            EXPECT_EQ(call(), bSucceeds) << sName;
            EXPECT_EQ(m_program.TakeCalls(), Texts{"begin " + sCall});
            const std::string sError = std::string(files.GetErrorInfo()) + loader.GetErrorInfo();
            EXPECT_EQ(sError.find("::" + sName + " - ") != std::string::npos, !bSucceeds) << sError;
        }
    EXPECT_FALSE(files.EfsVerify("l", "p") || files.EfsMkDir(nullptr)); // not implemented; no path
    DWORD iMode = 0;
    EXPECT_TRUE(loader.getPhoneMode(iMode));
    EXPECT_EQ(iMode, 8U);
}

TEST_F(ServerClients, ListingIsCompleteOrEmpty) {
    EfsDirItem item = {{}, 1, 0, 0, 0, 0, 70};
    std::fill_n(item.sName, sizeof item.sName, 'n'); // without a terminating zero
    bool bSucceeds = true;
    m_program.task = [&](TaskEvents& events) {
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
    bSucceeds = false;
    EXPECT_FALSE(m_files.EfsDirectory("a"));
    EXPECT_EQ(names, Texts{std::string(131, 'n') + ":71"});
}

struct Watcher : SoftwareDownloadListener {
    void downloadProgressed(DWORD iDone, DWORD iInAll) override {
        sSeen += std::to_string(iDone) + "/" + std::to_string(iInAll) + " ";
    }
    std::string sSeen;
};

TEST_F(ServerClients, ProgressAndAbort) {
    bool bEnds = true;
    m_program.task = [&](TaskEvents& events) {
        events.progressed(3, 10);
        if (bEnds)
            events.finished(true);
    };
    m_download.ConfigureCallBacks([](void* pSeen) { return ++*static_cast<int*>(pSeen) > 0; }, nullptr);
    Watcher watcher;
    m_download.addListener(&watcher);
    EXPECT_TRUE(m_download.uploadHexFile("f"));
    m_download.removeListener(&watcher);
    EXPECT_TRUE(m_download.uploadHexFile("f"));
    EXPECT_EQ(watcher.sSeen, "3/10 ");
    EXPECT_GT(m_iContext, 0);
    bEnds = false;
    m_program.TakeCalls();
    std::thread helper([&] {
        while (m_program.TakeCalls().empty())
            std::this_thread::yield();
        EXPECT_TRUE(m_download.abort());
    });
    EXPECT_FALSE(m_download.uploadQcnFile("f"));
    helper.join();
    EXPECT_STREQ(m_download.GetErrorInfo(), "SoftwareDownload::uploadQcnFile - failed");

    m_program.task = [](TaskEvents& events) {
        events.finished(true);
        events.finished(false); // is ignored
    };
    EXPECT_TRUE(m_download.uploadHexFile("f"));
}

TEST_F(ServerClients, TaskThatEndsAfterItsTimeOutIsNotAborted) {
    const std::string sLimit = "SoftwareDownload::waitWithMessageLoop() -- Timeout exceeded";
    EXPECT_EQ(m_files.GetTimeOut(QMSL_TimeOut_MultipleResponse), 600000U);
    EXPECT_EQ(m_download.GetTimeOut(QMSL_TimeOut_MultipleResponse), 10000U);
    EXPECT_TRUE(m_download.ConfigureTimeOut(QMSL_TimeOut_MultipleResponse, 20));
    m_program.task = [](TaskEvents&) {};
    {
        Diag_FTM phone(1);
        const LogCapture log(phone);
        m_download.SetLogManager(phone.GetDataLogFileHandler());
        EXPECT_FALSE(m_download.uploadHexFile("f"));
        EXPECT_EQ(m_program.TakeCalls(), (Texts{"begin 10|f", "abort"}));
        EXPECT_EQ(m_download.GetErrorInfo(), sLimit);
        EXPECT_EQ(log.Lines(), (Texts{"0x0002 SoftwareDownload::uploadHexFile", "0x0010 " + sLimit}));

        TaskEvents* pTask = nullptr; // ends directly after the time-out
        m_program.task = [&](TaskEvents& events) { pTask = &events; };
        phone.ConfigureLibraryTextLogCallBack(&pTask, [](unsigned short, unsigned char* pText, void* ppTask) {
            if (reinterpret_cast<const TextLogRecord*>(pText)->iCategory == LOG_ERR)
                (*static_cast<TaskEvents**>(ppTask))->finished(true);
        });
        EXPECT_TRUE(m_download.uploadHexFile("f"));
        EXPECT_STREQ(m_download.GetErrorInfo(), "");
        m_download.SetLogManager(nullptr);
    }
    std::promise<void> gaveUp;
    m_program.task = [&, bFirst = true](TaskEvents& events) mutable {
        if (std::exchange(bFirst, false))
            gaveUp.get_future().wait();
        events.finished(true);
    };
    EXPECT_FALSE(m_download.uploadBHexFile("f")); // the server finishes the task before `begin` returns
    gaveUp.set_value();
    EXPECT_TRUE(m_files.EfsDelete("p"));
    EXPECT_EQ(m_program.TakeCalls(), (Texts{"begin 10|f", "begin 11|f", "begin 3|p"}));
}

} // namespace
