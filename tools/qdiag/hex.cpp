#include "qdiag/hex.h"

namespace tools::qdiag {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

int DigitValue(char digit) {
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return digit >= 'a' && digit <= 'f' ? digit - 'a' + 10 : -1;
}

std::string ByteText(unsigned char byte) {
    return {kDigits[byte >> 4], kDigits[byte & 0x0F]};
}

} // namespace

std::string HexText(std::span<const unsigned char> bytes, const char* separator) {
    std::string text;
    for (const unsigned char byte : bytes) {
        if (!text.empty())
            text += separator;
        text += ByteText(byte);
    }
    return text;
}

std::optional<Bytes> ParseHex(std::string_view text) {
    Bytes bytes;
    for (size_t i = 0; i < text.size();) {
        if (text[i] == ' ') {
            ++i;
            continue;
        }
        const int high = DigitValue(text[i]);
        const int low = i + 1 < text.size() ? DigitValue(text[i + 1]) : -1;
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes.push_back(static_cast<unsigned char>(high << 4 | low));
        i += 2;
    }
    return bytes;
}

} // namespace tools::qdiag
