// Packets and wire data as byte vectors, and their text form.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace handset {

using Bytes = std::vector<uint8_t>;

/// Two upper-case hex digits per byte, separated by spaces ("4B 13 02 00").
std::string ToHex(const Bytes& bytes);

/// Parses hex digits; spaces between bytes are allowed ("4B13 0200"). Otherwise returns false and empties
/// `bytes`.
bool FromHex(const std::string& text, Bytes& bytes);

/// True when `bytes` begins with `prefix`.
bool BeginsWith(const Bytes& bytes, const Bytes& prefix);

} // namespace handset
