// What the handset has still to send: bytes that wait for their time, then for the line to take them.
#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <optional>

#include "handset/bytes.h"

namespace handset {

class Line;

/// No thread and no lock of its own; time is an argument.
class Outbox {
public:
    using Clock = std::chrono::steady_clock;

    /// A client that reads nothing for this long loses what was meant for it.
    static constexpr std::chrono::seconds kPatience{3};

    /// Sends at `due`, never before what was given here earlier: a phone answers in order.
    void Send(Bytes wire, Clock::time_point due);
    /// Sends at `due`, whatever else waits: traffic that is no answer.
    void SendAside(Bytes wire, Clock::time_point due);
    /// Sends now, before all that still waits for its time.
    void SendNow(const Bytes& wire);
    /// Gives the line what is due.
    void Pump(Line& line, Clock::time_point now);
    /// Forgets everything.
    void Clear();

    /// True when bytes wait for the line to take them.
    bool WantsLine() const { return m_taken < m_ready.size(); }
    /// When Pump has something to do even if the line stays as it is; nothing: never.
    std::optional<Clock::time_point> NextPump() const;

private:
    struct Waiting {
        Clock::time_point due;
        Bytes wire;
    };

    std::deque<Waiting> m_waiting;
    std::multimap<Clock::time_point, Bytes> m_aside;
    Bytes m_ready;
    size_t m_taken = 0; // how many bytes of m_ready the line has
    Clock::time_point m_lastProgress;
};

} // namespace handset
