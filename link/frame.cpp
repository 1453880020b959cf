#include "link/frame.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "link/crc16.h"

namespace {

using Word = uint64_t; // eight bytes, examined together

constexpr Word kLowBits = 0x0101010101010101;
constexpr Word kHighBits = 0x8080808080808080;

constexpr bool HasByte(Word iWord, unsigned char iByte) {
    const Word iZeroWhereEqual = iWord ^ kLowBits * iByte;
    return ((iZeroWhereEqual - kLowBits) & ~iZeroWhereEqual & kHighBits) != 0;
}

constexpr bool IsReserved(unsigned char iByte) {
    return iByte == kFrameFlag || iByte == kFrameEscape;
}

} // namespace

size_t UnescapedRun(std::span<const unsigned char> bytes) {
    size_t i = 0;
    for (; i + sizeof(Word) <= bytes.size(); i += sizeof(Word)) {
        Word iWord = 0;
        std::memcpy(&iWord, bytes.data() + i, sizeof iWord);
        if (HasByte(iWord, kFrameFlag) || HasByte(iWord, kFrameEscape))
            break;
    }
    while (i < bytes.size() && !IsReserved(bytes[i]))
        ++i;
    return i;
}

bool EncodedFrame::Escape(std::span<const unsigned char> bytes, size_t iLimit) {
    while (!bytes.empty()) {
        const size_t iRun = UnescapedRun(bytes);
        const bool bEscaped = iRun < bytes.size();
        if (m_iSize + iRun + (bEscaped ? 2 : 0) > iLimit)
            return false;
        std::copy_n(bytes.begin(), iRun, m_aBytes.data() + m_iSize);
        m_iSize += iRun;
        if (bEscaped) {
            m_aBytes[m_iSize++] = kFrameEscape;
            m_aBytes[m_iSize++] = bytes[iRun] ^ kFrameEscapeXor;
        }
        bytes = bytes.subspan(iRun + (bEscaped ? 1 : 0));
    }
    return true;
}

bool EncodedFrame::Encode(std::span<const unsigned char> packet, bool bStartFlag) {
    m_iSize = 0;
    if (packet.size() >= kSendLimit)
        return false;
    const unsigned iFcs = ComputeCrc16(packet.data(), static_cast<unsigned short>(packet.size() * 8));
    const unsigned char aFcs[] = {static_cast<unsigned char>(iFcs), static_cast<unsigned char>(iFcs >> 8)};
    if (bStartFlag)
        m_aBytes[m_iSize++] = kFrameFlag;
    const size_t iLimit = m_iSize + kMaxEscapedBody;
    if (!Escape(packet, iLimit) || !Escape(aFcs, iLimit)) {
        m_iSize = 0;
        return false;
    }
    m_aBytes[m_iSize++] = kFrameFlag;
    return true;
}
