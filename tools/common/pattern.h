// Shell patterns for names.
#pragma once

#include <string_view>

namespace tools {

/// Returns true when a text contains a special character of patterns: '*', '?' or '['.
bool IsPattern(std::string_view text);

/// Returns true when a pattern matches a whole name. '*' matches any text, '?' any character, "[a-z]" a
/// character of the set, "[!a-z]" a character that is not in it. A '[' without a ']' matches itself. Names
/// need not be UTF-8: a byte that is not part of a character counts as one. A leading dot is not special.
/// With `ignoreCase`, the letters A to Z match a to z.
bool Matches(std::string_view pattern, std::string_view name, bool ignoreCase = false);

} // namespace tools
