// The simulated handset's non-volatile items, and the requests that read and write them.
#include "handset/nv_items.h"

#include "handset/packet.h"
#include "handset/state.h"
#include "handset/state_commands.h"

namespace handset {
namespace {

/// Both responses have the same fields after the command: item, 128 bytes, status.
bool AnswerItem(AnswerWriter& answer, uint16_t id, Bytes data, NvStatus status) {
    data.resize(NvItems::kSize);
    answer.U16(id).Data(data).U16(static_cast<uint16_t>(status));
    return true;
}

} // namespace

NvItems::NvItems() {
    items[0] = {.values = {{0, {0x78, 0x56, 0x34, 0x80}}}, .isReadOnly = true}; // the serial number
    items[71] = {.values = {{0, {'q', 'u', 'i', 'l', 'l', 'e', 't'}}}};
    items[178] = {.values = {{0, {'5', '5', '5'}}, {1, {'4', '4', '4'}}}, .isArray = true};
}

NvStatus NvItems::Read(uint16_t id, Bytes& data) const {
    const auto item = items.find(id);
    if (item == items.end())
        return NvStatus::NotActive;
    const uint8_t index = item->second.isArray && !data.empty() ? data[0] : 0;
    const auto value = item->second.values.find(index);
    if (value == item->second.values.end())
        return NvStatus::BadParameter;
    data = item->second.isArray ? Bytes{index} : Bytes{};
    data.insert(data.end(), value->second.begin(), value->second.end());
    return NvStatus::Done;
}

NvStatus NvItems::Write(uint16_t id, const Bytes& data) {
    const auto item = items.find(id);
    if (item != items.end() && item->second.isReadOnly)
        return NvStatus::ReadOnly;
    const bool isArray = item != items.end() && item->second.isArray;
    if (isArray && data.empty())
        return NvStatus::BadParameter;
    items[id].values[isArray ? data[0] : 0] = {data.begin() + (isArray ? 1 : 0), data.end()};
    return NvStatus::Done;
}

bool AnswerNvRead(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint16_t id = 0;
    Bytes data; // of the request: empty, or an array's index
    in.Take(id);
    in.Take(data);
    if (!in.Good())
        return false;
    const NvStatus status = phone.nv.Read(id, data);
    return AnswerItem(answer, id, data, status);
}

bool AnswerNvWrite(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint16_t id = 0;
    Bytes data;
    in.Take(id);
    in.Take(data, NvItems::kSize);
    return in.Good() && AnswerItem(answer, id, data, phone.nv.Write(id, data));
}

bool AnswerNvBatch(State& phone, RequestReader& in, AnswerWriter& answer) {
    uint16_t count = 0;
    uint16_t payload = 0;
    uint16_t unused = 0;
    in.Take(count);
    in.Take(payload);
    in.Take(unused);
    answer.U16(count).U16(payload).U16(0);
    for (int i = 0; i < count && in.Good(); ++i) {
        uint8_t length = 0;
        uint16_t id = 0;
        uint8_t zero = 0;
        Bytes data;
        in.Take(length);
        in.Take(id);
        in.Take(zero);
        in.Take(data, length);
        if (in.Good())
            answer.U8(length).U16(id).U8(static_cast<uint8_t>(phone.nv.Write(id, data))).Data(data);
    }
    return in.Good();
}

} // namespace handset
