// The inside of a Handset: its thread, and the state that the thread and the callers share.
//
// One mutex guards everything except the thread's decoders. Only the thread closes the line, so that it never
// waits on a closed descriptor: another thread that wants to hang up asks it and waits. Callbacks and scripts
// run without the mutex.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "handset/file_system.h"
#include "handset/framing.h"
#include "handset/line.h"
#include "handset/misbehaviour.h"
#include "handset/outbox.h"
#include "handset/record.h"
#include "handset/state.h"
#include "handset/text_mode.h"

namespace handset {

class Brain {
public:
    using Answerer = std::function<std::vector<Bytes>(const Bytes& request)>;

    Brain();
    ~Brain();
    Brain(const Brain&) = delete;
    Brain& operator=(const Brain&) = delete;

    /// Returns the result of `work`, which runs under the mutex and may change the brain. The thread wakes
    /// afterwards to see what changed.
    template <class Work>
    auto Change(Work work) {
        const WakeAfter wake(*this);
        const std::lock_guard<std::mutex> lock(mutex);
        return work(*this);
    }
    /// Returns the result of `work`, which runs under the mutex and only reads.
    template <class Work>
    auto Look(Work work) const {
        const std::lock_guard<std::mutex> lock(mutex);
        return work(*this);
    }

    void Unplug();
    void Replug();
    bool WaitForRequests(size_t count, std::chrono::milliseconds limit) const;

    // Guarded by the mutex; for Change and Look.
    mutable std::mutex mutex;
    FileSystem files;
    State state;
    Misbehaviours misbehaviours;
    Record record;
    Outbox outbox;
    std::map<Bytes, Answerer> scripts;
    std::vector<Bytes> held; // late responses
    std::unique_ptr<Line> line;
    std::vector<std::function<void()>> plugCallbacks;
    std::function<void(const Bytes&)> requestCallback;
    std::chrono::microseconds latency{0};
    int chatter = 0;
    bool dataMode = false;
    size_t droppedFrames = 0;

private:
    using Lock = std::unique_lock<std::mutex>;

    struct WakeAfter {
        explicit WakeAfter(Brain& owner) : brain(owner) {}
        ~WakeAfter() { brain.Wake(); }
        Brain& brain;
    };

    void Run();
    void Wake();
    /// Waits until the line can be read or written, something is due, or Wake. Call without the mutex.
    void Wait();
    void HangUp();
    /// Runs the plug callbacks. Call without the mutex.
    void TellPlugChange();
    /// Hangs up and runs the plug callbacks. On the handset's thread only.
    void Vanish(Lock& lock);
    bool IsOwnThread() const { return std::this_thread::get_id() == m_thread.get_id(); }
    void Receive(Lock& lock);
    /// Takes the next request from the bytes and answers it; returns how many bytes it took.
    size_t TakeRequest(const uint8_t* data, size_t size, Lock& lock);
    void Answer(const Bytes& request, bool isText, Lock& lock);
    std::vector<Bytes> CarryOut(const Bytes& request, bool isText, Lock& lock);
    void Post(const Reply& reply, bool isText);

    mutable std::condition_variable
        m_changed; // a request was recorded, the line closed, or the callbacks done
    bool m_stop = false;
    bool m_hangUpWanted = false;
    bool m_isTelling = false; // the thread is running the plug callbacks
    unsigned m_hangUps = 0;
    int m_wakeUp = -1;
    uint16_t m_logNumber = 0;
    Deframer m_deframer;
    LineCollector m_lines;
    std::thread m_thread;
};

} // namespace handset
