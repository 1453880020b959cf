// Calls that run on another thread: a member function and the client that it is called on.
#pragma once

#include <string>
#include <utility>

#include "platform/export.h"
#include "portserver/server_fault.h"

/// FunctionDispatcher is one call and the name of its operation ("EFS::EfsMkDir"), for the error text.
class QUILLET_API FunctionDispatcher {
public:
    /// Names the operation.
    explicit FunctionDispatcher(std::string sOperation) : m_sOperation(std::move(sOperation)) {}
    virtual ~FunctionDispatcher();

    /// dispatch makes the call, on the current thread.
    virtual void dispatch(void* pArgument) = 0;

    /// Run is dispatch, but stores exceptions as the error text. It is virtual so that it is compiled into
    /// the module whose dispatch it calls.
    QUILLET_API_INLINE virtual void Run(void* pArgument) noexcept {
        try {
            dispatch(pArgument);
        } catch (const ServerException& error) {
            m_sError = error.what();
        } catch (const ComException&) {
            m_sError = m_sOperation + " - COM exception thrown.";
        } catch (...) {
            m_sError = m_sOperation + " - Unknown exception thrown.";
        }
    }
    /// The error text of a completed Run; empty when nothing was thrown.
    const std::string& ErrorText() const { return m_sError; }

private:
    const std::string m_sOperation;
    std::string m_sError;
};

/// FunctionDispatcherHelper calls a member function of a client, with or without an argument. It uses a copy
/// of the client that shares the server, so the call has everything that it needs even when the caller has
/// stopped waiting and is gone.
template <class Client>
class QUILLET_API FunctionDispatcherHelper : public FunctionDispatcher {
public:
    using Function = void (Client::*)();                  // a call without an argument
    using FunctionWithArgument = void (Client::*)(void*); // a call with one

    /// Copies the client.
    FunctionDispatcherHelper(std::string sOperation, const Client& client, Function pFunction);
    FunctionDispatcherHelper(std::string sOperation, const Client& client, FunctionWithArgument pFunction);

    void dispatch(void* pArgument) override;

private:
    Client m_client;
    const Function m_pFunction = nullptr;
    const FunctionWithArgument m_pFunctionWithArgument = nullptr;
};

// Defined outside the class, because inline members are not exported on Windows.
template <class Client>
FunctionDispatcherHelper<Client>::FunctionDispatcherHelper(std::string sOperation, const Client& client,
                                                           Function pFunction)
    : FunctionDispatcher(std::move(sOperation)), m_client(client), m_pFunction(pFunction) {}

template <class Client>
FunctionDispatcherHelper<Client>::FunctionDispatcherHelper(std::string sOperation, const Client& client,
                                                           FunctionWithArgument pFunction)
    : FunctionDispatcher(std::move(sOperation)), m_client(client), m_pFunctionWithArgument(pFunction) {}

template <class Client>
void FunctionDispatcherHelper<Client>::dispatch(void* pArgument) {
    m_client.WatchServer([&] {
        if (m_pFunction != nullptr)
            (m_client.*m_pFunction)();
        else
            (m_client.*m_pFunctionWithArgument)(pArgument);
    });
}
