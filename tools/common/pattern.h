// Patterns for names, as shells have them.
#pragma once

#include <string_view>

namespace tools {

/// IsPattern says whether a text has a character that means something in a pattern: '*', '?' or '['.
bool IsPattern(std::string_view text);

/// Matches says whether a whole name fits a pattern: '*' is any text, '?' any one character, "[a-z]" one of
/// those, "[!a-z]" one that is none of those. A '[' without its ']' means itself. Names need not be UTF-8:
/// a byte that belongs to no character counts as one. A dot at the beginning is no special case. With
/// `ignoreCase`, the letters A to Z equal a to z.
bool Matches(std::string_view pattern, std::string_view name, bool ignoreCase = false);

} // namespace tools
