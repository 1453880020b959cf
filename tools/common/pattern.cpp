#include "common/pattern.h"

#include <algorithm>
#include <string>

#include "common/text.h"

namespace tools {
namespace {

std::string_view CharacterAt(std::string_view text, size_t i) {
    return text.substr(i, std::max<size_t>(CharacterLength(text, i), 1));
}

/// Returns the length of the set "[...]" at the beginning of `pattern`, 0 if it is not closed. A ']' that
/// comes first is a member of the set.
size_t SetLength(std::string_view pattern) {
    const size_t first = pattern.size() > 1 && (pattern[1] == '!' || pattern[1] == '^') ? 2 : 1;
    const size_t end = pattern.find(']', first + 1);
    return end == std::string_view::npos ? 0 : end + 1;
}

bool IsInSet(std::string_view set, std::string_view character) {
    const bool isNegated = set[1] == '!' || set[1] == '^';
    const std::string_view members = set.substr(isNegated ? 2 : 1, set.size() - (isNegated ? 3 : 2));
    for (size_t i = 0; i < members.size();) {
        const std::string_view low = CharacterAt(members, i);
        i += low.size();
        std::string_view high = low;
        if (i + 1 < members.size() && members[i] == '-') {
            high = CharacterAt(members, i + 1);
            i += 1 + high.size();
        }
        // UTF-8 keeps the order of the characters.
        if (low <= character && character <= high)
            return !isNegated;
    }
    return isNegated;
}

/// Returns the length of the first element of `pattern` if it matches `character`, else 0. The pattern is not
/// empty and does not begin with '*'.
size_t MatchLength(std::string_view pattern, std::string_view character) {
    if (pattern[0] == '?')
        return 1;
    if (const size_t length = pattern[0] == '[' ? SetLength(pattern) : 0)
        return IsInSet(pattern.substr(0, length), character) ? length : 0;
    return pattern.starts_with(character) ? character.size() : 0;
}

bool MatchesExactly(std::string_view pattern, std::string_view name) {
    size_t p = 0;
    size_t n = 0;
    // Where to continue when the last '*' must match one more character.
    size_t retryPattern = std::string_view::npos;
    size_t retryName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            retryPattern = ++p;
            retryName = n;
            continue;
        }
        const std::string_view character = CharacterAt(name, n);
        if (const size_t length = p < pattern.size() ? MatchLength(pattern.substr(p), character) : 0) {
            p += length;
            n += character.size();
            continue;
        }
        if (retryPattern == std::string_view::npos)
            return false;
        retryName += CharacterAt(name, retryName).size();
        p = retryPattern;
        n = retryName;
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

} // namespace

bool IsPattern(std::string_view text) {
    return text.find_first_of("*?[") != std::string_view::npos;
}

bool Matches(std::string_view pattern, std::string_view name, bool ignoreCase) {
    return ignoreCase ? MatchesExactly(Lower(pattern), Lower(name)) : MatchesExactly(pattern, name);
}

} // namespace tools
