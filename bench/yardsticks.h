// Framing as one writes it at first, byte by byte, and the check sequence as fast as portable code computes
// it: what the client's own are measured against. Nothing here is shared with the client.
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

/// Makes the frame of a packet in `frame`, whose former content goes.
void EncodeByteByByte(std::span<const uint8_t> packet, std::vector<uint8_t>& frame);
/// Takes the packets out of frames and copies each, with its check sequence; returns how many were right.
size_t DecodeByteByByte(std::span<const uint8_t> wire, std::vector<std::vector<uint8_t>>& packets);
