// The request/response buffer pair of a connection.
#pragma once

#include <array>

#include "diag/packet.h"

/// PacketBuffer holds the request that is being built and the last response. One command at a time uses it,
/// on the caller's thread, and begins by clearing it; between commands it holds the last exchange.
class PacketBuffer {
public:
    static constexpr unsigned short kSize = 4096;
    /// A request stays below the buffer's size.
    static constexpr unsigned short kMaxRequest = kSize - 1;

    PacketBuffer() { Clear(); }

    /// Clear empties the request and forgets the response: the request area is filled with 0xAA, the
    /// response area with 0xBB, and the response length is the capacity until a response arrives.
    void Clear();

    /// A builder that appends to the request, and whether one of the fields since Clear was left out.
    RequestBuilder& Request() { return m_builder; }
    /// A reader of the response; its read position is kept here from one call to the next.
    ResponseReader Response() {
        return {std::span(m_aResponse).first(m_iResponseLength), m_iReadPosition, m_builder.HeaderLength()};
    }

    unsigned char* RequestBytes() { return m_aRequest.data(); }
    unsigned short RequestLength() const { return m_iRequestLength; }
    unsigned char* ResponseBytes() { return m_aResponse.data(); }
    /// In: the capacity handed to an exchange; out: the length of the response that it brought.
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
