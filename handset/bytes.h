// Packets and wire data as byte vectors, and their text form.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace handset {

using Bytes = std::vector<uint8_t>;

/// Two upper-case hex digits per byte, separated by blanks ("4B 13 02 00").
std::string ToHex(const Bytes& bytes);

/// Reads hex digits, blanks between bytes allowed ("4B13 0200"). False, with `bytes` emptied, when the text
/// holds anything else or half a byte.
bool FromHex(const std::string& text, Bytes& bytes);

/// True when `bytes` begins with `prefix`.
bool BeginsWith(const Bytes& bytes, const Bytes& prefix);

} // namespace handset
