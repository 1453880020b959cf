// How a simulated handset can be told to misbehave.
#pragma once

#include <optional>

#include "handset/bytes.h"

namespace handset {

/// One way to misbehave. A rule acts on the requests that begin with `prefix` (empty: all requests), lets
/// the first `skip` of them pass, acts on the next `times` and is then spent. Every request that matches
/// counts for `skip`, also one that another rule acts on.
struct Misbehaviour {
    enum class Action {
        Drop,          // carries the request out and sends no answer
        Ignore,        // neither carries it out nor answers
        Delay,         // answers after `value` milliseconds
        Late,          // holds the answer back and sends it just before the answer to the next request
        Duplicate,     // sends the answer twice
        Corrupt,       // flips a bit of the answer on the wire, so that its FCS is wrong
        Cut,           // sends only the first `value` bytes of the answer, with a right FCS
        Enlarge,       // appends `value` zero bytes to the answer, with a right FCS
        Refuse,        // does not carry it out and answers with errnum `value` (EFS2 requests; others get the
                       // error code 0x13)
        ProtocolError, // does not carry it out and answers with the error code `value` (0x13, 0x14 ...) as
                       // first byte, followed by the request
        Replace, // sends the packets of `packets` instead of the answer (the request is not carried out)
        Before,  // sends the packets of `packets` before the answer
        Unplug,  // disappears: hangs the line up instead of carrying it out
    };
    Action action = Action::Drop;
    Bytes prefix{};
    int skip = 0;
    int times = 1; // -1: for good
    uint32_t value = 0;
    std::vector<Bytes> packets{};
};

/// The rules in force. No lock of its own.
class Misbehaviours {
public:
    void Add(Misbehaviour rule) { m_rules.push_back(std::move(rule)); }
    void Clear() { m_rules.clear(); }

    /// The rule that acts on this request, which is counted; of several the first added. Nothing: the handset
    /// behaves.
    std::optional<Misbehaviour> Match(const Bytes& request);

private:
    std::vector<Misbehaviour> m_rules;
};

/// True when a request with this rule is carried out.
bool CarriesOut(Misbehaviour::Action action);

/// The answer instead of that of a request which is not carried out; none for the silent rules.
std::vector<Bytes> AnswerInstead(const Misbehaviour& rule, const Bytes& request);

/// What the rule makes of the answer of a request which was carried out: the packets to send.
std::vector<Bytes> Distorted(const Misbehaviour& rule, std::vector<Bytes> packets);

/// The name of an action as commands and messages use it ("drop", "protocol-error"); nothing: no such name.
std::optional<Misbehaviour::Action> ActionByName(const std::string& name);

} // namespace handset
