// The masks that select unsolicited traffic, and the requests that set them.
#include "handset/traffic_masks.h"

#include "handset/packet.h"
#include "handset/state.h"
#include "handset/state_commands.h"

namespace handset {
namespace {

enum MaskOperation : uint32_t { kGetRanges = 1, kSet = 3, kGet = 4 };

constexpr uint32_t kDone = 0;
constexpr uint32_t kRefused = 1;

size_t MaskSize(uint32_t lastItem) {
    return lastItem / 8 + 1;
}

/// Reads and sets a mask. Both responses contain the equipment, the number of items and the resulting mask.
void AnswerMask(TrafficMasks& masks, MaskOperation operation, RequestReader& in, AnswerWriter& answer) {
    uint32_t equipment = 0;
    uint32_t items = 0;
    Bytes mask;
    in.Take(equipment);
    in.Take(items);
    in.Take(mask);
    constexpr uint32_t kMostItems = 4096;
    if (!in.Good() || equipment >= TrafficMasks::kEquipments || items > kMostItems) {
        answer.U32(kRefused).U32(equipment).U32(items).Data(mask);
        return;
    }
    if (operation == kSet)
        masks.logs[equipment] = mask;
    mask = masks.logs[equipment];
    mask.resize(MaskSize(operation == kSet ? items : masks.lastItems[equipment]));
    answer.U32(kDone).U32(equipment).U32(items).Data(mask);
}

} // namespace

bool TrafficMasks::SendsLog(uint16_t code) const {
    const Bytes& mask = logs[code >> 12];
    const unsigned item = code & 0x0FFF;
    return item / 8 < mask.size() && (mask[item / 8] >> item % 8 & 1) != 0;
}

bool TrafficMasks::SendsMessage(uint16_t subsystem, uint32_t kinds) const {
    const auto found = messages.find(subsystem);
    return found != messages.end() && (found->second & kinds) != 0;
}

bool AnswerLogMask(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint32_t operation = 0;
    in.Take(operation);
    answer.U32(operation);
    if (operation == kGetRanges) {
        answer.U32(kDone);
        for (const uint32_t lastItem : phone.traffic.lastItems)
            answer.U32(lastItem);
    } else if (operation == kSet || operation == kGet) {
        AnswerMask(phone.traffic, static_cast<MaskOperation>(operation), in, answer);
    } else {
        answer.U32(kRefused);
    }
    return in.Good();
}

bool AnswerMessageLevel(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint16_t level = 0;
    in.Take(level);
    if (in.Good())
        phone.traffic.messageLevel = level;
    answer.U16(0); // no message waits
    return in.Good();
}

bool AnswerMessageFilter(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint16_t first = 0;
    uint16_t last = 0;
    uint16_t unused = 0;
    in.Take(first);
    in.Take(last);
    in.Take(unused);
    answer.U16(first).U16(last).U16(1);
    for (uint32_t subsystem = first; subsystem <= last; ++subsystem) {
        uint32_t kinds = 0;
        in.Take(kinds);
        if (!in.Good())
            return false;
        phone.traffic.messages[static_cast<uint16_t>(subsystem)] = kinds;
        answer.U32(kinds);
    }
    return in.Good();
}

bool AnswerEventControl(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint8_t on = 0;
    in.Take(on);
    phone.traffic.events = in.Good() ? on != 0 : phone.traffic.events;
    answer.U16(0); // no event follows
    return in.Good();
}

} // namespace handset
