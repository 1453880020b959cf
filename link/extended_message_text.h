// Decoding and describing extended debug messages.
#pragma once

#include <cstddef>
#include <span>

#include "link/extended_message.h"

/// ParseExtendedMessage decodes a received packet, with or without its two FCS bytes. The texts follow all
/// arguments that the count announces; when the packet ends before that offset, they are looked for after the
/// third argument at the latest. Fields missing from a short packet are 0 or empty. False, with `message`
/// unchanged, when the packet is not an extended debug message.
bool ParseExtendedMessage(std::span<const unsigned char> packet, ExtendedMessage& message);

/// ParseExtendedMessage for a packet of unknown length. It must come from this library (from a listener, a
/// callback or a queue) or lie in a buffer of at least 4096 readable bytes. Its argument count is trusted: if
/// it is right, nothing after the zero of the second text is read. Nothing after the 4096th byte is read in
/// any case.
bool ParseExtendedMessage(const unsigned char* pPacket, ExtendedMessage& message);

/// Room for the description of any extended debug message.
constexpr size_t kExtendedMessageTextSize = 1400;

/// DescribeExtendedMessage writes "Debug Msg: subsystem.mask - file-line", a tab, and the format expanded
/// with the three arguments into `sOut`, which has room for kExtendedMessageTextSize characters.
void DescribeExtendedMessage(const ExtendedMessage& message, char* sOut);
