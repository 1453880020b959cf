#include "portserver/task_client.h"

#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "link/clock.h"
#include "link/time_out_table.h"
#include "platform/wait_event.h"

/// TaskRun collects the server's reports on one task, from any thread, until the caller takes them.
class TaskRun : public TaskEvents {
public:
    void entryListed(const EfsDirItem& item) override {
        const std::lock_guard lock(m_lock);
        if (!m_state.bEnded)
            m_state.entries.push_back(item);
        Reported();
    }
    void progressed(DWORD iDone, DWORD iInAll) override {
        const std::lock_guard lock(m_lock);
        m_state.progress = {iDone, iInAll};
        Reported();
    }
    void finished(bool bSucceeded) override {
        const std::lock_guard lock(m_lock);
        if (std::exchange(m_state.bEnded, true))
            return;
        m_state.bSucceeded = bSucceeded;
        Reported();
    }

    struct Progress {
        DWORD iDone;
        DWORD iInAll;
    };
    struct State {
        std::vector<EfsDirItem> entries;
        std::optional<Progress> progress; // the newest, until it is taken
        bool bEnded = false;
        bool bSucceeded = false;
    };

    bool HasEnded() {
        const std::lock_guard lock(m_lock);
        return m_state.bEnded;
    }
    Clock::time_point LastReport() {
        const std::lock_guard lock(m_lock);
        return m_lastReport;
    }
    /// Set after each report; may be set without news.
    const WaitEvent& News() const { return m_news; }
    /// Takes the newest progress and, when the task has ended, everything.
    State TakeState() {
        const std::lock_guard lock(m_lock);
        if (m_state.bEnded)
            return std::exchange(m_state, {{}, {}, true, false});
        return {{}, std::exchange(m_state.progress, {}), false, false};
    }

private:
    void Reported() {
        m_lastReport = Clock::now();
        m_news.Set();
    }

    WaitEvent m_news;
    std::mutex m_lock;
    Clock::time_point m_lastReport; // under m_lock, like m_state
    State m_state;
};

/// The state of a task's start. The server may begin it just as the caller gives up: the later of the two
/// sees what the other did.
enum class TaskClient::Beginning { Asked, Begun, GivenUp };

struct TaskClient::BeginCall {
    explicit BeginCall(ServerTask eOne) : eTask(eOne) {}

    const ServerTask eTask;
    std::vector<std::string> arguments;
    const std::shared_ptr<TaskRun> pRun = std::make_shared<TaskRun>();
    std::atomic<Beginning> eState = Beginning::Asked;
};

void TaskClient::Error(const std::string& sText) {
    m_bError = !sText.empty();
    m_sError = sText;
}

DWORD TaskClient::waitWithMessageLoop(void* hEvent, DWORD iTimeOut_ms) {
    const DWORD iResult = WaitWithMessages(std::array{hEvent}, iTimeOut_ms);
    if (iResult == kWaitTimedOut)
        Error("SoftwareDownload::waitWithMessageLoop() -- Timeout exceeded");
    return iResult;
}

bool TaskClient::ConfigureTimeOut(QMSL_TimeOutType_Enum eTimeOutId, DWORD iNewValue_ms) {
    if (!IsTimeOutId(eTimeOutId))
        return false;
    m_aTimeOuts[static_cast<size_t>(eTimeOutId)] = iNewValue_ms;
    return true;
}

DWORD TaskClient::GetTimeOut(QMSL_TimeOutType_Enum eTimeOutId) const {
    return IsTimeOutId(eTimeOutId) ? m_aTimeOuts[static_cast<size_t>(eTimeOutId)] : 0;
}

bool TaskClient::Connect(const std::string& sPortName) {
    return Attempt("connect", [&] { ConnectTo(sPortName, m_aTimeOuts[QMSL_TimeOut_ServerConnect]); });
}

bool TaskClient::RunTask(ServerTask eTask, const char* sName, std::initializer_list<const char*> arguments,
                         const char* sFailure) {
    return Attempt(sName, [&] {
        OnBegin(sName);
        RequireServer(sName);
        const auto pCall = std::make_shared<BeginCall>(eTask);
        for (const char* sArgument : arguments) {
            if (sArgument == nullptr)
                throw ServerException(Operation(sName) + " - an argument is missing");
            pCall->arguments.emplace_back(sArgument);
        }
        SetRun(pCall->pRun);
        if ((!Begin(sName, pCall) || !WaitForEnd(*pCall->pRun)) && !HasError())
            throw ServerException(Operation(sName) + " - " + sFailure);
    });
}

bool TaskClient::Begin(const char* sName, const std::shared_ptr<BeginCall>& pCall) {
    try {
        Execute(sName, &TaskClient::beginImpl, pCall, WithGrace(m_aTimeOuts[QMSL_TimeOut_MultipleResponse]),
                [pRun = pCall->pRun] { return pRun->LastReport(); });
    } catch (const ComThreadManager::TimeoutException&) {
        Beginning eState = Beginning::Asked;
        if (!pCall->eState.compare_exchange_strong(eState, Beginning::GivenUp))
            return true; // it began at the last moment
        if (!pCall->pRun->HasEnded())
            throw;
        return true; // it has ended, although the server's call has not returned
    }
    return pCall->eState == Beginning::Begun;
}

void TaskClient::beginImpl(void* pArgument) {
    BeginCall& call = *static_cast<BeginCall*>(pArgument);
    if (!call.pRun->HasEnded() && Server().begin(call.eTask, call.arguments, call.pRun) &&
        call.eState.exchange(Beginning::Begun) == Beginning::GivenUp)
        abortImpl(call.pRun.get());
}

bool TaskClient::WaitForEnd(TaskRun& run) {
    for (;;) {
        const TaskRun::State state = run.TakeState();
        if (state.progress)
            OnProgress(state.progress->iDone, state.progress->iInAll);
        if (state.bEnded) {
            if (!state.bSucceeded)
                return false;
            ClearError(); // the task may have ended after its time limit
            for (const EfsDirItem& item : state.entries)
                OnEntry(item);
            return true;
        }
        if (waitWithMessageLoop(run.News().Handle(), m_aTimeOuts[QMSL_TimeOut_MultipleResponse]) != 0) {
            Abort();
            run.finished(false); // no effect if the server was faster
        }
    }
}

bool TaskClient::Abort() {
    try {
        RequireConnection("abort");
        Execute("abort", &TaskClient::abortImpl, Run(), kCallLimit_ms);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void TaskClient::SetRun(const std::shared_ptr<TaskRun>& pRun) {
    const std::lock_guard lock(m_runLock);
    m_pRun = pRun;
}

std::shared_ptr<TaskRun> TaskClient::Run() {
    const std::lock_guard lock(m_runLock);
    return m_pRun;
}

void TaskClient::abortImpl(void* pArgument) {
    auto* const pRun = static_cast<TaskRun*>(pArgument);
    if (pRun == nullptr || pRun->HasEnded())
        return;
    Server().abort();
    pRun->finished(false); // the server reports nothing more
}

void TaskClient::OnBegin(const char*) {}
void TaskClient::OnEntry(const EfsDirItem&) {}
void TaskClient::OnProgress(DWORD, DWORD) {}
