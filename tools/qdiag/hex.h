// Conversion between bytes and hex text.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tools::qdiag {

using Bytes = std::vector<unsigned char>;

/// Returns the bytes as pairs of upper-case hex digits with `separator` between the pairs.
std::string HexText(std::span<const unsigned char> bytes, const char* separator = "");

/// Parses pairs of hex digits, which blanks may separate. Returns nullopt for any other text.
std::optional<Bytes> ParseHex(std::string_view text);

} // namespace tools::qdiag
