// The interface of a port server: the one place where such a program is connected.
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

/// One entry of a directory listed by a port server.
struct EfsDirItem {
    char sName[132];         // full path
    DWORD isFile;            // 1 file, 0 directory, 2 link
    unsigned short Mask;     // attribute mask
    unsigned char BufOption; // buffering option
    unsigned char Clean;     // clean-up option
    DWORD Date;              // in the phone's own format
    DWORD FileSize;          // bytes
};
static_assert(sizeof(EfsDirItem) == 148);

/// A phone known to a port server: four texts, the first of which is the name of its port, such as "COM5".
using PhoneEntry = std::array<std::string, 4>;

/// Operations on a phone other than requests and NV items. SendSpc and SendTmob take a text.
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

/// The result of resetting the phone.
enum class ResetOutcome { Done, NeverReset, NeverRecovered };

/// Long operations of the server: begun by one call, ended by TaskEvents::finished.
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

/// Receives unsolicited packets of the phone, from any thread: the packet and its two FCS bytes, as received
/// over the wire (a server that removes these appends two bytes of any value).
class QUILLET_API PacketEvents {
public:
    virtual ~PacketEvents();
    /// packetReceived receives one packet, which is valid during the call.
    virtual void packetReceived(std::span<unsigned char> packet) = 0;
};

/// Receives the reports on one task, from any thread. finished is the last one; later calls are harmless.
class QUILLET_API TaskEvents {
public:
    virtual ~TaskEvents();
    /// entryListed: one entry of a listing.
    virtual void entryListed(const EfsDirItem& item) = 0;
    /// progressed: how far the task is, in the server's own units.
    virtual void progressed(DWORD iDone, DWORD iInAll) = 0;
    /// finished: the task has ended.
    virtual void finished(bool bSucceeded) = 0;
};

/// PortServer is one client's view of a port server. Every function, including the destructor, runs on the
/// automation thread. False or an empty list means that the server or the phone refused. Any function may
/// throw ComException or any other exception. A function with a time limit must enforce it; one that never
/// returns makes all later calls of the process time out, nothing worse.
class QUILLET_API PortServer {
public:
    virtual ~PortServer();

    /// attach is the first call and made once: it introduces this client to the server. pEvents receives
    /// unsolicited packets of the phone; null: none are wanted.
    virtual bool attach(const std::string& sClientName, const std::shared_ptr<PacketEvents>& pEvents) = 0;
    /// selectPort selects the port ("COM5") for later calls; an empty name: no particular port.
    virtual bool selectPort(const std::string& sPortName, DWORD iTimeOut_ms) = 0;
    /// portNames returns the names of the server's ports ("COM5"), phones its phones.
    virtual std::vector<std::string> portNames() = 0;
    virtual std::vector<PhoneEntry> phones() = 0;

    /// sendSync exchanges one packet without framing and FCS; false when no response arrived in time.
    virtual bool sendSync(std::span<const unsigned char> request, DWORD iTimeOut_ms,
                          std::vector<unsigned char>& response) = 0;
    /// readNv reads an NV item; writeNv writes one.
    virtual bool readNv(unsigned short iItem, std::vector<unsigned char>& data) = 0;
    virtual bool writeNv(unsigned short iItem, std::span<const unsigned char> data) = 0;
    /// control carries out an operation on the phone. iValue receives the value that GetDiagVerno and
    /// GetPhoneMode read.
    virtual bool control(PhoneControl eControl, const std::string& sText, DWORD& iValue) = 0;
    /// reset restarts the phone and waits until it responds again.
    virtual ResetOutcome reset(DWORD iTimeOut_ms) = 0;

    /// begin starts a task with the arguments of the client's operation, in their order. A client starts the
    /// next task only after the previous one has finished or was aborted. abort ends a task, which then
    /// reports nothing more.
    virtual bool begin(ServerTask eTask, const std::vector<std::string>& arguments,
                       const std::shared_ptr<TaskEvents>& pEvents) = 0;
    virtual void abort() = 0;
};

/// Makes one client's view of a server; null when there is no server.
using PortServerFactory = std::function<std::shared_ptr<PortServer>()>;

/// ServerRelay is a view that forwards each call to another one through Passage::Pass(fault, call). There is
/// one on each side of the boundary between program and library, so that no exception crosses it.
template <class Passage>
class ServerRelay : public PortServer {
public:
    /// pFault receives the outcome of each call.
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

/// The program's side: calls throw nothing and store in `fault` what they would have thrown.
struct FaultCatcher {
    /// Pass makes the call.
    template <class Call>
    static auto Pass(ServerFault& fault, Call call) noexcept {
        decltype(call()) result{};
        fault = ServerFault::Of([&] { result = call(); });
        return result;
    }
};

/// A view that a program passes to the library. Its functions throw nothing and store the outcome of each
/// call in *pFault. If there is no view, *pFault holds the reason.
struct CaughtServer {
    std::shared_ptr<PortServer> pServer;
    std::shared_ptr<ServerFault> pFault;
};
/// Makes such a view.
using CaughtServerFactory = std::function<CaughtServer()>;

/// AttachCaughtServer is the library's part of AttachPortServer.
QUILLET_API void AttachCaughtServer(CaughtServerFactory factory);

/// AttachPortServer sets the process's port server; an empty factory removes it. Without one (the default)
/// connecting fails. Clients that are connected keep theirs. Any thread.
QUILLET_API_INLINE void AttachPortServer(PortServerFactory factory) {
    if (!factory)
        return AttachCaughtServer({});
    AttachCaughtServer([factory = std::move(factory)] {
        const auto pFault = std::make_shared<ServerFault>();
        std::shared_ptr<PortServer> pServer;
        *pFault = ServerFault::Of([&] { pServer = factory(); });
        if (pServer != nullptr)
            pServer = std::make_shared<ServerRelay<FaultCatcher>>(std::move(pServer), pFault);
        return CaughtServer{std::move(pServer), pFault};
    });
}
