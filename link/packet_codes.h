// The first bytes of the packets that the link itself interprets.
#pragma once

constexpr unsigned char kVersionRequest = 0x00;
constexpr unsigned char kLogRecord = 0x10;
constexpr unsigned char kDebugMessage = 0x1F;
constexpr unsigned char kDataModeRequest = 0x44;
constexpr unsigned char kEventReport = 0x60;
constexpr unsigned char kExtendedMessage = 0x79;
constexpr unsigned char kLoopbackRequest = 0x7B;

/// IsUnsolicitedCode returns whether the phone sends packets with this first byte unasked.
constexpr bool IsUnsolicitedCode(unsigned char iCode) {
    return iCode == kLogRecord || iCode == kDebugMessage || iCode == kEventReport ||
           iCode == kExtendedMessage;
}
