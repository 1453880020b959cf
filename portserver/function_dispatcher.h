// Calls that are carried to another thread: a client's member function and the client that it runs on.
#pragma once

#include <string>
#include <utility>

#include "platform/export.h"
#include "portserver/server_fault.h"

/// FunctionDispatcher is one call, with the name of its operation ("EFS::EfsMkDir") for the error text.
class QUILLET_API FunctionDispatcher {
public:
    explicit FunctionDispatcher(std::string sOperation) : m_sOperation(std::move(sOperation)) {}
    virtual ~FunctionDispatcher();

    /// dispatch makes the call, on the thread that it was carried to.
    virtual void dispatch(void* pArgument) = 0;

    /// Run is dispatch, with whatever it throws turned into the error text. Virtual, so that it is compiled
    /// into the module whose dispatch it calls.
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
    /// The error text of a Run that has ended; empty when nothing was thrown.
    const std::string& ErrorText() const { return m_sError; }

private:
    const std::string m_sOperation;
    std::string m_sError;
};

/// FunctionDispatcherHelper calls a member function of a client, with or without one argument. It runs on a
/// client object of its own, which shares the server with the caller's: when the caller has given up waiting
/// and is gone, the call still has everything that it touches.
template <class Client>
class QUILLET_API FunctionDispatcherHelper : public FunctionDispatcher {
public:
    using Function = void (Client::*)();
    using FunctionWithArgument = void (Client::*)(void*);

    FunctionDispatcherHelper(std::string sOperation, const Client& client, Function pFunction);
    FunctionDispatcherHelper(std::string sOperation, const Client& client, FunctionWithArgument pFunction);

    void dispatch(void* pArgument) override;

private:
    Client m_client;
    const Function m_pFunction = nullptr;
    const FunctionWithArgument m_pFunctionWithArgument = nullptr;
};

// Outside of the class: members that are defined inside are not exported on Windows.
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
        if (m_pFunction)
            (m_client.*m_pFunction)();
        else
            (m_client.*m_pFunctionWithArgument)(pArgument);
    });
}
