// A packet out of a queue of received packets.
#pragma once

#include <span>

#include "link/crc16.h"
#include "link/message_queue.h"

/// PacketOf gives a queued packet as it was received, as long as the item lives.
inline std::span<const unsigned char> PacketOf(const QueueItem& item) {
    return {item.data, item.length};
}

/// WithoutFcs gives it without the FCS at its end; replayed packets may have none.
inline std::span<const unsigned char> WithoutFcs(const QueueItem& item) {
    return WithoutFcs(PacketOf(item));
}
