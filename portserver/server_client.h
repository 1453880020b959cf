// What every client of a port server has: its name, the thread that carries its calls, the server itself.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "platform/export.h"
#include "platform/types.h"
#include "platform/wait_event.h"
#include "portserver/com_thread_manager.h"
#include "portserver/function_dispatcher.h"
#include "portserver/port_server.h"

/// The port number that stands for no particular port.
constexpr unsigned short kNoParticularPort = 65535;

/// ServerClient starts the server and carries calls to it. Operations of one client belong to one thread at a
/// time; an operation's ...Impl member runs on the automation thread and touches nothing but the server and
/// the record that it was given, which the caller reads when the call has ended.
///
/// A copy is what a call runs on: it shares the server and has nothing else of the client.
class QUILLET_API ServerClient {
public:
    /// sClass begins the error texts; the server is started by the first operation that needs it. Takes the
    /// thread, which the public constructors ask for where a failure may be thrown.
    ServerClient(const char* sClass, const char* sClientName, std::shared_ptr<ComThreadManager> pComThread);
    virtual ~ServerClient();
    ServerClient& operator=(const ServerClient&) = delete;

protected:
    using Impl = void (ServerClient::*)();
    using ImplWithArgument = void (ServerClient::*)(void*);
    using DispatcherPointer = std::shared_ptr<FunctionDispatcher>;

    /// The limit of a call that brings none of its own, and what every other call gets on top of its own so
    /// that the server can keep it.
    static constexpr DWORD kCallLimit_ms = 10000;
    static constexpr DWORD kGrace_ms = 2000;
    static constexpr DWORD WithGrace(DWORD iTimeOut_ms) {
        return iTimeOut_ms < kWaitForever - kGrace_ms ? iTimeOut_ms + kGrace_ms : kWaitForever;
    }

    ServerClient(const ServerClient& other) : m_pServer(other.m_pServer) {}

    /// MakeDispatcher makes the call of one member of the derived class.
    virtual DispatcherPointer MakeDispatcher(std::string sOperation, Impl pImpl) const = 0;
    virtual DispatcherPointer MakeDispatcher(std::string sOperation, ImplWithArgument pImpl) const = 0;

    /// Execute runs an Impl on the automation thread. Throws ServerException with the text of what went
    /// wrong there, or ComThreadManager::TimeoutException.
    template <class Client>
    void Execute(const char* sName, void (Client::*pImpl)(void*), const std::shared_ptr<void>& pCall,
                 DWORD iLimit_ms) {
        Carry(MakeDispatcher(Operation(sName), static_cast<ImplWithArgument>(pImpl)), pCall, iLimit_ms);
    }
    template <class Client>
    void Execute(const char* sName, void (Client::*pImpl)(), DWORD iLimit_ms) {
        Carry(MakeDispatcher(Operation(sName), static_cast<Impl>(pImpl)), nullptr, iLimit_ms);
    }

    /// Initialize starts the server and attaches to it, once. Throws ServerException with the start-up text.
    void Initialize(const std::shared_ptr<PacketEvents>& pEvents);
    /// ChangePort selects a port of the server; connected is what the client is afterwards. Throws
    /// ServerException.
    void ChangePort(const std::string& sPortName, DWORD iTimeOut_ms);
    /// RequireConnection throws ServerException when no port was selected yet.
    void RequireConnection(const char* sName) const;
    /// "EFS::EfsMkDir" for the name "EfsMkDir".
    std::string Operation(const char* sName) const { return m_sClass + "::" + sName; }
    /// "COM5" for 5, nothing for kNoParticularPort.
    static std::string PortName(unsigned short iComPort);

    /// The server; for Impl members.
    PortServer& Server() const { return *m_pServer; }

private:
    void Carry(const DispatcherPointer& pDispatcher, const std::shared_ptr<void>& pCall, DWORD iLimit_ms);
    void initializeImpl(void* pCall);
    void changeComPortImpl(void* pCall);

    const std::string m_sClass;
    const std::string m_sClientName;
    std::shared_ptr<ComThreadManager> m_pComThread; // null in a copy
    std::shared_ptr<PortServer> m_pServer;          // null until it is started; given up on the thread
    std::atomic<bool> m_bConnected = false;         // any thread reads it; m_pServer is set before
};

/// Dispatched completes a client: it makes the calls of the members of Client, which derives from it.
template <class Client, class Base>
class Dispatched : public Base {
protected:
    using Base::Base;
    Dispatched(const Dispatched&) = default;

    ServerClient::DispatcherPointer MakeDispatcher(std::string sOperation,
                                                   ServerClient::Impl pImpl) const override {
        return Make<typename FunctionDispatcherHelper<Client>::Function>(std::move(sOperation), pImpl);
    }
    ServerClient::DispatcherPointer MakeDispatcher(std::string sOperation,
                                                   ServerClient::ImplWithArgument pImpl) const override {
        return Make<typename FunctionDispatcherHelper<Client>::FunctionWithArgument>(std::move(sOperation),
                                                                                     pImpl);
    }

private:
    template <class Function, class Member>
    ServerClient::DispatcherPointer Make(std::string sOperation, Member pImpl) const {
        return std::make_shared<FunctionDispatcherHelper<Client>>(
            std::move(sOperation), static_cast<const Client&>(*this), static_cast<Function>(pImpl));
    }
};
