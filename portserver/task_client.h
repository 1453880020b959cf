// The common part of EFS and SoftwareDownload: long tasks of the server, and the error text.
#pragma once

#include <array>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>

#include "link/time_out_table.h"
#include "link/time_outs.h"
#include "portserver/server_client.h"

class TaskRun;

/// TaskClient is a client whose operations do not throw: they return false and store the reason
/// (GetErrorInfo).
///
/// A task begins on the automation thread. Most servers free that thread at once. The caller's thread then
/// waits for the end of the task and dispatches its window messages, which keeps a user interface alive (on
/// Windows; its windows must not start another operation of this client meanwhile). A server may also
/// complete the task before it returns. Then no messages are dispatched, progress is reported at the end, and
/// calls of other clients have to wait.
///
/// QMSL_TimeOut_MultipleResponse limits silence: a task may take any time as long as each report follows the
/// previous one within it. A server that has not begun the task gets kGrace_ms more. A silent task is
/// aborted, and its operation fails. If the task turns out to have ended meanwhile, it is not aborted, and
/// its own result counts.
class QUILLET_API TaskClient : public ServerClient {
public:
    /// GetErrorInfo returns the reason of the last operation's failure; empty after success.
    const char* GetErrorInfo() const { return m_sError.c_str(); }
    /// ClearError removes it. Every operation begins with that.
    void ClearError() { Error(""); }

    /// ConfigureTimeOut sets a time-out in ms (0xFFFFFFFF: 49 days); false for an unknown id. GetTimeOut
    /// returns 0 for an unknown id. Clients use QMSL_TimeOut_ServerConnect (connect) and
    /// QMSL_TimeOut_MultipleResponse (silence of a task). Called on the thread of the operations.
    bool ConfigureTimeOut(QMSL_TimeOutType_Enum eTimeOutId, DWORD iNewValue_ms);
    DWORD GetTimeOut(QMSL_TimeOutType_Enum eTimeOutId) const;

protected:
    using ServerClient::ServerClient;
    TaskClient(const TaskClient& other) : ServerClient(other) {}

    /// Error stores a reason; an empty one clears it.
    virtual void Error(const std::string& sText);
    bool HasError() const { return m_bError; }

    /// waitWithMessageLoop waits for an event (a handle of platform/wait_event.h) while dispatching the
    /// thread's window messages. Returns 0, or kWaitTimedOut with the error text set.
    DWORD waitWithMessageLoop(void* hEvent, DWORD iTimeOut_ms);

    /// Connect starts the server and selects a port.
    bool Connect(const std::string& sPortName);
    /// RunTask runs a task to its end. sFailure ends the error text when the server refuses the task. Fails
    /// if an argument is null.
    bool RunTask(ServerTask eTask, const char* sName, std::initializer_list<const char*> arguments,
                 const char* sFailure = "failed");
    /// Abort ends the task that is running or about to begin. False when it cannot reach the server within
    /// kCallLimit_ms: the server was lost, or runs the task in a single call. Any thread.
    bool Abort();
    /// Attempt runs an operation that may throw; if it does, stores the error text and returns false.
    template <class Body>
    bool Attempt(const char* sName, Body body) {
        ClearError();
        try {
            body();
        } catch (const std::exception& error) {
            Error(error.what());
        } catch (...) {
            Error(Operation(sName) + " - Unknown exception thrown.");
        }
        return !HasError();
    }

    /// Called for the running task, on the caller's thread.
    virtual void OnBegin(const char* sName);
    virtual void OnEntry(const EfsDirItem& item);
    virtual void OnProgress(DWORD iDone, DWORD iInAll);

private:
    enum class Beginning;
    struct BeginCall;

    bool Begin(const char* sName, const std::shared_ptr<BeginCall>& pCall);
    void beginImpl(void* pCall);
    void abortImpl(void* pRun);
    bool WaitForEnd(TaskRun& run);
    void SetRun(const std::shared_ptr<TaskRun>& pRun);
    std::shared_ptr<TaskRun> Run();

    std::array<DWORD, kTimeOutCount> m_aTimeOuts = kDefaultTimeOuts;
    bool m_bError = false;
    std::string m_sError;
    std::mutex m_runLock;
    std::shared_ptr<TaskRun> m_pRun; // the newest task
};
