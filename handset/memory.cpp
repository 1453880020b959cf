// The simulated handset's memory, and the requests that read and write it.
#include "handset/memory.h"

#include <algorithm>

#include "handset/packet.h"
#include "handset/state.h"
#include "handset/state_commands.h"

namespace handset {
namespace {

/// The size of the data field, and so the most that peek and poke transfer, for values of `width` bytes.
size_t AreaOf(size_t width) {
    return width == 4 ? 8 : 4;
}

bool AnswerPeek(size_t width, State& phone, RequestReader& in, AnswerWriter& answer) {
    uint32_t address = 0;
    uint16_t count = 0;
    Bytes unused;
    in.Take(address);
    in.Take(count);
    in.Take(unused, AreaOf(width));
    Bytes data = phone.memory.Read(address, std::min(count * width, AreaOf(width)));
    data.resize(AreaOf(width));
    answer.U32(address).U16(count).Data(data);
    return in.Good();
}

bool AnswerPoke(size_t width, State& phone, RequestReader& in, AnswerWriter& answer) {
    uint32_t address = 0;
    uint8_t count = 0;
    Bytes data;
    in.Take(address);
    in.Take(count);
    in.Take(data, AreaOf(width));
    if (!in.Good())
        return false;
    answer.U32(address).U8(count).Data(data);
    data.resize(std::min(count * width, data.size()));
    phone.memory.Write(address, data);
    return true;
}

} // namespace

void Memory::Write(uint32_t address, const Bytes& data) {
    for (const uint8_t byte : data)
        m_bytes[address++] = byte;
}

Bytes Memory::Read(uint32_t address, size_t count) const {
    Bytes data;
    for (; data.size() < count; ++address) {
        const auto found = m_bytes.find(address);
        data.push_back(found == m_bytes.end() ? 0 : found->second);
    }
    return data;
}

bool AnswerPeek8(State& phone, RequestReader& in, AnswerWriter& answer) {
    return AnswerPeek(1, phone, in, answer);
}
bool AnswerPeek16(State& phone, RequestReader& in, AnswerWriter& answer) {
    return AnswerPeek(2, phone, in, answer);
}
bool AnswerPeek32(State& phone, RequestReader& in, AnswerWriter& answer) {
    return AnswerPeek(4, phone, in, answer);
}

bool AnswerPoke8(State& phone, RequestReader& in, AnswerWriter& answer) {
    return AnswerPoke(1, phone, in, answer);
}
bool AnswerPoke16(State& phone, RequestReader& in, AnswerWriter& answer) {
    return AnswerPoke(2, phone, in, answer);
}
bool AnswerPoke32(State& phone, RequestReader& in, AnswerWriter& answer) {
    return AnswerPoke(4, phone, in, answer);
}

} // namespace handset
