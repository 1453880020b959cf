// The simulated handset: a phone on a pseudo-terminal that speaks the diagnostic protocol.
//
// A Handset owns a pseudo-terminal and a thread that answers what arrives on it. Every public function may
// be called from any thread. It shares no code with the product: it has its own framing and packet code, so
// that a misreading on one side cannot cancel itself out on the other.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "handset/bytes.h"
#include "handset/misbehaviour.h"

namespace handset {

class FileSystem;
class Brain;
struct Message;
struct State;

class Handset {
public:
    /// Makes the pseudo-terminal (raw mode) and starts answering, with an empty file system.
    Handset();
    /// Hangs up and joins the thread.
    ~Handset();
    Handset(const Handset&) = delete;
    Handset& operator=(const Handset&) = delete;

    /// The path of the tty that a client opens (/dev/pts/N); empty while unplugged. It changes with Replug.
    std::string TtyPath() const;

    /// Hangs the line up: clients see their tty vanish. Does nothing when already unplugged.
    void Unplug();
    /// Comes back on a new pseudo-terminal. File system, rules and recorded requests stay.
    void Replug();
    /// Adds a callback, called (on the calling thread of Unplug/Replug/the destructor, or on the handset's
    /// thread for Action::Unplug) after the line went away or came back. It may call the handset's TtyPath.
    void OnPlugChange(std::function<void()> callback);

    /// Runs `work` with exclusive use of the file system (the handset answers nothing meanwhile). `work` must
    /// not call the handset.
    void WithFiles(const std::function<void(FileSystem&)>& work);

    /// The same with what the handset is besides its file system.
    void WithState(const std::function<void(State&)>& work);

    /// Every request received since the last ClearRequests, unframed and without FCS, in order; in AT data
    /// mode every line with its \r.
    std::vector<Bytes> Requests() const;
    void ClearRequests();
    /// Waits until at least `count` requests are recorded; false when that takes longer than `limit`.
    bool WaitForRequests(size_t count, std::chrono::milliseconds limit = std::chrono::seconds(10)) const;
    /// Every byte received on the wire since the last ClearRequests, framing included.
    Bytes WireBytes() const;
    /// Keeps only the newest `requests` requests from now on, and no wire bytes: for long runs and
    /// benchmarks.
    void SetRecordLimit(size_t requests);
    /// How many received frames were dropped (wrong FCS, too short, too long, broken off) since the start.
    size_t DroppedFrames() const;
    /// Calls `callback` on the handset's thread with every request, before it is carried out; null: no more.
    void OnRequest(std::function<void(const Bytes& request)> callback);

    /// Adds a rule; of several that match a request, the first added that is not spent acts.
    void Misbehave(Misbehaviour rule);
    /// Removes all rules and held-back answers.
    void Behave();
    /// Scripts answers: requests that begin with `prefix` are answered with `packets`, for good, before the
    /// handset's own commands are looked at. A later script for the same prefix replaces the earlier one; the
    /// longest matching prefix wins.
    void Script(Bytes prefix, std::vector<Bytes> packets);
    /// Like Script, but `answer` computes the packets from the request. It runs on the handset's thread and
    /// may call every function of the handset. In AT data mode packets are sent as they are.
    void Script(Bytes prefix, std::function<std::vector<Bytes>(const Bytes& request)> answer);

    /// Sends a packet, framed with its FCS, now; before delayed answers. Does nothing while unplugged.
    void Send(const Bytes& packet);
    /// Sends bytes as they are, likewise.
    void SendWire(const Bytes& bytes);

    /// Emit... sends a log record, debug message (of the older form: its level) or event report at once, when
    /// the masks that the client has set let it through. True when it was sent.
    bool EmitLog(uint16_t code, const Bytes& payload);
    bool EmitMessage(const Message& message);
    bool EmitOldMessage(uint8_t level, const std::string& text);
    bool EmitEvent(uint16_t id, const Bytes& payload = {});

    /// Every answer is delayed by this time; 0 at first.
    void SetLatency(std::chrono::microseconds latency);
    /// Before every answer `count` log records (first byte 0x10) are sent, as a phone does that logs; 0 at
    /// first.
    void SetChatter(int count);
    /// In AT data mode the handset answers only text: "AT$QCDMG\r" switches it back to diagnostic mode
    /// with "\r\nOK\r\n", any other line ending in \r gets "\r\nERROR\r\n" ("AT\r": OK). A Mode-change
    /// request (0x44) in diagnostic mode answers 44 01 and enters AT data mode.
    void SetDataMode(bool on);
    bool DataMode() const;

private:
    bool Emit(const Bytes& packet, const std::function<bool(const State&)>& isWanted);

    std::unique_ptr<Brain> m_brain;
};

} // namespace handset
