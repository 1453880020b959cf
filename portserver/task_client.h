// What EFS and SoftwareDownload share: tasks of the server that take their time, and the error text.
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

/// TaskClient is a client whose operations do not throw: they return false and keep the reason
/// (GetErrorInfo).
///
/// A task is begun on the automation thread. Most servers free that thread at once; the caller's thread then
/// waits for the task's end, dispatching its window messages, so that a user interface stays alive (on
/// Windows; whatever its windows do then must not start another operation of this client). A server may also
/// carry the whole task out before it returns; then nothing is dispatched, progress is passed on at the end,
/// and calls of other clients have to wait.
///
/// The limit is for silence, QMSL_TimeOut_MultipleResponse: a task goes on as long as each report comes
/// within the limit of the one before. A server that has not even begun gets kGrace_ms on top. A task that
/// falls silent is aborted, and its operation fails; one that turns out to have ended by then is left alone,
/// and when it succeeded, so did the operation.
class QUILLET_API TaskClient : public ServerClient {
public:
    /// GetErrorInfo: the reason why the last operation failed; empty when it did not.
    const char* GetErrorInfo() const { return m_sError.c_str(); }
    /// ClearError forgets it. Every operation begins with that.
    void ClearError() { Error(""); }

    /// ConfigureTimeOut sets a time-out in ms (0xFFFFFFFF: 49 days); false for an unknown id. GetTimeOut: 0
    /// for an unknown id. Clients use QMSL_TimeOut_ServerConnect (connect) and QMSL_TimeOut_MultipleResponse
    /// (silence of a task). On the thread of the operations.
    bool ConfigureTimeOut(QMSL_TimeOutType_Enum eTimeOutId, DWORD iNewValue_ms);
    DWORD GetTimeOut(QMSL_TimeOutType_Enum eTimeOutId) const;

protected:
    using ServerClient::ServerClient;
    TaskClient(const TaskClient& other) : ServerClient(other) {}

    /// Error keeps a reason; an empty one: none.
    virtual void Error(const std::string& sText);
    bool HasError() const { return m_bError; }

    /// waitWithMessageLoop waits for an event (a handle of platform/wait_event.h) and dispatches the thread's
    /// window messages meanwhile. Returns 0, or kWaitTimedOut with the error text set.
    DWORD waitWithMessageLoop(void* hEvent, DWORD iTimeOut_ms);

    /// Connect starts the server and selects a port.
    bool Connect(const std::string& sPortName);
    /// RunTask runs a task to its end; sFailure ends the error text when the server refuses it. A null text
    /// among the arguments fails.
    bool RunTask(ServerTask eTask, const char* sName, std::initializer_list<const char*> arguments,
                 const char* sFailure = "failed");
    /// Abort ends the task that runs or is about to begin when it is called. False when the server cannot be
    /// told within kCallLimit_ms, because it was lost or carries the task out in one piece. Any thread.
    bool Abort();
    /// Attempt runs an operation that throws; false with the error text when it did.
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

    /// Tells derived classes about the task that runs, on the caller's thread.
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
