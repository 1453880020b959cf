// The only thread that talks to the phone, and its queue of work.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace tools::mount {

/// A piece of work in steps. Each call does one step, such as one block of a file, and returns true after the
/// last one. It may throw PosixError, which ends the work.
using Steps = std::function<bool()>;

/// PhoneThread runs the works of all callers on one thread. After each step of a work the next work in the
/// queue has its turn, so a long copy does not delay a listing. The works need no locks. Run and Post may be
/// called from any thread.
class PhoneThread {
public:
    /// `onIdle` runs on the thread when there was no work for `idle`.
    PhoneThread(std::chrono::milliseconds idle, std::function<void()> onIdle);
    /// Runs the works in the queue and ends the thread.
    ~PhoneThread();
    PhoneThread(const PhoneThread&) = delete;
    PhoneThread& operator=(const PhoneThread&) = delete;

    /// Waits until `steps` has ended, and throws what it threw. If that takes longer than a healthy phone
    /// needs and `mayGiveUp` returns true, throws PosixError (EINTR) at once. The running step then
    /// continues, and the remaining ones are skipped, so `steps` must own all that it uses.
    void Run(Steps steps, const std::function<bool()>& mayGiveUp);
    /// Adds a work without waiting for it. What it throws is lost.
    void Post(Steps steps);

private:
    struct Work {
        Steps steps;
        bool isDone = false;
        bool isGivenUp = false;
        int failure = 0; // errno value
        std::condition_variable done;
    };

    std::shared_ptr<Work> Add(Steps steps);
    void Loop();
    void WaitForWork(std::unique_lock<std::mutex>& lock);
    void DoStep(std::unique_lock<std::mutex>& lock);

    const std::chrono::milliseconds m_idle;
    const std::function<void()> m_onIdle;
    std::mutex m_lock; // for all that follows
    std::condition_variable m_added;
    std::deque<std::shared_ptr<Work>> m_queue;
    bool m_isEnding = false;
    bool m_isIdle = true; // onIdle has run since the last work
    std::thread m_thread;
};

} // namespace tools::mount
