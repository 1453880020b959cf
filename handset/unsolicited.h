// Unsolicited packets of a handset.
#pragma once

#include <string>

#include "handset/bytes.h"

namespace handset {

/// An extended debug message.
struct Message {
    uint16_t subsystem = 0;
    uint32_t kinds = 8; // level bits
    uint16_t line = 1;
    std::vector<uint32_t> arguments{};
    std::string format{};
    std::string file = "phone.c";
};

Bytes LogPacket(uint16_t code, uint32_t timeStamp, const Bytes& payload);
Bytes MessagePacket(const Message& message);
/// The old form of a debug message: a level and a text of up to 39 characters.
Bytes OldMessagePacket(uint8_t level, const std::string& text);
Bytes EventPacket(uint16_t id, const Bytes& payload);

} // namespace handset
