// The handset's own framing: packets with their checksum, escaped and ended by a flag.
#pragma once

#include <optional>

#include "handset/bytes.h"

namespace handset {

/// The CRC-16 that ends every packet (low byte first on the wire).
uint16_t Checksum(const uint8_t* data, size_t size);

/// The frame of a packet: packet and checksum escaped, and the flag. `corrupt` flips the lowest bit of the
/// packet's last byte after its checksum was taken.
Bytes Frame(const Bytes& packet, bool corrupt = false);

/// Cuts the received bytes into packets.
class Deframer {
public:
    /// Takes bytes up to the end of the first good frame, whose packet it gives without its checksum; nothing
    /// when the bytes end before. `used` tells how many were taken. Frames with a wrong checksum, shorter
    /// than a packet of one byte, longer than 8192 bytes or ending in an escape are dropped.
    std::optional<Bytes> Take(const uint8_t* data, size_t size, size_t& used);

    /// Forgets a frame that has begun.
    void Reset();

    /// How many frames were dropped.
    size_t Dropped() const { return m_dropped; }

private:
    std::optional<Bytes> EndFrame();

    Bytes m_frame;
    bool m_escaped = false;
    bool m_tooLong = false;
    size_t m_dropped = 0;
};

} // namespace handset
