// What every client of a port server has: its name, the thread that carries its calls, the server itself.
#pragma once

#include <atomic>
#include <functional>
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
/// A server that throws out of one of its functions is lost: its view is given up there and then, on the
/// automation thread. A client that was connected starts the server anew and selects its port again with the
/// next operation. The operation in which the server was lost fails, because nobody knows how far it came;
/// those that may be done twice (connecting, the lists, the phone check) are done over at once.
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

    ServerClient(const ServerClient& other) : m_pSession(other.m_pSession) {}

    /// MakeDispatcher makes the call of one member of the derived class.
    virtual DispatcherPointer MakeDispatcher(std::string sOperation, Impl pImpl) const = 0;
    virtual DispatcherPointer MakeDispatcher(std::string sOperation, ImplWithArgument pImpl) const = 0;

    /// Execute runs an Impl on the automation thread. Throws ServerException with the text of what went
    /// wrong there, or ComThreadManager::TimeoutException.
    /// lastSign: see ComThreadManager::executeFunction.
    template <class Client>
    void Execute(const char* sName, void (Client::*pImpl)(void*), const std::shared_ptr<void>& pCall,
                 DWORD iLimit_ms, const ComThreadManager::LastSign& lastSign = {}) {
        Carry(MakeDispatcher(Operation(sName), static_cast<ImplWithArgument>(pImpl)), pCall, iLimit_ms,
              lastSign);
    }
    template <class Client>
    void Execute(const char* sName, void (Client::*pImpl)(), DWORD iLimit_ms) {
        Carry(MakeDispatcher(Operation(sName), static_cast<Impl>(pImpl)), nullptr, iLimit_ms, {});
    }

    /// WantPackets names who receives the packets that the phone sends by itself. Before the server starts.
    void WantPackets(std::shared_ptr<PacketEvents> pEvents) { m_pEvents = std::move(pEvents); }
    /// Initialize starts the server and attaches to it, unless that was done and the server is still there.
    /// Throws ServerException with the start-up text.
    void Initialize();
    /// ConnectTo starts the server and selects a port; a client that fails in it is not connected. Throws
    /// ServerException.
    void ConnectTo(const std::string& sPortName, DWORD iTimeOut_ms);
    /// RequireConnection throws ServerException when the client is not connected. Any thread.
    void RequireConnection(const char* sName) const;
    /// RequireServer does the same, and brings back a server that was lost. Throws ServerException.
    void RequireServer(const char* sName);
    /// TwiceIfLost runs a body that may be run twice: once more when the server was lost in it.
    template <class Body>
    void TwiceIfLost(Body body) {
        const bool bHadServer = HasServer();
        try {
            body();
            return;
        } catch (const ServerException&) {
            if (!bHadServer || HasServer())
                throw;
        }
        body();
    }
    /// "EFS::EfsMkDir" for the name "EfsMkDir".
    std::string Operation(const char* sName) const { return m_sClass + "::" + sName; }
    /// "COM5" for 5, nothing for kNoParticularPort.
    static std::string PortName(unsigned short iComPort);

    /// The server; for Impl members. Throws ComException when it was lost.
    PortServer& Server() const;
    /// WatchServer runs a call on the automation thread; when it throws, the server is lost.
    void WatchServer(const std::function<void()>& call) const;

private:
    struct Session;

    void Carry(const DispatcherPointer& pDispatcher, const std::shared_ptr<void>& pCall, DWORD iLimit_ms,
               const ComThreadManager::LastSign& lastSign);
    bool HasServer() const;
    void ChangePort();
    void initializeImpl(void* pCall);
    void changeComPortImpl(void* pCall);

    const std::string m_sClass;
    const std::string m_sClientName;
    std::shared_ptr<PacketEvents> m_pEvents;
    std::shared_ptr<ComThreadManager> m_pComThread; // null in a copy
    std::shared_ptr<Session> m_pSession;            // copies share it; given up on the automation thread
    std::string m_sPortName;                        // the port that connecting was asked for
    DWORD m_iPortTimeOut_ms = 0;
    std::atomic<bool> m_bConnected = false; // any thread reads it
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
