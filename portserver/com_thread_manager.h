// The process's only thread for port servers.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "platform/export.h"
#include "platform/types.h"
#include "portserver/server_fault.h"

class FunctionDispatcher;
class ModulePin;

/// ComThreadManager runs calls on its worker thread, one at a time for the whole process. A port server's
/// objects belong to the thread that made them, so this thread makes, calls and destroys them all.
///
/// The first client creates it, the last client's end destroys it: the worker then destroys the objects
/// released to it, leaves the COM apartment and is joined. A worker that is stuck in a call of a server
/// cannot be ended. It is detached after kEndLimit_ms, with everything that it uses, and the library stays in
/// the process for good (on Linux, where it does not, it must not be unloaded before the call returns).
///
/// Threads: any thread may call any function. On the worker thread itself (inside a call) executeFunction
/// makes the call directly.
class QUILLET_API ComThreadManager {
public:
    /// The system refused the mutex or an event.
    class QUILLET_API ComThreadManagerException : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    /// A call did not finish in time.
    class QUILLET_API TimeoutException : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    /// How long the end waits for a stuck worker.
    static constexpr DWORD kEndLimit_ms = 2000;

    /// The time of the latest sign of life of the running call. Called on the caller's thread.
    using LastSign = std::function<std::chrono::steady_clock::time_point()>;

    /// Use returns the process's manager, which lives as long as one of its users holds it. Throws
    /// ComThreadManagerException, or std::system_error when no thread can be created.
    QUILLET_API_INLINE static std::shared_ptr<ComThreadManager> Use() {
        std::shared_ptr<ComThreadManager> pManager;
        TryUse(pManager).Raise();
        return pManager;
    }

    ComThreadManager();
    ~ComThreadManager();
    ComThreadManager(const ComThreadManager&) = delete;
    ComThreadManager& operator=(const ComThreadManager&) = delete;

    /// executeFunction runs the dispatcher with the argument on the worker thread and waits for it to finish,
    /// at most iTimeOut_ms, including the wait for other calls. Throws TimeoutException. A call that had not
    /// begun then never will; one that had continues alone and keeps dispatcher and argument alive, so the
    /// caller must not look at anything that it writes. Exceptions of the call itself are not thrown here
    /// (see FunctionDispatcher::ErrorText). With lastSign, every sign of life restarts the time limit.
    QUILLET_API_INLINE void executeFunction(const std::shared_ptr<FunctionDispatcher>& pDispatcher,
                                            const std::shared_ptr<void>& pArgument, DWORD iTimeOut_ms) {
        TryExecute(pDispatcher, pArgument, iTimeOut_ms, {}).Raise();
    }
    QUILLET_API_INLINE void executeFunction(const std::shared_ptr<FunctionDispatcher>& pDispatcher,
                                            const std::shared_ptr<void>& pArgument, DWORD iTimeOut_ms,
                                            const LastSign& lastSign) {
        TryExecute(pDispatcher, pArgument, iTimeOut_ms, lastSign).Raise();
    }

    /// ReleaseOnThread makes the worker release an object when it is idle. Does not wait.
    void ReleaseOnThread(std::shared_ptr<void> pObject);

private:
    struct Work;
    struct Shared;

    static ServerFault TryUse(std::shared_ptr<ComThreadManager>& pManager) noexcept;
    ServerFault TryExecute(const std::shared_ptr<FunctionDispatcher>& pDispatcher,
                           const std::shared_ptr<void>& pArgument, DWORD iTimeOut_ms,
                           const LastSign& lastSign) noexcept;
    void Execute(const std::shared_ptr<FunctionDispatcher>& pDispatcher,
                 const std::shared_ptr<void>& pArgument, DWORD iTimeOut_ms, const LastSign& lastSign);
    static void WorkerThread(const std::shared_ptr<Shared>& pShared);

    const std::unique_ptr<ModulePin> m_pPin;
    const std::shared_ptr<Shared> m_pShared; // shared with the worker
    std::thread m_worker;
};

template <class Body>
ServerFault ServerFault::Of(Body body) noexcept {
    try {
        body();
        return {};
    } catch (const ServerException& error) {
        return {Kind::Server, error.what()};
    } catch (const ComException& error) {
        return {Kind::Com, error.what()};
    } catch (const ComThreadManager::ComThreadManagerException& error) {
        return {Kind::Manager, error.what()};
    } catch (const ComThreadManager::TimeoutException& error) {
        return {Kind::TimeOut, error.what()};
    } catch (const std::system_error& error) {
        return {Kind::System, error.what(), error.code().value()};
    } catch (const std::exception& error) {
        return {Kind::Other, error.what()};
    } catch (...) {
        return {Kind::Other, "Unknown exception thrown."};
    }
}

inline void ServerFault::Raise() const {
    switch (m_eKind) {
        case Kind::None:
            return;
        case Kind::Server:
            throw ServerException(m_sText);
        case Kind::Com:
            throw ComException(m_sText);
        case Kind::Manager:
            throw ComThreadManager::ComThreadManagerException(m_sText);
        case Kind::TimeOut:
            throw ComThreadManager::TimeoutException(m_sText);
        case Kind::System:
            throw std::system_error(m_iError, std::generic_category());
        case Kind::Other:
            break;
    }
    throw std::runtime_error(m_sText);
}
