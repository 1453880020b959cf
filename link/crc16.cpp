#include "link/crc16.h"

#include <array>
#include <cstddef>

namespace {

constexpr size_t kStride = 8; // bytes processed together
using Table = std::array<unsigned short, 256>;

constexpr unsigned short ShiftByte(unsigned iRegister) {
    for (int iBit = 0; iBit < 8; ++iBit)
        iRegister = (iRegister & 1) != 0 ? iRegister >> 1 ^ 0x8408 : iRegister >> 1;
    return static_cast<unsigned short>(iRegister);
}

/// Table n holds the effect on a zero register of a byte followed by n zero bytes. The FCS is linear: the
/// effect of eight bytes is the exclusive or of their single effects.
constexpr std::array<Table, kStride> MakeTables() {
    std::array<Table, kStride> tables{};
    for (unsigned iByte = 0; iByte < 256; ++iByte) {
        tables[0][iByte] = ShiftByte(iByte);
        for (size_t n = 1; n < kStride; ++n) {
            const unsigned iBefore = tables[n - 1][iByte];
            tables[n][iByte] = static_cast<unsigned short>(iBefore >> 8 ^ ShiftByte(iBefore & 0xFF));
        }
    }
    return tables;
}

constexpr auto kTables = MakeTables();
static_assert(kTables[0][1] == 0x1189 && kTables[0][128] == 0x8408);

unsigned TakeStride(unsigned iRegister, const unsigned char* pData) {
    // The register is two bytes wide, so it affects the first two of the eight only.
    const unsigned iFirst = (iRegister ^ pData[0]) & 0xFF;
    const unsigned iSecond = iRegister >> 8 ^ pData[1];
    return kTables[7][iFirst] ^ kTables[6][iSecond] ^ kTables[5][pData[2]] ^ kTables[4][pData[3]] ^
           kTables[3][pData[4]] ^ kTables[2][pData[5]] ^ kTables[1][pData[6]] ^ kTables[0][pData[7]];
}

} // namespace

unsigned short ComputeCrc16(const unsigned char* pData, unsigned short iBitCount) {
    unsigned iRegister = 0xFFFF;
    size_t iLeft = iBitCount / 8u;
    for (; iLeft >= kStride; iLeft -= kStride, pData += kStride)
        iRegister = TakeStride(iRegister, pData);
    for (; iLeft > 0; --iLeft)
        iRegister = iRegister >> 8 ^ kTables[0][(iRegister ^ *pData++) & 0xFF];
    return static_cast<unsigned short>(~iRegister);
}

std::span<const unsigned char> WithoutFcs(std::span<const unsigned char> packet) {
    constexpr size_t kLongest = 0xFFFF / 8; // what fits in the bit count
    if (packet.size() < kFcsSize || packet.size() > kLongest)
        return packet;
    const unsigned short iBitCount = static_cast<unsigned short>(packet.size() * 8);
    const bool bRight = ComputeCrc16(packet.data(), iBitCount) == CRC16_GOOD_RESIDUE;
    return bRight ? packet.first(packet.size() - kFcsSize) : packet;
}
