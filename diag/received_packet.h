// A packet out of a queue of received packets.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

#include "link/message_queue.h"

/// WithoutFcs gives a queued packet without the two FCS bytes at its end, as long as the item lives.
inline std::span<const unsigned char> WithoutFcs(const QueueItem& item) {
    constexpr size_t kFcsSize = 2;
    const size_t iSize = item.length;
    return {item.data, iSize - std::min(iSize, kFcsSize)};
}
