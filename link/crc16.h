// The frame check sequence (FCS) of diagnostic packets: FCS-16 of RFC 1662.
#pragma once

#include <cstddef>
#include <span>

/// The size of an FCS in bytes.
constexpr size_t kFcsSize = 2;

/// The result of ComputeCrc16 for a packet followed by its correct FCS, low byte first.
constexpr unsigned short CRC16_GOOD_RESIDUE = 0x0F47;

/// ComputeCrc16 returns the FCS of iBitCount / 8 whole bytes (the handset library counts in bits): polynomial
/// 0x8408 reflected, preset to 0xFFFF, complemented.
unsigned short ComputeCrc16(const unsigned char* pData, unsigned short iBitCount);

/// WithoutFcs returns the packet without its last two bytes if these are its correct FCS, else the whole
/// packet. Texts at the end of a packet extend to there, and some packets have already lost their FCS.
std::span<const unsigned char> WithoutFcs(std::span<const unsigned char> packet);
