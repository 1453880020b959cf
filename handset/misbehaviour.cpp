// How a simulated handset misbehaves.
#include "handset/misbehaviour.h"

#include <algorithm>
#include <map>

#include "handset/commands.h"

namespace handset {

using Action = Misbehaviour::Action;

namespace {

std::vector<Bytes> Twice(const std::vector<Bytes>& packets) {
    std::vector<Bytes> twice = packets;
    twice.insert(twice.end(), packets.begin(), packets.end());
    return twice;
}

} // namespace

std::optional<Misbehaviour> Misbehaviours::Match(const Bytes& request) {
    Misbehaviour* acting = nullptr;
    for (Misbehaviour& rule : m_rules) {
        if (!BeginsWith(request, rule.prefix) || rule.times == 0)
            continue;
        if (rule.skip > 0)
            --rule.skip;
        else if (!acting)
            acting = &rule;
    }
    if (!acting)
        return std::nullopt;
    if (acting->times > 0)
        --acting->times;
    return *acting;
}

bool CarriesOut(Action action) {
    switch (action) {
        case Action::Ignore:
        case Action::Refuse:
        case Action::ProtocolError:
        case Action::Replace:
        case Action::Unplug:
            return false;
        default:
            return true;
    }
}

std::vector<Bytes> AnswerInstead(const Misbehaviour& rule, const Bytes& request) {
    switch (rule.action) {
        case Action::Refuse:
            return {FileSystemRefusal(request, rule.value)};
        case Action::ProtocolError:
            return {ProtocolErrorAnswer(static_cast<uint8_t>(rule.value), request)};
        case Action::Replace:
            return rule.packets;
        default:
            return {};
    }
}

std::vector<Bytes> Distorted(const Misbehaviour& rule, std::vector<Bytes> packets) {
    switch (rule.action) {
        case Action::Drop:
            return {};
        case Action::Duplicate:
            return Twice(packets);
        case Action::Before:
            packets.insert(packets.begin(), rule.packets.begin(), rule.packets.end());
            break;
        case Action::Cut:
            for (Bytes& packet : packets)
                packet.resize(std::min<size_t>(packet.size(), rule.value));
            break;
        case Action::Enlarge:
            for (Bytes& packet : packets)
                packet.resize(packet.size() + rule.value);
            break;
        default:
            break;
    }
    return packets;
}

std::optional<Action> ActionByName(const std::string& name) {
    static const std::map<std::string, Action> actions = {
        {"drop", Action::Drop},
        {"ignore", Action::Ignore},
        {"delay", Action::Delay},
        {"late", Action::Late},
        {"duplicate", Action::Duplicate},
        {"corrupt", Action::Corrupt},
        {"cut", Action::Cut},
        {"enlarge", Action::Enlarge},
        {"refuse", Action::Refuse},
        {"protocol-error", Action::ProtocolError},
        {"replace", Action::Replace},
        {"before", Action::Before},
        {"unplug", Action::Unplug},
    };
    const auto found = actions.find(name);
    return found == actions.end() ? std::nullopt : std::optional(found->second);
}

} // namespace handset
