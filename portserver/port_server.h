// What the port-server path needs of a port server: the one place where such a program is plugged in.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/export.h"
#include "platform/types.h"
#include "portserver/com_thread_manager.h"
#include "portserver/server_fault.h"

/// One entry of a directory that a port server lists.
struct EfsDirItem {
    char sName[132];         // full path
    DWORD isFile;            // 1 file, 0 directory, 2 link
    unsigned short Mask;     // attribute mask
    unsigned char BufOption; // buffering option
    unsigned char Clean;     // clean-up option
    DWORD Date;              // as the phone counts it
    DWORD FileSize;          // bytes
};
static_assert(sizeof(EfsDirItem) == 148);

/// A phone that a port server knows: four texts, of which the first is the port's name, such as "COM5".
using PhoneEntry = std::array<std::string, 4>;

/// What can be asked of a phone besides requests and NV items. SendSpc and SendTmob carry a text.
enum class PhoneControl {
    Offline,
    Lock,
    Unlock,
    DetectBadPhoneMode,
    SendSpc,
    GetDiagVerno,
    SendTmob,
    GetPhoneMode
};

/// How a reset of the phone went.
enum class ResetOutcome { Done, NeverReset, NeverRecovered };

/// Work of the server that takes its time: begun by one call, ended by TaskEvents::finished.
enum class ServerTask {
    EfsDirectory,
    EfsRead,
    EfsWrite,
    EfsDelete,
    EfsMkDir,
    EfsRmDir,
    EfsRmTree,
    CreateCEFS,
    DownloadPRL,
    UploadPRL,
    UploadHexFile,
    UploadBHexFile,
    UploadBootLoaderBeforeImageHexFile,
    UploadBootfile,
    UploadCEFS_File,
    UploadCEFS_File2,
    UploadMultiImage,
    UploadQcnFile,
    DownloadQcnFile
};

/// Receives the packets that the phone sends by itself, from any thread: packet and two FCS bytes, as they
/// came over the wire (a server that strips these appends two bytes of any value).
class QUILLET_API PacketEvents {
public:
    virtual ~PacketEvents();
    virtual void packetReceived(std::span<unsigned char> packet) = 0;
};

/// Receives the course of one task, from any thread. finished is the last call; later ones do no harm.
class QUILLET_API TaskEvents {
public:
    virtual ~TaskEvents();
    virtual void entryListed(const EfsDirItem& item) = 0;
    virtual void progressed(DWORD iDone, DWORD iInAll) = 0;
    virtual void finished(bool bSucceeded) = 0;
};

/// PortServer is one client's view of a port server. Every function, the destructor included, runs on the
/// one thread that is set up for automation. False or an empty list is the server's or the phone's refusal;
/// ComException and any other exception are allowed everywhere. A function that takes a time limit keeps it
/// by itself; one that never returns makes all later calls of the process time out, no more.
class QUILLET_API PortServer {
public:
    virtual ~PortServer();

    /// attach is called once, first: it makes the server know this client. pEvents receives the packets that
    /// the phone sends by itself; null: they are not wanted.
    virtual bool attach(const std::string& sClientName, const std::shared_ptr<PacketEvents>& pEvents) = 0;
    /// selectPort chooses the port ("COM5") that later calls go to; an empty name: no particular port.
    virtual bool selectPort(const std::string& sPortName, DWORD iTimeOut_ms) = 0;
    virtual std::vector<std::string> portNames() = 0;
    virtual std::vector<PhoneEntry> phones() = 0;

    /// sendSync exchanges one packet without framing and FCS; false when no answer came in time.
    virtual bool sendSync(std::span<const unsigned char> request, DWORD iTimeOut_ms,
                          std::vector<unsigned char>& response) = 0;
    virtual bool readNv(unsigned short iItem, std::vector<unsigned char>& data) = 0;
    virtual bool writeNv(unsigned short iItem, std::span<const unsigned char> data) = 0;
    virtual bool control(PhoneControl eControl, const std::string& sText, DWORD& iValue) = 0;
    virtual ResetOutcome reset(DWORD iTimeOut_ms) = 0;

    /// begin starts a task; its texts are what the client's operation was given, in order. A client begins
    /// no second one before the first has finished or was aborted. abort ends it; nothing more is reported.
    virtual bool begin(ServerTask eTask, const std::vector<std::string>& arguments,
                       const std::shared_ptr<TaskEvents>& pEvents) = 0;
    virtual void abort() = 0;
};

