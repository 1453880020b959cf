// The simulated handset: a device on a pseudo-terminal that speaks the diagnostic protocol.
//
// A Handset owns a pseudo-terminal and a thread that answers the requests on it. Any thread may call any
// public function. The handset shares no code with the product: it has its own framing and packet code, so
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
    /// Opens the pseudo-terminal (raw mode) and starts to answer requests. The file system is empty.
    Handset();
    /// Hangs up and joins the thread.
    ~Handset();
    Handset(const Handset&) = delete;
    Handset& operator=(const Handset&) = delete;

    /// The path of the tty that a client opens (/dev/pts/N); empty while unplugged. Replug changes it.
    std::string TtyPath() const;

    /// Hangs up the line: clients see their tty disappear. No effect when already unplugged.
    void Unplug();
    /// Reappears on a new pseudo-terminal. The file system, the rules and the recorded requests are kept.
    void Replug();
    /// Adds a callback that runs after the line has gone or come back: on the thread that called Unplug,
    /// Replug or the destructor, or on the handset's thread for Action::Unplug. The callback may call
    /// TtyPath.
    void OnPlugChange(std::function<void()> callback);

    /// Runs `work` with exclusive access to the file system. The handset answers no request meanwhile. `work`
    /// must not call the handset.
    void WithFiles(const std::function<void(FileSystem&)>& work);

    /// Likewise, with the rest of the handset's state.
    void WithState(const std::function<void(State&)>& work);

    /// Every request received since the last ClearRequests, in order, unframed and without FCS. In AT data
    /// mode a request is a line with its \r.
    std::vector<Bytes> Requests() const;
    void ClearRequests();
    /// Waits until at least `count` requests are recorded; false if that takes longer than `limit`.
    bool WaitForRequests(size_t count, std::chrono::milliseconds limit = std::chrono::seconds(10)) const;
    /// Every byte received on the wire since the last ClearRequests, framing included.
    Bytes WireBytes() const;
    /// From now on keeps only the newest `requests` requests, and no wire bytes. For long runs and
    /// benchmarks.
    void SetRecordLimit(size_t requests);
    /// The number of received frames dropped since the start: wrong FCS, too short, too long or aborted.
    size_t DroppedFrames() const;
    /// Calls `callback` on the handset's thread before each request is carried out; null ends that.
    void OnRequest(std::function<void(const Bytes& request)> callback);

    /// Adds a rule. If several match a request, the first one added that is not spent acts.
    void Misbehave(Misbehaviour rule);
    /// Removes all rules and discards held responses.
    void Behave();
    /// Scripts a response: from now on requests that begin with `prefix` are answered with `packets`, even if
    /// the handset knows the command. A later script for the same prefix replaces the earlier one; the
    /// longest matching prefix wins.
    void Script(Bytes prefix, std::vector<Bytes> packets);
    /// Likewise, but `answer` computes the packets from the request. It runs on the handset's thread and may
    /// call every function of the handset. In AT data mode packets are sent unframed.
    void Script(Bytes prefix, std::function<std::vector<Bytes>(const Bytes& request)> answer);

    /// Sends a packet at once, framed with its FCS, before delayed responses. No effect while unplugged.
    void Send(const Bytes& packet);
    /// Likewise for raw bytes, unframed.
    void SendWire(const Bytes& bytes);

    // Each sends unsolicited traffic at once, if the masks that the client has set allow it: a log record, a
    // debug message (in the old form, with a level), an event report. True when sent.
    bool EmitLog(uint16_t code, const Bytes& payload);
    bool EmitMessage(const Message& message);
    bool EmitOldMessage(uint8_t level, const std::string& text);
    bool EmitEvent(uint16_t id, const Bytes& payload = {});

    /// Delays every response by this time; initially 0.
    void SetLatency(std::chrono::microseconds latency);
    /// Sends `count` log records (first byte 0x10) before every response, like a device that logs; initially
    /// 0.
    void SetChatter(int count);
    /// In AT data mode the handset answers only lines of text. "AT$QCDMG\r" gets "\r\nOK\r\n" and switches
    /// back to diagnostic mode; "AT\r" gets the same; any other line gets "\r\nERROR\r\n". In diagnostic mode
    /// a mode-change request (0x44) gets 44 01 and switches to AT data mode.
    void SetDataMode(bool on);
    bool DataMode() const;

private:
    bool Emit(const Bytes& packet, const std::function<bool(const State&)>& isWanted);

    std::unique_ptr<Brain> m_brain;
};

} // namespace handset
