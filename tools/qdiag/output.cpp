#include "qdiag/output.h"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace qdiag {
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

std::string Printable(std::string_view text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : '\0');
        // 0xC2 0x80 to 0xC2 0x9F are the control characters above 0x7F in UTF-8.
        const bool isHighControl = byte == 0xC2 && next >= 0x80 && next < 0xA0;
        if (byte < 0x20 || byte == 0x7F || isHighControl)
            result += "\\x" + ByteText(byte);
        else
            result += text[i];
        if (isHighControl) {
            result += "\\x" + ByteText(next);
            ++i;
        }
    }
    return result;
}

std::string Quoted(std::string_view text) {
    return '"' + Printable(text) + '"';
}

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

std::string JsonText(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\')
            result += std::string("\\") + character;
        else if (byte < 0x20 || byte > 0x7E)
            result += "\\u00" + ByteText(byte);
        else
            result += character;
    }
    return result + '"';
}

Progress::Progress(std::string what, size_t total)
    : m_what(std::move(what)), m_total(total), m_isTerminal(isatty(STDOUT_FILENO) != 0) {}

Progress::~Progress() {
    if (m_isTerminal && m_hasLine)
        std::printf("\n");
    std::fflush(stdout);
}

void Progress::Report(size_t done) {
    const size_t percent = m_total == 0 ? 100 : done * 100 / m_total;
    constexpr size_t kWorthLines = 100;
    const bool isNews =
        m_isTerminal ? percent != m_shown : m_total >= kWorthLines && percent / 10 != m_shown / 10;
    if (!isNews)
        return;
    m_shown = percent;
    m_hasLine = true;
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    const double left = seconds * static_cast<double>(m_total - done) / static_cast<double>(done);
    // The blanks cover what an earlier, longer line left.
    std::printf("%s%s: %3zu %%, %zu of %zu, %.0f s left%s", m_isTerminal ? "\r" : "", m_what.c_str(), percent,
                done, m_total, left, m_isTerminal ? "      " : "\n");
    std::fflush(stdout);
}

} // namespace qdiag
