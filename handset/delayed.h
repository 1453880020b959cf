// Responses that come some time after the answer which announces them.
#pragma once

#include <chrono>
#include <utility>

#include "handset/bytes.h"

namespace handset {

/// One of the responses that follow an announcement.
struct DelayedResponse {
    std::chrono::milliseconds after{5};
    uint32_t status = 0;
    uint16_t idOffset = 0; // other than 0: it has another id than the announced one
    Bytes data{};
};

/// No lock of its own.
class Delayed {
public:
    using Packets = std::vector<std::pair<std::chrono::milliseconds, Bytes>>;

    /// What the next announcements say, and what follows each of them.
    uint32_t announcedStatus = 0;
    std::vector<DelayedResponse> plan = {{}};

    /// Announces to a request that begins with `head` (four bytes); gives the announcement.
    Bytes Announce(const Bytes& head);
    /// Adds a packet that follows the answer to the present request.
    void Add(std::chrono::milliseconds after, Bytes packet) {
        m_packets.emplace_back(after, std::move(packet));
    }
    /// The responses that the announcements since the last call have to be followed by, each with its delay.
    Packets TakePackets() { return std::exchange(m_packets, {}); }

private:
    uint16_t m_lastId = 0;
    Packets m_packets;
};

} // namespace handset
