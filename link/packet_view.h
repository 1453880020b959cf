// Reading values at fixed offsets of a packet that may end anywhere.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "platform/types.h"

/// PacketView reads fields of unsolicited packets, for messages to people. A number that the packet does not
/// hold completely reads as 0, a missing text as empty. No byte outside the requested field is read. The
/// bytes are not owned.
class PacketView {
public:
    explicit PacketView(std::span<const unsigned char> bytes) : m_bytes(bytes) {}

    /// Has returns whether the packet holds iSize bytes at iOffset.
    bool Has(size_t iOffset, size_t iSize) const {
        return iOffset <= m_bytes.size() && iSize <= m_bytes.size() - iOffset;
    }

    // Little-endian numbers of 8, 16 and 32 bits.
    unsigned char U8(size_t iOffset) const { return static_cast<unsigned char>(Number(iOffset, 1)); }
    unsigned short U16(size_t iOffset) const { return static_cast<unsigned short>(Number(iOffset, 2)); }
    DWORD U32(size_t iOffset) const { return Number(iOffset, 4); }

    /// Text returns the text at iOffset, up to its zero, iLimit characters or the end of the packet.
    std::string_view Text(size_t iOffset, size_t iLimit) const {
        if (iOffset >= m_bytes.size())
            return "";
        const auto field = m_bytes.subspan(iOffset, std::min(iLimit, m_bytes.size() - iOffset));
        const auto iLength = std::find(field.begin(), field.end(), 0) - field.begin();
        return {reinterpret_cast<const char*>(field.data()), static_cast<size_t>(iLength)};
    }

private:
    DWORD Number(size_t iOffset, size_t iSize) const {
        DWORD iValue = 0;
        if (Has(iOffset, iSize))
            for (size_t i = iSize; i > 0; --i)
                iValue = iValue << 8 | m_bytes[iOffset + i - 1];
        return iValue;
    }

    std::span<const unsigned char> m_bytes;
};
