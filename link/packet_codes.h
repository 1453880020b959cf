// First bytes of packets that the link itself knows.
#pragma once

constexpr unsigned char kVersionRequest = 0x00;
constexpr unsigned char kLogRecord = 0x10;
constexpr unsigned char kDebugMessage = 0x1F;
constexpr unsigned char kDataModeRequest = 0x44;
constexpr unsigned char kEventReport = 0x60;
constexpr unsigned char kExtendedMessage = 0x79;
constexpr unsigned char kLoopbackRequest = 0x7B;

/// IsUnsolicitedCode tells whether packets with this first byte come from the phone unasked.
constexpr bool IsUnsolicitedCode(unsigned char iCode) {
    return iCode == kLogRecord || iCode == kDebugMessage || iCode == kEventReport ||
           iCode == kExtendedMessage;
}