/// Makes one client's view of a server; null when there is none.
using PortServerFactory = std::function<std::shared_ptr<PortServer>()>;

/// ServerRelay is a view that passes each call on to another one, by means of Passage::Pass(fault, call).
/// There is one on each side of the edge between program and library, so that no exception crosses it.
template <class Passage>
class ServerRelay : public PortServer {
public:
    ServerRelay(std::shared_ptr<PortServer> pServer, std::shared_ptr<ServerFault> pFault)
        : m_pServer(std::move(pServer)), m_pFault(std::move(pFault)) {}

    bool attach(const std::string& sClientName, const std::shared_ptr<PacketEvents>& pEvents) override {
        return Pass([&] { return m_pServer->attach(sClientName, pEvents); });
    }
    bool selectPort(const std::string& sPortName, DWORD iTimeOut_ms) override {
        return Pass([&] { return m_pServer->selectPort(sPortName, iTimeOut_ms); });
    }
    std::vector<std::string> portNames() override {
        return Pass([&] { return m_pServer->portNames(); });
    }
    std::vector<PhoneEntry> phones() override {
        return Pass([&] { return m_pServer->phones(); });
    }
    bool sendSync(std::span<const unsigned char> request, DWORD iTimeOut_ms,
                  std::vector<unsigned char>& response) override {
        return Pass([&] { return m_pServer->sendSync(request, iTimeOut_ms, response); });
    }
    bool readNv(unsigned short iItem, std::vector<unsigned char>& data) override {
        return Pass([&] { return m_pServer->readNv(iItem, data); });
    }
    bool writeNv(unsigned short iItem, std::span<const unsigned char> data) override {
        return Pass([&] { return m_pServer->writeNv(iItem, data); });
    }
    bool control(PhoneControl eControl, const std::string& sText, DWORD& iValue) override {
        return Pass([&] { return m_pServer->control(eControl, sText, iValue); });
    }
    ResetOutcome reset(DWORD iTimeOut_ms) override {
        return Pass([&] { return m_pServer->reset(iTimeOut_ms); });
    }
    bool begin(ServerTask eTask, const std::vector<std::string>& arguments,
               const std::shared_ptr<TaskEvents>& pEvents) override {
        return Pass([&] { return m_pServer->begin(eTask, arguments, pEvents); });
    }
    void abort() override {
        Pass([&] { return m_pServer->abort(), true; });
    }

private:
    template <class Call>
    auto Pass(Call call) {
        return Passage::Pass(*m_pFault, call);
    }

    const std::shared_ptr<PortServer> m_pServer;
    const std::shared_ptr<ServerFault> m_pFault;
};

/// The passage in the program: a call throws nothing, and the fault says what it would have thrown.
struct FaultCatcher {
    template <class Call>
    static auto Pass(ServerFault& fault, Call call) noexcept {
        decltype(call()) result{};
        fault = ServerFault::Of([&] { result = call(); });
        return result;
    }
};

/// A view as the library takes it from a program: its functions throw nothing and leave in *pFault how the
/// last one went. Without a view *pFault says why there is none.
struct CaughtServer {
    std::shared_ptr<PortServer> pServer;
    std::shared_ptr<ServerFault> pFault;
};
using CaughtServerFactory = std::function<CaughtServer()>;

/// AttachCaughtServer is the library's half of AttachPortServer.
QUILLET_API void AttachCaughtServer(CaughtServerFactory factory);

/// AttachPortServer supplies the port server of this process; an empty factory takes it away again. Without
/// one, as at first, connecting fails. Clients that are connected keep theirs. Any thread.
QUILLET_API_INLINE void AttachPortServer(PortServerFactory factory) {
    if (!factory)
        return AttachCaughtServer({});
    AttachCaughtServer([factory = std::move(factory)] {
        const auto pFault = std::make_shared<ServerFault>();
        std::shared_ptr<PortServer> pServer;
        *pFault = ServerFault::Of([&] { pServer = factory(); });
        if (pServer)
            pServer = std::make_shared<ServerRelay<FaultCatcher>>(std::move(pServer), pFault);
        return CaughtServer{std::move(pServer), pFault};
    });
}

/// MakePortServer makes a view by means of the attached factory; null without one. Runs on the thread that
/// is set up for automation.
std::shared_ptr<PortServer> MakePortServer();
