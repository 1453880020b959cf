// The request/response buffer pair of a connection.
#pragma once

#include <array>

#include "diag/packet.h"

/// PacketBuffer holds the request being built and the last response. One command at a time uses it, on the
/// caller's thread, and clears it first. Between commands it holds the last exchange.
class PacketBuffer {
public:
    static constexpr unsigned short kSize = 4096;
    /// A request is always shorter than the buffer.
    static constexpr unsigned short kMaxRequest = kSize - 1;

    PacketBuffer() { Clear(); }

    /// Clear empties the request and forgets the response. It fills the request area with 0xAA and the
    /// response area with 0xBB, and sets the response length to the capacity until a response arrives.
    void Clear();

    /// A builder that appends to the request and records whether a field was left out since Clear.
    RequestBuilder& Request() { return m_builder; }
    /// A reader of the response. Its read position is kept here between calls.
    ResponseReader Response() {
        return {std::span(m_aResponse).first(m_iResponseLength), m_iReadPosition, m_builder.HeaderLength()};
    }

    unsigned char* RequestBytes() { return m_aRequest.data(); }
    unsigned short RequestLength() const { return m_iRequestLength; }
    unsigned char* ResponseBytes() { return m_aResponse.data(); }
    /// In: the capacity for an exchange; out: the length of the response.
    unsigned short& ResponseLength() { return m_iResponseLength; }
    unsigned short ReadPosition() const { return m_iReadPosition; }

private:
    std::array<unsigned char, kSize> m_aRequest;
    std::array<unsigned char, kSize> m_aResponse;
    unsigned short m_iRequestLength = 0;
    unsigned short m_iResponseLength = kSize;
    unsigned short m_iReadPosition = 0;
    RequestBuilder m_builder{{}, m_iRequestLength};
};
