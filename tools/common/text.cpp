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

size_t CharacterLength(std::string_view text, size_t i) {
    const unsigned first = ByteAt(text, i);
    if (first < 0x80)
        return 1;
    const size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
    // The second byte excludes overlong forms and numbers that are not characters.
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

std::vector<std::string> Lines(std::string_view text) {
    std::vector<std::string> lines;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find('\n', begin), text.size());
        lines.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

namespace {

constexpr size_t kWidth = 79;

/// Breaks a paragraph into lines that fit a terminal after `indent` blanks.
std::vector<std::string> Broken(std::string_view text, size_t indent) {
    std::vector<std::string> lines(1);
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find(' ', begin), text.size());
        const std::string_view word = text.substr(begin, end - begin);
        if (!lines.back().empty() && indent + lines.back().size() + 1 + word.size() > kWidth)
            lines.emplace_back();
        lines.back().append(lines.back().empty() ? "" : " ").append(word);
        begin = end + 1;
    }
    return lines;
}

} // namespace

std::string Aligned(const std::string& text, std::string_view explanation, size_t indent) {
    constexpr size_t kColumn = 30;
    std::string line = std::string(indent, ' ') + text;
    const bool fits = line.size() + 2 <= kColumn;
    std::string result = fits ? "" : line + "\n";
    line.resize(fits ? line.size() : 0);
    for (const std::string& words : Broken(explanation, kColumn)) {
        line.resize(kColumn, ' ');
        result += line + words + "\n";
        line.clear();
    }
    return result;
}

std::string Wrapped(std::string_view text) {
    std::string result;
    for (const std::string& line : Lines(text)) {
        if (line.starts_with(' '))
            result += line + "\n";
        else
            for (const std::string& words : Broken(line, 0))
                result += words + "\n";
    }
    return result;
}

} // namespace tools
