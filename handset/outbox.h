// The handset's output queue: bytes that are not due yet, and bytes that the line has not accepted yet.
#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <optional>

#include "handset/bytes.h"

namespace handset {

class Line;

/// No thread and no lock of its own. Time is an argument.
class Outbox {
public:
    using Clock = std::chrono::steady_clock;

    /// If the client reads nothing for this long, its pending bytes are discarded.
    static constexpr std::chrono::seconds kPatience{3};

    /// Sends at `due`, but not before earlier calls: responses stay in order.
    void Send(Bytes wire, Clock::time_point due);
    /// Sends at `due`, regardless of the order: for traffic that is not a response.
    void SendAside(Bytes wire, Clock::time_point due);
    /// Sends at once, before everything that is not due yet.
    void SendNow(const Bytes& wire);
    /// Writes to the line what is due.
    void Pump(Line& line, Clock::time_point now);
    /// Discards everything.
    void Clear();

    /// True when bytes wait for the line to accept them.
    bool WantsLine() const { return m_taken < m_ready.size(); }
    /// When to call Pump next even if the line does not become writable; empty: never.
    std::optional<Clock::time_point> NextPump() const;

private:
    struct Waiting {
        Clock::time_point due;
        Bytes wire;
    };

    std::deque<Waiting> m_waiting;
    std::multimap<Clock::time_point, Bytes> m_aside;
    Bytes m_ready;
    size_t m_taken = 0; // how many bytes of m_ready are written
    Clock::time_point m_lastProgress;
};

} // namespace handset
