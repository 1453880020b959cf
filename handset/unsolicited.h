// Packets that a handset sends without being asked.
#pragma once

#include <string>

#include "handset/bytes.h"

namespace handset {

/// A debug message in its extended form.
struct Message {
    uint16_t subsystem = 0;
    uint32_t kinds = 8; // the bits of what it is
    uint16_t line = 1;
    std::vector<uint32_t> arguments{};
    std::string format{};
    std::string file = "phone.c";
};

Bytes LogPacket(uint16_t code, uint32_t timeStamp, const Bytes& payload);
Bytes MessagePacket(const Message& message);
/// The older form: a level, and a text of up to 39 characters.
Bytes OldMessagePacket(uint8_t level, const std::string& text);
Bytes EventPacket(uint16_t id, const Bytes& payload);

} // namespace handset
