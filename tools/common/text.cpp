#include "common/text.h"

#include <algorithm>
#include <cstdio>

namespace tools {
namespace {

unsigned ByteAt(std::string_view text, size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
}

bool IsAsciiControl(unsigned byte) {
    return byte < 0x20 || byte == 0x7F;
}

/// 0xC2 0x80 to 0xC2 0x9F are the control characters above 0x7F in UTF-8.
bool IsHighControl(std::string_view text, size_t i) {
    return ByteAt(text, i) == 0xC2 && ByteAt(text, i + 1) >= 0x80 && ByteAt(text, i + 1) < 0xA0;
}

std::string Escaped(const char* lead, int digits, unsigned value) {
    char hex[16];
    std::snprintf(hex, sizeof hex, "%s%0*X", lead, digits, value);
    return hex;
}

/// The length of the well-formed character at `i`; 0 when there is none.
size_t CharacterLength(std::string_view text, size_t i) {
    const unsigned first = ByteAt(text, i);
    if (first < 0x80)
        return 1;
    const size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
    // The second byte tells the shortest form from longer ones, and what Unicode has no character for.
    const unsigned second = ByteAt(text, i + 1);
    const unsigned least = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const unsigned most = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    if (length == 0 || second < least || second > most)
        return 0;
    for (size_t k = 2; k < length; ++k) {
        if ((ByteAt(text, i + k) & 0xC0) != 0x80)
            return 0;
    }
    return length;
}

} // namespace

std::string Printable(std::string_view text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        if (IsHighControl(text, i)) {
            result += Escaped("\\x", 2, ByteAt(text, i));
            ++i;
            result += Escaped("\\x", 2, ByteAt(text, i));
        } else if (IsAsciiControl(ByteAt(text, i))) {
            result += Escaped("\\x", 2, ByteAt(text, i));
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string Quoted(std::string_view text) {
    return '"' + Printable(text) + '"';
}

bool IsUtf8(std::string_view text) {
    size_t i = 0;
    while (i < text.size()) {
        const size_t length = CharacterLength(text, i);
        if (length == 0)
            return false;
        i += length;
    }
    return true;
}

std::string JsonText(std::string_view text) {
    const bool isUtf8 = IsUtf8(text);
    std::string result = "\"";
    for (size_t i = 0; i < text.size(); ++i) {
        const unsigned byte = ByteAt(text, i);
        if (byte == '"' || byte == '\\')
            result += std::string("\\") + text[i];
        else if (isUtf8 && IsHighControl(text, i))
            result += Escaped("\\u", 4, ByteAt(text, ++i));
        else if (IsAsciiControl(byte) || (byte > 0x7F && !isUtf8))
            result += Escaped("\\u", 4, byte);
        else
            result += text[i];
    }
    return result + '"';
}

std::string Aligned(std::string text, const char* explanation) {
    constexpr size_t kColumn = 26;
    text.resize(std::max(text.size() + 1, kColumn), ' ');
    return "  " + text + explanation + "\n";
}

} // namespace tools
