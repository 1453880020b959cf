// The one thread that talks to the phone, and the queue of those who want something from it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace tools::mount {

/// One piece of work in steps: each call does one step, such as one block of a file; true: that was the last.
/// It may throw PosixError, which ends the work.
using Steps = std::function<bool()>;

/// PhoneThread does the works of all callers on one thread, by turns: after each step of a work the next work
/// in the queue gets its turn, so that a long copy does not hold up a listing. What the works use needs no
/// lock. Run and Post may be called from any thread.
class PhoneThread {
public:
    /// `onIdle` runs on the thread once nothing was asked for `idle`.
    PhoneThread(std::chrono::milliseconds idle, std::function<void()> onIdle);
    /// Does what is in the queue, and ends the thread.
    ~PhoneThread();
    PhoneThread(const PhoneThread&) = delete;
    PhoneThread& operator=(const PhoneThread&) = delete;

    /// Run waits until `steps` is done, and throws what it threw. When that takes longer than a healthy phone
    /// needs and `mayGiveUp` says so, it throws PosixError (EINTR) at once; the running step goes on, the
    /// others are left out. So `steps` must own what it uses.
    void Run(Steps steps, const std::function<bool()>& mayGiveUp);
    /// Post leaves a work to the thread. What it throws is lost.
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
