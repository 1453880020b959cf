#include "portserver/com_thread_manager.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>
#include <vector>

#include "link/clock.h"
#include "platform/com_apartment.h"
#include "platform/module_pin.h"
#include "platform/wait_event.h"
#include "portserver/function_dispatcher.h"

namespace {

std::mutex g_useLock;
std::weak_ptr<ComThreadManager> g_pManager; // under g_useLock

DWORD Remaining_ms(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<Milliseconds>(deadline - Clock::now()).count();
    return static_cast<DWORD>(std::max<decltype(left)>(left, 0));
}

/// Ends the worker, once. `Shared` is ComThreadManager::Shared.
template <class Shared>
void EndWorker(std::thread& worker, Shared& shared, ModulePin& pin) {
    if (!worker.joinable())
        return;
    shared.stop.Set();
    if (shared.signal.Wait(ComThreadManager::kEndLimit_ms)) {
        worker.join();
    } else {
        pin.KeepForGood();
        worker.detach();
    }
}

} // namespace

struct ComThreadManager::Work {
    std::shared_ptr<FunctionDispatcher> pDispatcher;
    std::shared_ptr<void> pArgument;
    // Under Shared::lock:
    bool bEnded = false;
    bool bGivenUp = false;
};

struct ComThreadManager::Shared {
    WaitEvent mutex{true}; // set while no call is being made: a mutex with a time limit for waiting
    WaitEvent workToDo;
    WaitEvent workFinished;
    WaitEvent stop;
    WaitEvent signal; // the worker is ready, later: the worker has ended

    std::mutex lock;
    std::shared_ptr<Work> pWork;                  // under lock: the worker's next call
    std::vector<std::shared_ptr<void>> leftovers; // under lock: what the worker is to release
    std::thread::id worker;                       // written before the worker is ready

    void RunWork();
    void DropLeftovers();
};

ServerFault ComThreadManager::TryUse(std::shared_ptr<ComThreadManager>& pManager) noexcept {
    return ServerFault::Of([&] {
        const std::lock_guard lock(g_useLock);
        pManager = g_pManager.lock();
        if (pManager == nullptr)
            g_pManager = pManager = std::make_shared<ComThreadManager>();
    });
}

ComThreadManager::ComThreadManager()
    : m_pPin(std::make_unique<ModulePin>(this,
                                         [](void* pManager) {
                                             auto& manager = *static_cast<ComThreadManager*>(pManager);
                                             EndWorker(manager.m_worker, *manager.m_pShared, *manager.m_pPin);
                                         })),
      m_pShared(std::make_shared<Shared>()) {
    if (!m_pShared->mutex.IsValid())
        throw ComThreadManagerException("ComThreadManager::ComThreadManager - Unable to creat a mutex");
    for (const WaitEvent* pEvent :
         {&m_pShared->workToDo, &m_pShared->workFinished, &m_pShared->stop, &m_pShared->signal})
        if (!pEvent->IsValid())
            throw ComThreadManagerException("ComThreadManager::ComThreadManager - Unable to creat an event");
    m_worker = std::thread(&ComThreadManager::WorkerThread, m_pShared);
    m_pShared->signal.Wait(kWaitForever);
}

ComThreadManager::~ComThreadManager() {
    EndWorker(m_worker, *m_pShared, *m_pPin);
}

ServerFault ComThreadManager::TryExecute(const std::shared_ptr<FunctionDispatcher>& pDispatcher,
                                         const std::shared_ptr<void>& pArgument, DWORD iTimeOut_ms,
                                         const LastSign& lastSign) noexcept {
    return ServerFault::Of([&] { Execute(pDispatcher, pArgument, iTimeOut_ms, lastSign); });
}

void ComThreadManager::Execute(const std::shared_ptr<FunctionDispatcher>& pDispatcher,
                               const std::shared_ptr<void>& pArgument, DWORD iTimeOut_ms,
                               const LastSign& lastSign) {
    constexpr const char* kTimedOut = "ComThreadManager::executeFunction - Timed out";
    if (std::this_thread::get_id() == m_pShared->worker)
        return pDispatcher->Run(pArgument.get());
    auto deadline = Clock::now() + Milliseconds(iTimeOut_ms);
    if (!m_pShared->mutex.Wait(iTimeOut_ms))
        throw TimeoutException(kTimedOut);
    const auto pWork = std::make_shared<Work>(Work{pDispatcher, pArgument});
    {
        const std::lock_guard lock(m_pShared->lock);
        m_pShared->pWork = pWork;
    }
    m_pShared->workToDo.Set();
    bool bEnded = m_pShared->workFinished.Wait(Remaining_ms(deadline));
    while (!bEnded && lastSign && lastSign() + Milliseconds(iTimeOut_ms) > deadline) {
        deadline = lastSign() + Milliseconds(iTimeOut_ms);
        bEnded = m_pShared->workFinished.Wait(Remaining_ms(deadline));
    }
    if (!bEnded) {
        const std::lock_guard lock(m_pShared->lock);
        m_pShared->pWork.reset();
        pWork->bGivenUp = !pWork->bEnded;
        bEnded = pWork->bEnded && m_pShared->workFinished.Wait(0);
    }
    m_pShared->mutex.Set();
    if (!bEnded)
        throw TimeoutException(kTimedOut);
}

void ComThreadManager::ReleaseOnThread(std::shared_ptr<void> pObject) {
    {
        const std::lock_guard lock(m_pShared->lock);
        m_pShared->leftovers.push_back(std::move(pObject));
    }
    m_pShared->workToDo.Set();
}

void ComThreadManager::WorkerThread(const std::shared_ptr<Shared>& pShared) {
    {
        const ComApartment apartment;
        pShared->worker = std::this_thread::get_id();
        pShared->signal.Set();
        const std::array aEvents = {pShared->workToDo.Handle(), pShared->stop.Handle()};
        while (WaitWithMessages(aEvents, kWaitForever) == 0) {
            pShared->RunWork();
            pShared->DropLeftovers();
        }
        pShared->DropLeftovers();
    }
    pShared->signal.Set();
}

void ComThreadManager::Shared::RunWork() {
    std::shared_ptr<Work> pTaken;
    {
        const std::lock_guard guard(lock);
        pTaken = std::exchange(pWork, nullptr);
    }
    if (pTaken == nullptr)
        return;
    pTaken->pDispatcher->Run(pTaken->pArgument.get());
    const std::lock_guard guard(lock);
    pTaken->bEnded = true;
    // After giving up, the caller no longer waits; the event would end the wait of the next one.
    if (!pTaken->bGivenUp)
        workFinished.Set();
}

void ComThreadManager::Shared::DropLeftovers() {
    std::vector<std::shared_ptr<void>> dropped;
    const std::lock_guard guard(lock);
    dropped.swap(leftovers);
}
