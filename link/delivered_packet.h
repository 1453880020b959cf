// The copy of a received packet that listeners and callbacks are given.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>

#include "link/packet_codes.h"

/// CopyForDelivery copies a packet, with zeros behind it for those who decode it without knowing its length:
/// the ends of two texts, and of an extended debug message all arguments that it announces, truly or not.
inline std::unique_ptr<unsigned char[]> CopyForDelivery(std::span<const unsigned char> packet) {
    constexpr size_t kTwoEnds = 2;
    constexpr size_t kCountOffset = 2;
    constexpr size_t kMessageHead = 20;
    size_t iUsed = packet.size();
    if (iUsed > kCountOffset && packet[0] == kExtendedMessage)
        iUsed = std::max(iUsed, kMessageHead + packet[kCountOffset] * sizeof(uint32_t));
    auto pCopy = std::make_unique<unsigned char[]>(iUsed + kTwoEnds);
    std::copy(packet.begin(), packet.end(), pCopy.get());
    return pCopy;
}
