// The program and the library as separate modules: every call in either direction, with exceptions thrown on
// either side. The program is built twice: with the compiler's libraries linked statically and with them in
// DLLs.
#include "quillet.h"

#include <future>

#include "tests/fake_port_server.h"
#include "tests/windows/checks.h"
#include "tests/windows/flat_calls.h"

namespace {

using Trouble = FakeProgram::Trouble;

/// Returns the text of the exception that an operation throws, caught in this program.
std::string Raised(const std::function<void()>& operation) {
    try {
        operation();
        return "nothing";
    } catch (const ServerException& error) {
        return error.what();
    } catch (const ComThreadManager::TimeoutException& error) {
        return error.what();
    }
}

void FlatFunctions() {
    EXPECT_EQ(CallFlatFunctions(), 0);
}

void NoServer() {
    constexpr const char* kReason = "::initialize - Unable to connect to the QPST server";
    QpstServer server("a");
    EXPECT_EQ(Raised([&] { server.connect(5, 200); }), std::string("QpstServer") + kReason);
    EFS files("b");
    EXPECT(!files.connect(5));
    EXPECT_EQ(std::string(files.GetErrorInfo()), std::string("EFS") + kReason);
    SoftwareDownload download(nullptr, "c");
    EXPECT(!download.connect("COM5"));
    EXPECT_EQ(std::string(download.GetErrorInfo()), std::string("SoftwareDownload") + kReason);
}

void ServersThatThrow() {
    unsigned char aBytes[8] = {};
    unsigned short iSize = sizeof aBytes;
    const struct {
        const char* sFunction; // the server's function
        const char* sOperation;
        std::function<void(QpstServer&)> operation;
    } rows[] = {
        {"make", "initialize", [](QpstServer& server) { server.connect(5, 200); }},
        {"attach", "initialize", [](QpstServer& server) { server.connect(5, 200); }},
        {"selectPort", "changeComPortImpl", [](QpstServer& server) { server.connect(5, 200); }},
        {"sendSync", "sendSync",
         [&](QpstServer& server) { server.sendSync(1, aBytes, &iSize, aBytes, 1000); }},
        {"readNv", "readNv", [&](QpstServer& server) { server.readNv(1, aBytes, 8); }},
        {"writeNv", "writeNv", [&](QpstServer& server) { server.writeNv(1, aBytes, 8); }},
        {"control", "sendSpc", [](QpstServer& server) { server.sendSpc("000000"); }},
        {"reset", "reset", [](QpstServer& server) { server.reset(1000); }},
        {"portNames", "getPortList", [](QpstServer& server) { server.getPortList(); }},
        {"phones", "getPhoneList", [](QpstServer& server) { server.getPhoneList(); }},
    };
    for (const auto& row : rows)
        for (const bool bCom : {true, false}) {
            FakeProgram program;
            QpstServer server("a");
            if (&row - rows >= 3)
                server.connect(5, 200);
            program.Set(row.sFunction, bCom ? Trouble::ComError : Trouble::OddThrow);
            EXPECT_EQ(Raised([&] { row.operation(server); }),
                      std::string("QpstServer::") + row.sOperation +
                          (bCom ? " - COM exception thrown." : " - Unknown exception thrown."));
        }
}

void RaisedToTheCaller() {
    FakeProgram program;
    QpstServer server("a");
    unsigned char aBytes[8] = {1, 2};
    unsigned short iSize = sizeof aBytes;
    const auto sendSync = [&] { server.sendSync(2, aBytes, &iSize, aBytes, 1000); };
    EXPECT_EQ(Raised(sendSync),
              "QpstServer::sendSync - QpstServer::connect must be called before calling this "
              "member function.");
    server.connect(5, 200);
    EXPECT_EQ(Raised(sendSync), "nothing");
    EXPECT_EQ(iSize, 6);
    EXPECT_EQ(server.getPhoneList()[1][0], "COM7");
    program.Set("sendSync", Trouble::Refuse);
    program.Set("reset", Trouble::Refuse);
    EXPECT_EQ(Raised(sendSync), "Timeout waiting for response");
    EXPECT_EQ(Raised([&] { server.reset(1000); }), "QpstServer::reset - The phone never reset.");
    program.Set("sendSync", Trouble::OddThrow);
    Diag_FTM phone(&server, 5);
    EXPECT(!phone.IsPhoneConnected());
}

/// A call that this program defines, run on the automation thread.
class OwnCall : public FunctionDispatcher {
public:
    OwnCall() : FunctionDispatcher("own") {}
    void dispatch(void*) override {
        mayGoOn.get_future().wait();
        throw 42;
    }

