// Unsolicited packets of a handset.
#include "handset/unsolicited.h"

#include <algorithm>
#include <cstddef>

#include "handset/packet.h"

namespace handset {
namespace {

constexpr size_t kTimeStampSize = 8;

/// A text in a field of fixed width, padded with zeros. The last byte is always 0.
Bytes TextField(const std::string& text, size_t width) {
    Bytes field(text.begin(), text.begin() + static_cast<ptrdiff_t>(std::min(text.size(), width - 1)));
    field.resize(width);
    return field;
}

} // namespace

/// A log record contains its length twice. The length does not count the first four bytes.
Bytes LogPacket(uint16_t code, uint32_t timeStamp, const Bytes& payload) {
    const auto length = static_cast<uint16_t>(2 + 2 + kTimeStampSize + payload.size());
    AnswerWriter record({0x10, 0x00});
    return record.U16(length).U16(length).U16(code).U32(timeStamp).U32(0).Data(payload).Result();
}

Bytes MessagePacket(const Message& message) {
    AnswerWriter packet({0x79, 0x00});
    packet.U8(static_cast<uint8_t>(message.arguments.size())).U8(0).Data(Bytes(kTimeStampSize));
    packet.U16(message.line).U16(message.subsystem).U32(message.kinds);
    for (const uint32_t argument : message.arguments)
        packet.U32(argument);
    return packet.Text(message.format).Text(message.file).Result();
}

Bytes OldMessagePacket(uint8_t level, const std::string& text) {
    AnswerWriter packet({0x1F});
    packet.U16(1).U32(0).U32(1).U8(level).Data(TextField("phone.c", 13)).U16(1);
    return packet.Data(TextField(text, 40)).Data(Bytes(3 * 4)).Data(Bytes(kTimeStampSize)).Result();
}

Bytes EventPacket(uint16_t id, const Bytes& payload) {
    const auto length = static_cast<uint16_t>(2 + kTimeStampSize + payload.size());
    return AnswerWriter({0x60}).U16(length).U16(id).Data(Bytes(kTimeStampSize)).Data(payload).Result();
}

} // namespace handset
