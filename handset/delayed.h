// Delayed responses: sent some time after the response that announces them.
#pragma once

#include <chrono>
#include <utility>

#include "handset/bytes.h"

namespace handset {

/// One delayed response.
struct DelayedResponse {
    std::chrono::milliseconds after{5};
    uint32_t status = 0;
    uint16_t idOffset = 0; // added to the announced id; not 0: a wrong id
    Bytes data{};
};

/// No lock of its own.
class Delayed {
public:
    using Packets = std::vector<std::pair<std::chrono::milliseconds, Bytes>>;

    /// The status of the next announcements, and the delayed responses that follow each.
    uint32_t announcedStatus = 0;
    std::vector<DelayedResponse> plan = {{}};

    /// Returns the announcement for a request that begins with the four bytes `head`.
    Bytes Announce(const Bytes& head);
    /// Adds a packet to send after the response to the current request.
    void Add(std::chrono::milliseconds after, Bytes packet) {
        m_packets.emplace_back(after, std::move(packet));
    }
    /// Takes the delayed responses due since the last call, each with its delay.
    Packets TakePackets() { return std::exchange(m_packets, {}); }

private:
    uint16_t m_lastId = 0;
    Packets m_packets;
};

} // namespace handset
