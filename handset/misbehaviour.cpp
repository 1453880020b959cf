// The faults of a simulated handset.
#include "handset/misbehaviour.h"

#include <algorithm>
#include <iterator>

#include "handset/commands.h"

namespace handset {
namespace {

using Action = Misbehaviour::Action;

/// A fault. To add one, add its row here and its name to Misbehaviour::Action, in the same place.
struct Fault {
    Action action;
    const char* name;
    const char* help;
    bool carriesOut; // otherwise the request has no effect and `apply` starts with an empty reply
    void (*apply)(const Misbehaviour& rule, const Bytes& request, Reply& reply);
};

constexpr Fault kFaults[] = {
    {.action = Action::Drop,
     .name = "drop",
     .help = "carries out the request, sends no response",
     .carriesOut = true,
     .apply = [](const Misbehaviour&, const Bytes&, Reply& reply) { reply.packets.clear(); }},
    {.action = Action::Ignore,
     .name = "ignore",
     .help = "does not carry out the request, sends no response",
     .carriesOut = false,
     .apply = [](const Misbehaviour&, const Bytes&, Reply&) {}},
    {.action = Action::Delay,
     .name = "delay",
     .help = "sends the response N milliseconds later",
     .carriesOut = true,
     .apply = [](const Misbehaviour& rule, const Bytes&,
                 Reply& reply) { reply.delay = std::chrono::milliseconds(rule.value); }},
    {.action = Action::Late,
     .name = "late",
     .help = "holds the response back until just before the next one",
     .carriesOut = true,
     .apply = [](const Misbehaviour&, const Bytes&, Reply& reply) { reply.isHeld = true; }},
    {.action = Action::Duplicate,
     .name = "duplicate",
     .help = "sends the response twice",
     .carriesOut = true,
     .apply =
         [](const Misbehaviour&, const Bytes&, Reply& reply) {
             const std::vector<Bytes> once = reply.packets;
             reply.packets.insert(reply.packets.end(), once.begin(), once.end());
         }},
    {.action = Action::Corrupt,
     .name = "corrupt",
     .help = "flips a bit of the response on the wire, so that its FCS is wrong",
     .carriesOut = true,
     .apply = [](const Misbehaviour&, const Bytes&, Reply& reply) { reply.isCorrupt = true; }},
    {.action = Action::Cut,
     .name = "cut",
     .help = "sends only the first N bytes of the response, with a correct FCS",
     .carriesOut = true,
     .apply =
         [](const Misbehaviour& rule, const Bytes&, Reply& reply) {
             for (Bytes& packet : reply.packets)
                 packet.resize(std::min<size_t>(packet.size(), rule.value));
         }},
    {.action = Action::Enlarge,
     .name = "enlarge",
     .help = "appends N zero bytes to the response, with a correct FCS",
     .carriesOut = true,
     .apply =
         [](const Misbehaviour& rule, const Bytes&, Reply& reply) {
             for (Bytes& packet : reply.packets)
                 packet.resize(packet.size() + rule.value);
         }},
    {.action = Action::Refuse,
     .name = "refuse",
     .help = "refuses an EFS2 request with errnum N, any other request with error code 0x13",
     .carriesOut = false,
     .apply = [](const Misbehaviour& rule, const Bytes& request,
                 Reply& reply) { reply.packets = {FileSystemRefusal(request, rule.value)}; }},
    {.action = Action::ProtocolError,
     .name = "protocol-error",
     .help = "refuses the request with error code N (0x13, 0x14 ...)",
     .carriesOut = false,
     .apply =
         [](const Misbehaviour& rule, const Bytes& request, Reply& reply) {
             reply.packets = {ProtocolErrorAnswer(static_cast<uint8_t>(rule.value), request)};
         }},
    {.action = Action::Replace,
     .name = "replace",
     .help = "does not carry out the request, sends PACKETS",
     .carriesOut = false,
     .apply = [](const Misbehaviour& rule, const Bytes&, Reply& reply) { reply.packets = rule.packets; }},
    {.action = Action::Before,
     .name = "before",
     .help = "sends PACKETS before the response",
     .carriesOut = true,
     .apply =
         [](const Misbehaviour& rule, const Bytes&, Reply& reply) {
             reply.packets.insert(reply.packets.begin(), rule.packets.begin(), rule.packets.end());
         }},
    {.action = Action::Unplug,
     .name = "unplug",
     .help = "does not carry out the request, hangs up the line",
     .carriesOut = false,
     .apply = [](const Misbehaviour&, const Bytes&, Reply& reply) { reply.hangsUp = true; }},
};

constexpr bool RowsFollowActions() {
    for (size_t i = 0; i < std::size(kFaults); ++i)
        if (kFaults[i].action != static_cast<Action>(i))
            return false;
    return true;
}
static_assert(RowsFollowActions(), "FaultOf finds a row by its place");

const Fault& FaultOf(Action action) {
    return kFaults[static_cast<size_t>(action)];
}

} // namespace

std::optional<Misbehaviour> Misbehaviours::Match(const Bytes& request) {
    Misbehaviour* acting = nullptr;
    for (Misbehaviour& rule : m_rules) {
        if (!BeginsWith(request, rule.prefix) || rule.times == 0)
            continue;
        if (rule.skip > 0)
            --rule.skip;
        else if (acting == nullptr)
            acting = &rule;
    }
    if (acting == nullptr)
        return std::nullopt;
    if (acting->times > 0)
        --acting->times;
    return *acting;
}

bool CarriesOut(Action action) {
    return FaultOf(action).carriesOut;
}

void Apply(const Misbehaviour& rule, const Bytes& request, Reply& reply) {
    FaultOf(rule.action).apply(rule, request, reply);
}

std::optional<Action> ActionByName(const std::string& name) {
    const auto* const fault = std::find_if(std::begin(kFaults), std::end(kFaults),
                                           [&](const Fault& candidate) { return name == candidate.name; });
    return fault == std::end(kFaults) ? std::nullopt : std::optional(fault->action);
}

std::string FaultHelp() {
    constexpr size_t kNameWidth = 16;
    std::string text;
    for (const Fault& fault : kFaults) {
        std::string name = fault.name;
        name.resize(kNameWidth, ' ');
        text += "  " + name + fault.help + "\n";
    }
    return text;
}

} // namespace handset
