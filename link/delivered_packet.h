// The copy of a received packet that listeners and callbacks receive.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>

#include "link/packet_codes.h"

/// CopyForDelivery copies a packet and appends zeros for receivers that decode it without knowing its length:
/// two, which terminate two texts, and before them the arguments that an extended debug message announces but
/// lacks.
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
