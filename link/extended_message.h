// The phone's extended debug message: a format string, its arguments and its origin.
#pragma once

#include "platform/types.h"

/// An extended debug message as programs receive it: 232 bytes. Texts longer than their field are cut and
/// always terminated.
struct ExtendedMessage {
    unsigned char iCmdCode;       // 0x79
    unsigned char iTimeStampType; // how to read aTimeStamp
    unsigned char iNumArgs;       // arguments that the phone sent; the first three are kept
    unsigned char iDropCount;     // messages lost in the phone before this one
    unsigned char aTimeStamp[8];
    unsigned short iLineNumber;
    unsigned short iSubsystemID;
    DWORD iSubsystemMask;
    DWORD aArgs[3]; // 0 where the phone sent fewer
    char sFormat[100];
    char sFileName[100];
};
static_assert(sizeof(ExtendedMessage) == 232);
