#include "link/crc16.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::array<unsigned short, 256> MakeTable() {
    std::array<unsigned short, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        unsigned iEntry = i;
        for (int iBit = 0; iBit < 8; ++iBit)
            iEntry = (iEntry & 1) != 0 ? iEntry >> 1 ^ 0x8408 : iEntry >> 1;
        table[i] = static_cast<unsigned short>(iEntry);
    }
    return table;
}

constexpr auto kTable = MakeTable();
static_assert(kTable[1] == 0x1189 && kTable[128] == 0x8408);

} // namespace

unsigned short ComputeCrc16(const unsigned char* pData, unsigned short iBitCount) {
    unsigned iRegister = 0xFFFF;
    for (unsigned i = 0; i < iBitCount / 8u; ++i)
        iRegister = iRegister >> 8 ^ kTable[(iRegister ^ pData[i]) & 0xFF];
    return static_cast<unsigned short>(~iRegister);
}

std::span<const unsigned char> WithoutFcs(std::span<const unsigned char> packet) {
    constexpr size_t kFcsSize = 2;
    constexpr size_t kLongest = 0xFFFF / 8; // what the bit count can tell
    if (packet.size() < kFcsSize || packet.size() > kLongest)
        return packet;
    const unsigned short iBitCount = static_cast<unsigned short>(packet.size() * 8);
    const bool bRight = ComputeCrc16(packet.data(), iBitCount) == CRC16_GOOD_RESIDUE;
    return bRight ? packet.first(packet.size() - kFcsSize) : packet;
}
