// Diagnostic frames: an asynchronous HDLC-like framing based on RFC 1662, without address and control fields.
//
// On the wire: [7E] packet and FCS with 7D and 7E escaped, 7E. No other byte is escaped.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "link/message_queue.h"

constexpr unsigned char kFrameFlag = 0x7E;
constexpr unsigned char kFrameEscape = 0x7D;
constexpr unsigned char kFrameEscapeXor = 0x20;

/// A packet to be sent has fewer bytes than this.
constexpr size_t kSendLimit = 4094;

/// The escaped packet and its FCS have at most this many bytes.
constexpr size_t kMaxEscapedBody = 4096;

/// UnescapedRun returns the number of bytes at the start of `bytes` that are neither flag nor escape, so a
/// frame holds them unchanged.
size_t UnescapedRun(std::span<const unsigned char> bytes);

/// A frame ready for writing: an escaped body and its flags.
class EncodedFrame {
public:
    /// Encode frames a packet, with a leading flag when bStartFlag is set. False, with an empty frame, when
    /// the packet has kSendLimit bytes or more or its escaped body does not fit.
    bool Encode(std::span<const unsigned char> packet, bool bStartFlag);

    std::span<const unsigned char> Bytes() const { return {m_aBytes.data(), m_iSize}; }

private:
    bool Escape(std::span<const unsigned char> bytes, size_t iLimit);

    std::array<unsigned char, kMaxEscapedBody + 2> m_aBytes;
    size_t m_iSize = 0;
};
