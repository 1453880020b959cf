// The common part of all clients of a port server: name, server, and the thread that runs the calls.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/export.h"
#include "platform/types.h"
#include "portserver/com_thread_manager.h"
#include "portserver/function_dispatcher.h"
#include "portserver/port_server.h"

/// The port number that means no particular port.
constexpr unsigned short kNoParticularPort = 65535;

/// ServerClient starts the server and runs calls to it. One thread at a time may use a client. An operation's
/// ...Impl member runs on the automation thread and uses nothing but the server and the record passed to it,
/// which the caller reads when the call has finished.
///
/// A server whose function throws anything but ServerException is lost: the automation thread releases its
/// view at once. If the client was connected, its next operation restarts the server and selects the port
/// again. The operation that lost the server fails, because its progress is unknown; those that may be
/// repeated (connecting, the lists, the phone check) are repeated at once.
///
/// Calls run on a copy of the client, which shares the server and nothing else.
class QUILLET_API ServerClient {
public:
    /// sClass begins the error texts. The first operation that needs the server starts it. The thread is a
    /// parameter because only the public constructors may throw when there is none.
    ServerClient(const char* sClass, const char* sClientName, std::shared_ptr<ComThreadManager> pComThread);
    virtual ~ServerClient();
    ServerClient& operator=(const ServerClient&) = delete;

protected:
    using Impl = void (ServerClient::*)();
    using ImplWithArgument = void (ServerClient::*)(void*);
    using DispatcherPointer = std::shared_ptr<FunctionDispatcher>;

    /// kCallLimit_ms limits calls without a time-out of their own. Other calls get kGrace_ms on top of their
    /// time-out, so that the server can enforce it first.
    static constexpr DWORD kCallLimit_ms = 10000;
    static constexpr DWORD kGrace_ms = 2000;
    static DWORD WithGrace(DWORD iTimeOut_ms);

    ServerClient(const ServerClient& other) : m_pSession(other.m_pSession) {}

    /// MakeDispatcher makes the call of a member of the derived class.
    virtual DispatcherPointer MakeDispatcher(std::string sOperation, Impl pImpl) const = 0;
    virtual DispatcherPointer MakeDispatcher(std::string sOperation, ImplWithArgument pImpl) const = 0;

    /// Execute runs an Impl on the automation thread. Throws ServerException with the error text of the call,
    /// or ComThreadManager::TimeoutException. For lastSign see ComThreadManager::executeFunction.
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

    /// WantPackets sets the receiver of unsolicited packets. Called before the server starts.
    void WantPackets(std::shared_ptr<PacketEvents> pEvents) { m_pEvents = std::move(pEvents); }
    /// Initialize starts the server and attaches to it, unless that is done already and the server was not
    /// lost. Throws ServerException with the start-up text.
    void Initialize();
    /// ConnectTo starts the server and selects a port. If it fails, the client is not connected. Throws
    /// ServerException.
    void ConnectTo(const std::string& sPortName, DWORD iTimeOut_ms);
    /// RequireConnection throws ServerException when the client is not connected. Any thread.
    void RequireConnection(const char* sName) const;
    /// RequireServer is RequireConnection, but also restarts a lost server. Throws ServerException.
    void RequireServer(const char* sName);
    /// TwiceIfLost runs a repeatable body, and runs it again if the server was lost meanwhile.
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
    /// "COM5" for 5, an empty text for kNoParticularPort.
    static std::string PortName(unsigned short iComPort);

    /// The server, for Impl members. Throws ComException when it was lost.
    PortServer& Server() const;
    /// WatchServer runs a call on the automation thread. The server is lost if it throws (but
    /// ServerException).
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
    std::shared_ptr<Session> m_pSession;            // shared with copies; released on the automation thread
    std::string m_sPortName;                        // the port to connect to
    DWORD m_iPortTimeOut_ms = 0;
    std::atomic<bool> m_bConnected = false; // read by any thread
};

/// Dispatched completes a client: it makes the calls of members of Client, the derived class.
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
