// Which unsolicited traffic the simulated handset sends.
#pragma once

#include <array>
#include <map>

#include "handset/bytes.h"

namespace handset {

/// A log code is 4096 times its equipment plus an item's number. No lock of its own.
class TrafficMasks {
public:
    static constexpr size_t kEquipments = 16;

    bool SendsLog(uint16_t code) const;
    /// `kinds`: the bits of what the message is.
    bool SendsMessage(uint16_t subsystem, uint32_t kinds) const;
    bool SendsOldMessage(uint8_t level) const { return level >= messageLevel; }

    std::array<uint32_t, kEquipments> lastItems = {0, 0x5FF, 0, 0, 0x3FF, 0x2FF, 0, 0x3FF};
    std::array<Bytes, kEquipments> logs;   // a bit per item, lowest first; missing bytes are 0
    std::map<uint16_t, uint32_t> messages; // the kinds that are sent, by subsystem
    uint16_t messageLevel = 0xFF;          // messages of the older form below it are not sent
    bool events = false;
};

} // namespace handset
