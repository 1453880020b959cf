// The one thread of the process on which a port server is used.
#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "link/clock.h"
#include "platform/export.h"
#include "platform/module_pin.h"
#include "platform/types.h"
#include "portserver/server_fault.h"

class FunctionDispatcher;

/// ComThreadManager carries calls to its worker thread, one at a time for the whole process. The objects of a
/// port server belong to the thread that made them, so that thread makes, calls and destroys them all.
///
/// It is made by the first client and ends with the last: the worker then destroys what was given to it,
/// leaves the automation and is joined. A worker that a server holds in a call that never returns cannot be
/// ended: it is left behind after kEndLimit_ms, with everything it touches, and the library stays in the
/// process for good (on Linux, where it does not, it must not be unloaded before that).
///
/// Threads: every function may be called from any thread. On the worker thread itself (from inside a call)
/// executeFunction runs the call at once.
class QUILLET_API ComThreadManager {
public:
    /// The system refused the mutex or an event.
    class QUILLET_API ComThreadManagerException : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    /// A call did not end in time.
    class QUILLET_API TimeoutException : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    static constexpr DWORD kEndLimit_ms = 2000;

    /// When a call that is being made showed the last sign of life. Called on the caller's thread.
    using LastSign = std::function<Clock::time_point()>;

    /// Use gives the manager of the process, which lives as long as somebody holds it. Throws
    /// ComThreadManagerException, or std::system_error when there is no thread to be had.
    QUILLET_API_INLINE static std::shared_ptr<ComThreadManager> Use() {
        std::shared_ptr<ComThreadManager> pManager;
        TryUse(pManager).Raise();
        return pManager;
    }

    ComThreadManager();
    ~ComThreadManager();
    ComThreadManager(const ComThreadManager&) = delete;
    ComThreadManager& operator=(const ComThreadManager&) = delete;

    /// executeFunction runs the dispatcher with the argument on the worker thread and waits for its end, at
    /// most iTimeOut_ms from now on, waiting for other calls included. Throws TimeoutException: a call that
    /// had not begun never will; one that had goes on alone and keeps dispatcher and argument alive, so
    /// nothing that it writes to may be looked at any more. What the call itself throws is not thrown here,
    /// see FunctionDispatcher::ErrorText. With lastSign, the limit begins anew with each sign of life.
    QUILLET_API_INLINE void executeFunction(const std::shared_ptr<FunctionDispatcher>& pDispatcher,
                                            const std::shared_ptr<void>& pArgument, DWORD iTimeOut_ms) {
        TryExecute(pDispatcher, pArgument, iTimeOut_ms, {}).Raise();
    }
    QUILLET_API_INLINE void executeFunction(const std::shared_ptr<FunctionDispatcher>& pDispatcher,
                                            const std::shared_ptr<void>& pArgument, DWORD iTimeOut_ms,
                                            const LastSign& lastSign) {
        TryExecute(pDispatcher, pArgument, iTimeOut_ms, lastSign).Raise();
    }

    /// ReleaseOnThread lets the worker drop an object as soon as it is free. Does not wait.
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

    ModulePin m_pin;
    const std::shared_ptr<Shared> m_pShared; // the worker holds it too
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
