#include "link/frame.h"

#include "link/crc16.h"

bool EncodedFrame::Escape(std::span<const unsigned char> bytes, size_t iLimit) {
    for (const unsigned char iByte : bytes) {
        const bool bEscaped = iByte == kFrameFlag || iByte == kFrameEscape;
        if (m_iSize + (bEscaped ? 2 : 1) > iLimit)
            return false;
        if (bEscaped)
            m_aBytes[m_iSize++] = kFrameEscape;
        m_aBytes[m_iSize++] = bEscaped ? iByte ^ kFrameEscapeXor : iByte;
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
