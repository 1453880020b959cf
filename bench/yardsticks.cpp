#include "bench/yardsticks.h"

#include <array>

namespace {

constexpr size_t kSlices = 8;
constexpr uint16_t kGoodResidue = 0x0F47;
using Table = std::array<uint16_t, 256>;

/// tables[n][i]: the effect of byte i on the register after n more bytes.
std::array<Table, kSlices> MakeTables() {
    std::array<Table, kSlices> tables{};
    for (unsigned i = 0; i < 256; ++i) {
        unsigned iValue = i;
        for (int iBit = 0; iBit < 8; ++iBit)
            iValue = (iValue & 1) != 0 ? iValue >> 1 ^ 0x8408 : iValue >> 1;
        tables[0][i] = static_cast<uint16_t>(iValue);
    }
    for (size_t n = 1; n < kSlices; ++n)
        for (size_t i = 0; i < 256; ++i)
            tables[n][i] = static_cast<uint16_t>(tables[n - 1][i] >> 8 ^ tables[0][tables[n - 1][i] & 0xFF]);
    return tables;
}

const std::array<Table, kSlices> kTables = MakeTables();

unsigned Continue(unsigned iFcs, std::span<const uint8_t> bytes) {
    for (const uint8_t iByte : bytes)
        iFcs = iFcs >> 8 ^ kTables[0][(iFcs ^ iByte) & 0xFF];
    return iFcs;
}

} // namespace

uint16_t CrcByteByByte(std::span<const uint8_t> bytes) {
    return static_cast<uint16_t>(~Continue(0xFFFF, bytes));
}

uint16_t CrcEightAtATime(std::span<const uint8_t> bytes) {
    unsigned iFcs = 0xFFFF;
    for (; bytes.size() >= kSlices; bytes = bytes.subspan(kSlices)) {
        const uint8_t* const p = bytes.data();
        iFcs = kTables[7][(iFcs ^ p[0]) & 0xFF] ^ kTables[6][(iFcs >> 8 ^ p[1]) & 0xFF] ^ kTables[5][p[2]] ^
               kTables[4][p[3]] ^ kTables[3][p[4]] ^ kTables[2][p[5]] ^ kTables[1][p[6]] ^ kTables[0][p[7]];
    }
    return static_cast<uint16_t>(~Continue(iFcs, bytes));
}

void EncodeByteByByte(std::span<const uint8_t> packet, std::vector<uint8_t>& frame) {
    const uint16_t iFcs = CrcByteByByte(packet);
    frame.clear();
    const auto append = [&frame](uint8_t iByte) {
        if (iByte == kFlagByte || iByte == kEscapeByte) {
            frame.push_back(kEscapeByte);
            iByte ^= kEscapeBit;
        }
        frame.push_back(iByte);
    };
    for (const uint8_t iByte : packet)
        append(iByte);
    append(static_cast<uint8_t>(iFcs));
    append(static_cast<uint8_t>(iFcs >> 8));
    frame.push_back(kFlagByte);
}

size_t DecodeByteByByte(std::span<const uint8_t> wire, std::vector<std::vector<uint8_t>>& packets) {
    std::vector<uint8_t> packet;
    size_t iRight = 0;
    bool bEscaped = false;
    for (const uint8_t iByte : wire) {
        if (iByte == kEscapeByte) {
            bEscaped = true;
        } else if (iByte != kFlagByte) {
            packet.push_back(bEscaped ? iByte ^ kEscapeBit : iByte);
            bEscaped = false;
        } else if (!packet.empty()) {
            iRight += CrcByteByByte(packet) == kGoodResidue ? 1 : 0;
            packets.push_back(packet);
            packet.clear();
        }
    }
    return iRight;
}
