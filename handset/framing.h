// The handset's own framing: a packet and its checksum, escaped and ended by a flag.
#pragma once

#include <optional>

#include "handset/bytes.h"

namespace handset {

/// The CRC-16 that ends every packet (low byte first on the wire).
uint16_t Checksum(const uint8_t* data, size_t size);

/// Frames a packet. `corrupt` flips the lowest bit of the packet's last byte after computing the checksum.
Bytes Frame(const Bytes& packet, bool corrupt = false);

/// Extracts packets from the received bytes.
class Deframer {
public:
    /// Consumes bytes up to the end of the first valid frame and returns its packet, without checksum; empty
    /// when the bytes end before that. `used` is the number of bytes consumed. Drops frames with a wrong
    /// checksum, with an empty packet, longer than 8192 bytes or ending in an escape.
    std::optional<Bytes> Take(const uint8_t* data, size_t size, size_t& used);

    /// Discards an incomplete frame.
    void Reset();

    /// The number of frames dropped.
    size_t Dropped() const { return m_dropped; }

private:
    std::optional<Bytes> EndFrame();

    Bytes m_frame;
    bool m_escaped = false;
    bool m_tooLong = false;
    size_t m_dropped = 0;
};

} // namespace handset
