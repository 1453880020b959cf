// The phone's extended debug message: a format string, its arguments, and where it came from.
#pragma once

#include <span>

#include "platform/export.h"
#include "platform/types.h"

/// An extended debug message as it is handed out: 232 bytes. Texts longer than their field are cut, and
/// always terminated.
struct ExtendedMessage {
    unsigned char iCmdCode;       // 0x79
    unsigned char iTimeStampType; // how to read aTimeStamp
    unsigned char iNumArgs;       // arguments that the phone sent; the first three are kept
    unsigned char iDropCount;     // messages that the phone lost before this one
    unsigned char aTimeStamp[8];
    unsigned short iLineNumber;
    unsigned short iSubsystemID;
    DWORD iSubsystemMask;
    DWORD aArgs[3]; // 0 where the phone sent fewer
    char sFormat[100];
    char sFileName[100];
};
static_assert(sizeof(ExtendedMessage) == 232);

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
