// Decoding and describing extended debug messages.
#pragma once

#include <cstddef>
#include <span>

#include "link/extended_message.h"

/// ParseExtendedMessage decodes a received packet, with or without its two FCS bytes. The texts stand
/// behind all arguments that the count announces; when the packet ends before that place, the count is not
/// believed and they are looked for behind the third. What a short packet lacks is 0 or empty. False, with
/// `message` unchanged, when the packet is no extended debug message.
bool ParseExtendedMessage(std::span<const unsigned char> packet, ExtendedMessage& message);

/// ParseExtendedMessage for a packet whose length is not known: it must be one that this library handed out
/// (to a listener or a callback, or from a queue), or stand in a buffer of at least 4096 readable bytes. Its
/// argument count is believed: when it is right, nothing behind the second text's zero is read, and in no
/// case anything from the 4097th byte on.
bool ParseExtendedMessage(const unsigned char* pPacket, ExtendedMessage& message);

/// Room for the description of any extended debug message.
constexpr size_t kExtendedMessageTextSize = 1400;

/// DescribeExtendedMessage writes "Debug Msg: subsystem.mask - file-line", a tab, and the format expanded
/// with the three arguments into `sOut`, which holds kExtendedMessageTextSize characters.
void DescribeExtendedMessage(const ExtendedMessage& message, char* sOut);
