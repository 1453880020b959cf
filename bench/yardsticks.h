// Yardsticks for the client's framing: plain framing, byte by byte, and the fastest FCS in portable code.
// They share no code with the client.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

constexpr uint8_t kFlagByte = 0x7E;
constexpr uint8_t kEscapeByte = 0x7D;
constexpr uint8_t kEscapeBit = 0x20;

/// The frame check sequence from one table of 256 entries.
uint16_t CrcByteByByte(std::span<const uint8_t> bytes);
/// The same, eight bytes at a time from eight tables.
uint16_t CrcEightAtATime(std::span<const uint8_t> bytes);

/// Replaces the content of `frame` by the frame of a packet.
void EncodeByteByByte(std::span<const uint8_t> packet, std::vector<uint8_t>& frame);
/// Extracts the packets from frames and copies each, with its FCS. Returns the number of valid ones.
size_t DecodeByteByByte(std::span<const uint8_t> wire, std::vector<std::vector<uint8_t>>& packets);