    std::promise<void> mayGoOn;
};

void CallsOfTheProgram() {
    const auto pManager = ComThreadManager::Use();
    const auto pLate = std::make_shared<OwnCall>();
    EXPECT_EQ(Raised([&] { pManager->executeFunction(pLate, nullptr, 20); }),
              "ComThreadManager::executeFunction - Timed out");
    pLate->mayGoOn.set_value();
    const auto pCall = std::make_shared<OwnCall>();
    pCall->mayGoOn.set_value();
    EXPECT_EQ(Raised([&] { pManager->executeFunction(pCall, nullptr, 30000); }), "nothing");
    EXPECT_EQ(pCall->ErrorText(), "own - Unknown exception thrown.");
}

int g_iEntries = 0;

unsigned char CountEntry(char*, unsigned char, unsigned short, unsigned char, unsigned char, DWORD, DWORD,
                         void*) {
    ++g_iEntries;
    return 1;
}

struct CountPackets : CQLibEvents_Listener {
    void messageReceived(LONG, unsigned char*, unsigned int, LONG, short, DWORD) override { ++iCount; }
    int iCount = 0;
};

struct AbortInVain : SoftwareDownloadListener {
    void downloadProgressed(DWORD, DWORD) override {
        bAborted = pDownload->abort();
        pEvents->finished(true);
    }
    SoftwareDownload* pDownload = nullptr;
    TaskEvents* pEvents = nullptr;
    bool bAborted = true;
};

void CallsOut() {
    FakeProgram program;
    program.task = [](TaskEvents& events) {
        events.entryListed(EfsDirItem{});
        events.finished(true);
    };
    EFS files("a");
    files.ConfigureCallBacks(CountEntry, nullptr);
    EXPECT(files.connect(5) && files.EfsDirectory("/"));
    EXPECT_EQ(g_iEntries, 1);
    program.Set("begin", Trouble::OddThrow);
    EXPECT(!files.EfsDelete("/a"));
    EXPECT_EQ(std::string(files.GetErrorInfo()), "EFS::EfsDelete - Unknown exception thrown.");
    program.Set("begin", Trouble::None);

    CountPackets listener;
    QpstServer server("b");
    server.connect(5, 200);
    server.addEventListener(&listener);
    unsigned char aPacket[] = {0x10, 0x00, 0x55, 0x55};
    program.pPacketEvents->packetReceived(aPacket);
    EXPECT_EQ(listener.iCount, 1);

    SoftwareDownload download(nullptr, "c");
    AbortInVain aborter;
    aborter.pDownload = &download;
    download.addListener(&aborter);
    program.task = [&](TaskEvents& events) {
        aborter.pEvents = &events;
        events.progressed(1, 2);
    };
    program.Set("abort", Trouble::ComError);
    EXPECT(download.connect("COM5") && download.uploadHexFile("image.hex"));
    EXPECT(!aborter.bAborted);
}

} // namespace

int main() {
    return RunChecks({{"flat functions", FlatFunctions},
                      {"no port server", NoServer},
                      {"servers that throw", ServersThatThrow},
                      {"exceptions for the caller", RaisedToTheCaller},
                      {"calls that the program defines", CallsOfTheProgram},
                      {"callbacks into the program", CallsOut}});
}
