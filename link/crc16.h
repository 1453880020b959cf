// The frame check sequence of diagnostic packets: FCS-16 of RFC 1662.
#pragma once

#include <cstddef>
#include <span>

/// The bytes of a check sequence.
constexpr size_t kFcsSize = 2;

/// What ComputeCrc16 gives for a packet followed by its right check sequence, low byte first.
constexpr unsigned short CRC16_GOOD_RESIDUE = 0x0F47;

/// ComputeCrc16 returns the check sequence of iBitCount / 8 whole bytes (the handset library counts its
/// length in bits): polynomial 0x8408 reflected, preset to 0xFFFF, complemented.
unsigned short ComputeCrc16(const unsigned char* pData, unsigned short iBitCount);

/// WithoutFcs is the packet without its last two bytes when these are its right check sequence, else the
/// packet as it is: texts at the end of a packet are read up to there, and some packets have lost theirs.
std::span<const unsigned char> WithoutFcs(std::span<const unsigned char> packet);
