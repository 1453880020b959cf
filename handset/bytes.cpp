// Packets and wire data as byte vectors, and their text form.
#include "handset/bytes.h"

#include <algorithm>

namespace handset {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

int DigitValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

} // namespace

std::string ToHex(const Bytes& bytes) {
    std::string text;
    text.reserve(bytes.size() * 3);
    for (const uint8_t byte : bytes) {
        if (!text.empty())
            text += ' ';
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0x0F];
    }
    return text;
}

bool FromHex(const std::string& text, Bytes& bytes) {
    bytes.clear();
    int high = -1;
    for (const char c : text) {
        if (c == ' ' && high < 0)
            continue;
        const int digit = DigitValue(c);
        if (digit < 0) {
            bytes.clear();
            return false;
        }
        if (high < 0) {
            high = digit;
            continue;
        }
        bytes.push_back(static_cast<uint8_t>(high * 16 + digit));
        high = -1;
    }
    if (high >= 0)
        bytes.clear();
    return high < 0;
}

bool BeginsWith(const Bytes& bytes, const Bytes& prefix) {
    return bytes.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), bytes.begin());
}

} // namespace handset
