#include "mount/phone_thread.h"

#include <cerrno>
#include <new>

#include "mount/posix_error.h"

namespace tools::mount {
namespace {

// A signal that a program handles must not fail its calls. A phone that answers takes less time than this.
constexpr auto kHealthy = std::chrono::seconds(1);
constexpr auto kLookAgain = std::chrono::milliseconds(100);

} // namespace

PhoneThread::PhoneThread(std::chrono::milliseconds idle, std::function<void()> onIdle)
    : m_idle(idle), m_onIdle(std::move(onIdle)), m_thread([this] { Loop(); }) {}

PhoneThread::~PhoneThread() {
    {
        const std::lock_guard lock(m_lock);
        m_isEnding = true;
    }
    m_added.notify_one();
    m_thread.join();
}

std::shared_ptr<PhoneThread::Work> PhoneThread::Add(Steps steps) {
    auto work = std::make_shared<Work>();
    work->steps = std::move(steps);
    {
        const std::lock_guard lock(m_lock);
        m_queue.push_back(work);
    }
    m_added.notify_one();
    return work;
}

void PhoneThread::Post(Steps steps) {
    Add(std::move(steps));
}

void PhoneThread::Run(Steps steps, const std::function<bool()>& mayGiveUp) {
    const auto begin = std::chrono::steady_clock::now();
    const std::shared_ptr<Work> work = Add(std::move(steps));
    std::unique_lock lock(m_lock);
    while (!work->done.wait_for(lock, kLookAgain, [&] { return work->isDone; })) {
        if (std::chrono::steady_clock::now() - begin < kHealthy || !mayGiveUp())
            continue;
        work->isGivenUp = true;
        throw PosixError{EINTR};
    }
    if (work->failure != 0)
        throw PosixError{work->failure};
}

void PhoneThread::WaitForWork(std::unique_lock<std::mutex>& lock) {
    const auto isWanted = [this] { return m_isEnding || !m_queue.empty(); };
    if (m_isIdle) {
        m_added.wait(lock, isWanted);
    } else if (!m_added.wait_for(lock, m_idle, isWanted)) {
        m_isIdle = true;
        lock.unlock();
        m_onIdle();
        lock.lock();
    }
}

void PhoneThread::DoStep(std::unique_lock<std::mutex>& lock) {
    std::shared_ptr<Work> work = std::move(m_queue.front());
    m_queue.pop_front();
    m_isIdle = false;
    bool isDone = true;
    if (!work->isGivenUp) {
        lock.unlock();
        int failure = 0;
        try {
            isDone = work->steps();
        } catch (const PosixError& error) {
            failure = error.number;
        } catch (const std::bad_alloc&) {
            failure = ENOMEM;
        }
        lock.lock();
        work->failure = failure;
    }
    if (!isDone && !work->isGivenUp) {
        m_queue.push_back(std::move(work));
        return;
    }
    work->isDone = true;
    work->done.notify_one();
    // Objects that the work owned may post works in their destructors.
    lock.unlock();
    work.reset();
    lock.lock();
}

void PhoneThread::Loop() {
    std::unique_lock lock(m_lock);
    while (!m_isEnding || !m_queue.empty()) {
        if (m_queue.empty())
            WaitForWork(lock);
        else
            DoStep(lock);
    }
}

} // namespace tools::mount
