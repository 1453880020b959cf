// The faults of a simulated handset, and the rules that say when they happen.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "handset/bytes.h"

namespace handset {

/// A rule: one fault, and the requests that meet it. It applies to requests that begin with `prefix` (empty:
/// all requests), skips the first `skip` of them, acts on the next `times` and is then spent. Every request
/// with the prefix counts for `skip`, even when another rule acts on it.
struct Misbehaviour {
    /// The table in misbehaviour.cpp says what each fault does; `simulated-handset --help` prints it.
    enum class Action {
        Drop,
        Ignore,
        Delay,
        Late,
        Duplicate,
        Corrupt,
        Cut,
        Enlarge,
        Refuse,
        ProtocolError,
        Replace,
        Before,
        Unplug,
    };
    Action action = Action::Drop;
    Bytes prefix{};
    int skip = 0;
    int times = 1;                // -1: no limit
    uint32_t value = 0;           // N in the table
    std::vector<Bytes> packets{}; // PACKETS in the table
};

/// The rules in force. No lock of its own.
class Misbehaviours {
public:
    void Add(Misbehaviour rule) { m_rules.push_back(std::move(rule)); }
    void Clear() { m_rules.clear(); }

    /// Returns the rule that acts on this request, and counts the request. If several match, the rule added
    /// first acts. Empty: no fault.
    std::optional<Misbehaviour> Match(const Bytes& request);

private:
    std::vector<Misbehaviour> m_rules;
};

/// What the handset does in response to one request.
struct Reply {
    std::vector<Bytes> packets; // to send, in order; none: no response
    std::chrono::milliseconds delay{0};
    bool isHeld = false;    // sent just before the response to the next request, not now
    bool isCorrupt = false; // a bit is flipped on the wire
    bool hangsUp = false;   // instead of a response
};

/// True when the handset carries out a request that meets this fault.
bool CarriesOut(Misbehaviour::Action action);

/// Applies the fault of `rule`. `reply` holds the normal response if CarriesOut says so, and is empty
/// otherwise.
void Apply(const Misbehaviour& rule, const Bytes& request, Reply& reply);

/// Finds a fault by its name in commands ("drop", "protocol-error"); empty when there is none.
std::optional<Misbehaviour::Action> ActionByName(const std::string& name);

/// The names of the faults and what they do, one line each.
std::string FaultHelp();

} // namespace handset
