#include "portserver/server_client.h"

#include <utility>

#include "platform/wait_event.h"
#include "portserver/make_port_server.h"

/// The server, as a client and its calls share it.
struct ServerClient::Session {
    std::shared_ptr<PortServer> pServer; // automation thread only; null: not started, or lost
    // Written by the automation thread, read by any thread:
    std::atomic<bool> bAttached = false; // pServer exists
    std::atomic<bool> bOnPort = false;   // and has selected a port
};

namespace {

struct StartCall {
    std::string sClass;
    std::string sClientName;
    std::shared_ptr<PacketEvents> pEvents;
};

struct PortCall {
    std::string sPortName;
    DWORD iTimeOut_ms;
    bool bSelected = false; // out
};

} // namespace

DWORD ServerClient::WithGrace(DWORD iTimeOut_ms) {
    return iTimeOut_ms < kWaitForever - kGrace_ms ? iTimeOut_ms + kGrace_ms : kWaitForever;
}

ServerClient::ServerClient(const char* sClass, const char* sClientName,
                           std::shared_ptr<ComThreadManager> pComThread)
    : m_sClass(sClass),
      m_sClientName(sClientName != nullptr ? sClientName : ""),
      m_pComThread(std::move(pComThread)),
      m_pSession(std::make_shared<Session>()) {}

ServerClient::~ServerClient() {
    if (m_pComThread != nullptr)
        m_pComThread->ReleaseOnThread(std::move(m_pSession));
}

PortServer& ServerClient::Server() const {
    if (m_pSession->pServer == nullptr)
        throw ComException("the server was lost");
    return *m_pSession->pServer;
}

void ServerClient::WatchServer(const std::function<void()>& call) const {
    Session& session = *m_pSession;
    // Keeps the view alive if a nested call loses the server.
    const std::shared_ptr<PortServer> pInUse = session.pServer;
    try {
        call();
    } catch (const ServerException&) {
        throw;
    } catch (...) {
        if (session.pServer == pInUse) {
            session.bOnPort = false;
            session.bAttached = false;
            session.pServer.reset();
        }
        throw;
    }
}

void ServerClient::Carry(const DispatcherPointer& pDispatcher, const std::shared_ptr<void>& pCall,
                         DWORD iLimit_ms, const ComThreadManager::LastSign& lastSign) {
    m_pComThread->executeFunction(pDispatcher, pCall, iLimit_ms, lastSign);
    if (!pDispatcher->ErrorText().empty())
        throw ServerException(pDispatcher->ErrorText());
}

bool ServerClient::HasServer() const {
    return m_pSession->bAttached;
}

void ServerClient::Initialize() {
    if (HasServer())
        return;
    const auto pCall = std::make_shared<StartCall>(StartCall{m_sClass, m_sClientName, m_pEvents});
    Execute("initialize", &ServerClient::initializeImpl, pCall, kCallLimit_ms);
}

void ServerClient::initializeImpl(void* pArgument) {
    const StartCall& call = *static_cast<StartCall*>(pArgument);
    if (HasServer()) // by an earlier call, whose caller stopped waiting
        return;
    std::shared_ptr<PortServer> pServer = MakePortServer();
    if (pServer == nullptr)
        throw ServerException(call.sClass + "::initialize - Unable to connect to the QPST server");
    if (!pServer->attach(call.sClientName, call.pEvents))
        throw ServerException(call.sClass + "::initialize - Unable to attach to the QPST server.");
    m_pSession->pServer = std::move(pServer);
    m_pSession->bAttached = true;
}

void ServerClient::ConnectTo(const std::string& sPortName, DWORD iTimeOut_ms) {
    m_bConnected = false;
    m_sPortName = sPortName;
    m_iPortTimeOut_ms = iTimeOut_ms;
    TwiceIfLost([&] {
        Initialize();
        ChangePort();
    });
    m_bConnected = true;
}

void ServerClient::ChangePort() {
    const auto pCall = std::make_shared<PortCall>(PortCall{m_sPortName, m_iPortTimeOut_ms});
    Execute("changeComPortImpl", &ServerClient::changeComPortImpl, pCall, WithGrace(m_iPortTimeOut_ms));
    if (!pCall->bSelected)
        throw ServerException(Operation("changeComPortImpl") + " - Unable to change COM ports.");
}

void ServerClient::changeComPortImpl(void* pArgument) {
    PortCall& call = *static_cast<PortCall*>(pArgument);
    m_pSession->bOnPort = false;
    call.bSelected = Server().selectPort(call.sPortName, call.iTimeOut_ms);
    m_pSession->bOnPort = call.bSelected;
}

void ServerClient::RequireConnection(const char* sName) const {
    if (!m_bConnected)
        throw ServerException(Operation(sName) + " - " + m_sClass +
                              "::connect must be called before calling this member function.");
}

void ServerClient::RequireServer(const char* sName) {
    RequireConnection(sName);
    if (m_pSession->bOnPort)
        return;
    Initialize();
    ChangePort();
}

std::string ServerClient::PortName(unsigned short iComPort) {
    return iComPort == kNoParticularPort ? "" : "COM" + std::to_string(iComPort);
}
