// A packet taken from a queue of received packets.
#pragma once

#include <span>

#include "link/crc16.h"
#include "link/message_queue.h"

/// PacketOf is the queued packet as received. Valid as long as the item.
inline std::span<const unsigned char> PacketOf(const QueueItem& item) {
    return {item.data, item.length};
}

/// WithoutFcs is the packet without the FCS at its end, which replayed packets may lack.
inline std::span<const unsigned char> WithoutFcs(const QueueItem& item) {
    return WithoutFcs(PacketOf(item));
}
