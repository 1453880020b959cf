// The copy of a received packet that listeners and callbacks are given.
#pragma once

#include <algorithm>
#include <memory>
#include <span>

/// CopyForDelivery copies a packet, with zeros behind it: who decodes a packet without knowing its length
/// finds them as far as the most arguments that an extended debug message can announce, and at least the end
/// of two texts.
inline std::unique_ptr<unsigned char[]> CopyForDelivery(std::span<const unsigned char> packet) {
    constexpr size_t kLeastRoom = 20 + 255 * 4 + 2;
    constexpr size_t kZerosBehind = 2;
    auto pCopy = std::make_unique<unsigned char[]>(std::max(packet.size() + kZerosBehind, kLeastRoom));
    std::copy(packet.begin(), packet.end(), pCopy.get());
    return pCopy;
}
