#include "qdiag/archive/checksum.h"

#include <array>
#include <cstdio>

namespace tools::qdiag {
namespace {

constexpr std::array<uint32_t, 256> MakeTable() {
    constexpr uint32_t kPolynomial = 0xEDB88320;
    std::array<uint32_t, 256> table{};
    for (uint32_t i = 0; i < table.size(); ++i) {
        table[i] = i;
        for (int bit = 0; bit < 8; ++bit)
            table[i] = table[i] >> 1 ^ (table[i] & 1 ? kPolynomial : 0);
    }
    return table;
}

constexpr std::array<uint32_t, 256> kTable = MakeTable();

} // namespace

Checksum::Checksum(const ArchiveEntry& entry) {
    AppendText(entry.name);
    AppendText(entry.target);
}

void Checksum::AppendText(const std::string& text) {
    Append({reinterpret_cast<const unsigned char*>(text.c_str()), text.size() + 1});
}

void Checksum::Append(std::span<const unsigned char> content) {
    for (const unsigned char byte : content)
        m_rest = kTable[(m_rest ^ byte) & 0xFF] ^ m_rest >> 8;
}

std::string Checksum::Text() const {
    char text[16];
    std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(~m_rest));
    return text;
}

} // namespace tools::qdiag
