#include "diag/packet_buffer.h"

void PacketBuffer::Clear() {
    m_aRequest.fill(0xAA);
    m_aResponse.fill(0xBB);
    m_iRequestLength = 0;
    m_iResponseLength = kSize;
    m_iReadPosition = 0;
    m_builder.Restart(std::span(m_aRequest).first(kMaxRequest));
}
