#include "portserver/server_client.h"

#include <utility>

namespace {

struct StartCall {
    std::string sClass;
    std::string sClientName;
    std::shared_ptr<PacketEvents> pEvents;
    std::shared_ptr<PortServer> pServer = nullptr; // out
};

struct PortCall {
    std::string sPortName;
    DWORD iTimeOut_ms;
    bool bSelected = false; // out
};

} // namespace

ServerClient::ServerClient(const char* sClass, const char* sClientName,
                           std::shared_ptr<ComThreadManager> pComThread)
    : m_sClass(sClass), m_sClientName(sClientName ? sClientName : ""), m_pComThread(std::move(pComThread)) {}

ServerClient::~ServerClient() {
    if (m_pComThread && m_pServer)
        m_pComThread->ReleaseOnThread(std::move(m_pServer));
}

void ServerClient::Carry(const DispatcherPointer& pDispatcher, const std::shared_ptr<void>& pCall,
                         DWORD iLimit_ms) {
    m_pComThread->executeFunction(pDispatcher, pCall, iLimit_ms);
    if (!pDispatcher->ErrorText().empty())
        throw ServerException(pDispatcher->ErrorText());
}

void ServerClient::Initialize(const std::shared_ptr<PacketEvents>& pEvents) {
    if (m_pServer)
        return;
    auto pCall = std::make_shared<StartCall>(StartCall{m_sClass, m_sClientName, pEvents});
    try {
        Execute("initialize", &ServerClient::initializeImpl, pCall, kCallLimit_ms);
    } catch (...) {
        // A view that was made too late must go where it was made.
        m_pComThread->ReleaseOnThread(std::move(pCall));
        throw;
    }
    m_pServer = std::move(pCall->pServer);
}

void ServerClient::initializeImpl(void* pArgument) {
    StartCall& call = *static_cast<StartCall*>(pArgument);
    std::shared_ptr<PortServer> pServer = MakePortServer();
    if (!pServer)
        throw ServerException(call.sClass + "::initialize - Unable to connect to the QPST server");
    if (!pServer->attach(call.sClientName, call.pEvents))
        throw ServerException(call.sClass + "::initialize - Unable to attach to the QPST server.");
    call.pServer = std::move(pServer);
}

void ServerClient::ChangePort(const std::string& sPortName, DWORD iTimeOut_ms) {
    m_bConnected = false;
    const auto pCall = std::make_shared<PortCall>(PortCall{sPortName, iTimeOut_ms});
    Execute("changeComPortImpl", &ServerClient::changeComPortImpl, pCall, WithGrace(iTimeOut_ms));
    if (!pCall->bSelected)
        throw ServerException(Operation("changeComPortImpl") + " - Unable to change COM ports.");
    m_bConnected = true;
}

void ServerClient::changeComPortImpl(void* pArgument) {
    PortCall& call = *static_cast<PortCall*>(pArgument);
    call.bSelected = Server().selectPort(call.sPortName, call.iTimeOut_ms);
}

void ServerClient::RequireConnection(const char* sName) const {
    if (!m_bConnected)
        throw ServerException(Operation(sName) + " - " + m_sClass +
                              "::connect must be called before calling this member function.");
}

std::string ServerClient::PortName(unsigned short iComPort) {
    return iComPort == kNoParticularPort ? "" : "COM" + std::to_string(iComPort);
}
