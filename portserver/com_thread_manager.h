// The one thread of the process on which a port server is used.
#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>

#include "link/clock.h"
#include "platform/export.h"
#include "platform/module_pin.h"
#include "platform/types.h"

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
    static std::shared_ptr<ComThreadManager> Use();

    ComThreadManager();
    ~ComThreadManager();
    ComThreadManager(const ComThreadManager&) = delete;
    ComThreadManager& operator=(const ComThreadManager&) = delete;

    /// executeFunction runs the dispatcher with the argument on the worker thread and waits for its end, at
    /// most iTimeOut_ms from now on, waiting for other calls included. Throws TimeoutException: a call that
    /// had not begun never will; one that had goes on alone and keeps dispatcher and argument alive, so
    /// nothing that it writes to may be looked at any more. What the call itself throws is not thrown here,
    /// see FunctionDispatcher::ErrorText. With lastSign, the limit begins anew with each sign of life.
    void executeFunction(const std::shared_ptr<FunctionDispatcher>& pDispatcher,
                         const std::shared_ptr<void>& pArgument, DWORD iTimeOut_ms,
                         const LastSign& lastSign = {});

    /// ReleaseOnThread lets the worker drop an object as soon as it is free. Does not wait.
    void ReleaseOnThread(std::shared_ptr<void> pObject);

private:
    struct Work;
    struct Shared;

    static void WorkerThread(const std::shared_ptr<Shared>& pShared);

    ModulePin m_pin;
    const std::shared_ptr<Shared> m_pShared; // the worker holds it too
    std::thread m_worker;
};
