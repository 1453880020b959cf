// The masks that select the simulated handset's unsolicited traffic.
#pragma once

#include <array>
#include <map>

#include "handset/bytes.h"

namespace handset {

/// A log code has the equipment in its highest 4 bits and the item in the other 12. No lock of its own.
class TrafficMasks {
public:
    static constexpr size_t kEquipments = 16;

    bool SendsLog(uint16_t code) const;
    /// `kinds`: the message's level bits.
    bool SendsMessage(uint16_t subsystem, uint32_t kinds) const;
    bool SendsOldMessage(uint8_t level) const { return level >= messageLevel; }

    std::array<uint32_t, kEquipments> lastItems = {0, 0x5FF, 0, 0, 0x3FF, 0x2FF, 0, 0x3FF};
    std::array<Bytes, kEquipments> logs;   // one bit per item, lowest first; missing bytes are 0
    std::map<uint16_t, uint32_t> messages; // the kinds to send, by subsystem
    uint16_t messageLevel = 0xFF;          // old-form messages below this level are not sent
    bool events = false;
};

} // namespace handset
