#include "portserver/task_client.h"

#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "link/time_outs.h"
#include "platform/wait_event.h"

/// TaskRun collects what the server reports about one task, from whatever thread, until the caller looks.
class TaskRun : public TaskEvents {
public:
    void entryListed(const EfsDirItem& item) override {
        const std::lock_guard lock(m_lock);
        if (!m_state.bEnded)
            m_state.entries.push_back(item);
        m_news.Set();
    }
    void progressed(DWORD iDone, DWORD iInAll) override {
        const std::lock_guard lock(m_lock);
        m_state.progress = {iDone, iInAll};
        m_news.Set();
    }
    void finished(bool bSucceeded) override {
        const std::lock_guard lock(m_lock);
        if (std::exchange(m_state.bEnded, true))
            return;
        m_state.bSucceeded = bSucceeded;
        m_news.Set();
    }

    struct Progress {
        DWORD iDone;
        DWORD iInAll;
    };
    struct State {
        std::vector<EfsDirItem> entries;
        std::optional<Progress> progress; // the newest that was not taken yet
        bool bEnded = false;
        bool bSucceeded = false;
    };

    bool HasEnded() {
        const std::lock_guard lock(m_lock);
        return m_state.bEnded;
    }
    /// Set after each report. It may be set once more than there is news.
    const WaitEvent& News() const { return m_news; }
    /// Takes the newest progress, and, at the end, everything.
    State TakeState() {
        const std::lock_guard lock(m_lock);
        if (m_state.bEnded)
            return std::exchange(m_state, {{}, {}, true, false});
        return {{}, std::exchange(m_state.progress, {}), false, false};
    }

private:
    WaitEvent m_news;
    std::mutex m_lock;
    State m_state;
};

/// What has become of a task: whoever comes second, the server that begins it or the caller whose patience
/// ends, sees what the other one did.
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

bool TaskClient::Connect(const std::string& sPortName, DWORD iTimeOut_ms) {
    return Attempt("connect", [&] {
        Initialize(nullptr);
        ChangePort(sPortName, iTimeOut_ms);
    });
}

bool TaskClient::RunTask(ServerTask eTask, const char* sName, std::initializer_list<const char*> arguments,
                         const char* sFailure) {
    return Attempt(sName, [&] {
        OnBegin(sName);
        RequireConnection(sName);
        const auto pCall = std::make_shared<BeginCall>(eTask);
        for (const char* sArgument : arguments) {
            if (!sArgument)
                throw ServerException(Operation(sName) + " - an argument is missing");
            pCall->arguments.emplace_back(sArgument);
        }
        SetRun(pCall->pRun);
        Begin(sName, pCall);
        if ((pCall->eState != Beginning::Begun || !WaitForEnd(*pCall->pRun)) && !HasError())
            throw ServerException(Operation(sName) + " - " + sFailure);
    });
}

void TaskClient::Begin(const char* sName, const std::shared_ptr<BeginCall>& pCall) {
    try {
        Execute(sName, &TaskClient::beginImpl, pCall, kCallLimit_ms);
    } catch (const ComThreadManager::TimeoutException&) {
        if (pCall->eState.exchange(Beginning::GivenUp) == Beginning::Begun)
            Abort();
        throw;
    }
}

void TaskClient::beginImpl(void* pArgument) {
    BeginCall& call = *static_cast<BeginCall*>(pArgument);
    if (!call.pRun->HasEnded() && Server().begin(call.eTask, call.arguments, call.pRun) &&
        call.eState.exchange(Beginning::Begun) == Beginning::GivenUp)
        Server().abort();
}

bool TaskClient::WaitForEnd(TaskRun& run) {
    for (;;) {
        if (waitWithMessageLoop(run.News().Handle(), SilenceLimit_ms()) != 0) {
            Abort();
            return false;
        }
        const TaskRun::State state = run.TakeState();
        if (state.progress)
            OnProgress(state.progress->iDone, state.progress->iInAll);
        if (!state.bEnded)
            continue;
        if (state.bSucceeded)
            for (const EfsDirItem& item : state.entries)
                OnEntry(item);
        return state.bSucceeded;
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
    if (!pRun || pRun->HasEnded())
        return;
    Server().abort();
    pRun->finished(false); // the server reports nothing more
}

void TaskClient::OnBegin(const char*) {}
void TaskClient::OnEntry(const EfsDirItem&) {}
void TaskClient::OnProgress(DWORD, DWORD) {}

DWORD TaskClient::SilenceLimit_ms() const {
    return kDefaultTimeOuts[QMSL_TimeOut_MultipleResponse];
}
