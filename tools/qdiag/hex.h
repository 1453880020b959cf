// Bytes as hex, both ways.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tools::qdiag {

using Bytes = std::vector<unsigned char>;

/// HexText gives bytes as pairs of upper-case hex digits, with `separator` between them.
std::string HexText(std::span<const unsigned char> bytes, const char* separator = "");

/// ParseHex reads pairs of hex digits, blanks between them allowed; nothing for any other text.
std::optional<Bytes> ParseHex(std::string_view text);

} // namespace tools::qdiag
