// Building a request field by field, and reading a response field by field, in any buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/types.h"

/// RequestBuilder appends fields, little-endian and without padding, to a buffer that the caller owns. A
/// field that does not fit is left out whole, and Complete() is false from then on. Callers that must not
/// lose a field (a path, say) check it before they send.
class RequestBuilder {
public:
    /// Builds into `area`, after the iLength bytes that it already holds. All of `area` may be used.
    RequestBuilder(std::span<unsigned char> area, unsigned short& iLength)
        : m_area(area), m_iLength(iLength) {}

    RequestBuilder& U8(unsigned iValue) { return Number(iValue, 1); }
    RequestBuilder& U16(unsigned iValue) { return Number(iValue, 2); }
    RequestBuilder& U32(DWORD iValue) { return Number(iValue, 4); }
    RequestBuilder& S8(int iValue) { return Number(static_cast<DWORD>(iValue), 1); }
    RequestBuilder& S16(int iValue) { return Number(static_cast<DWORD>(iValue), 2); }
    RequestBuilder& S32(LONG iValue) { return Number(static_cast<DWORD>(iValue), 4); }
    /// The bytes of `data`, unchanged.
    RequestBuilder& Bytes(std::span<const unsigned char> data);
    /// The bytes of sText and one zero byte.
    RequestBuilder& Text(const char* sText);

    /// EndHeader sets the length of the response's header, which precedes its first value: the bytes appended
    /// so far plus iReserved.
    RequestBuilder& EndHeader(size_t iReserved = 0) {
        m_iHeader = m_iLength + iReserved;
        return *this;
    }
    /// The length of that header; 0 without EndHeader.
    size_t HeaderLength() const { return m_iHeader; }

    /// Begins a new request in `area`.
    void Restart(std::span<unsigned char> area) {
        m_area = area;
        m_iLength = 0;
        m_iHeader = 0;
        m_bComplete = true;
    }

    /// False when a field has been left out.
    bool Complete() const { return m_bComplete; }

private:
    RequestBuilder& Number(DWORD iValue, unsigned iSize);

    std::span<unsigned char> m_area;
    unsigned short& m_iLength;
    size_t m_iHeader = 0;
    bool m_bComplete = true;
};

/// ResponseReader reads a response from its end towards its beginning, because some phones insert fields at
/// the front while the last fields keep their place. Each successful Take moves the read position back over
/// the value. A failed one (too few bytes before the position) changes neither its out-value nor the
/// position, and later ones may succeed. Position 0 means "not started", and reading begins at the end. A
/// response that ends within its header has no values: every Take fails.
///
/// The At functions read at fixed offsets from the beginning and do not move the position.
class ResponseReader {
public:
    /// Reads `response`, whose first iHeader bytes are not values. The caller owns iPosition (0: the end), so
    /// that another reader can continue there.
    ResponseReader(std::span<const unsigned char> response, unsigned short& iPosition, size_t iHeader = 0)
        : m_response(response), m_iPosition(iPosition), m_iHeader(iHeader) {}

    bool Take(unsigned char& iValue) { return TakeNumber(iValue); }
    bool Take(signed char& iValue) { return TakeNumber(iValue); }
    bool Take(unsigned short& iValue) { return TakeNumber(iValue); }
    bool Take(short& iValue) { return TakeNumber(iValue); }
    bool Take(DWORD& iValue) { return TakeNumber(iValue); }
    bool Take(LONG& iValue) { return TakeNumber(iValue); }
    /// Fills `out` with the bytes before the position, in wire order.
    bool Take(std::span<unsigned char> out);
    /// Sets the position; one beyond the response is set to its end.
    void SetPosition(size_t iPosition);

    /// The little-endian value at a fixed offset; false, with the value unchanged, when not all of it is
    /// there.
    bool U8At(size_t iOffset, unsigned char& iValue) const;
    bool U16At(size_t iOffset, unsigned short& iValue) const;
    bool U32At(size_t iOffset, DWORD& iValue) const;
    /// Fills `out` with the bytes at iOffset; false, with `out` unchanged, when the response has fewer.
    bool BytesAt(size_t iOffset, std::span<unsigned char> out) const;
    /// Copies the zero-terminated text at iOffset into sOut (iCapacity bytes, at least 1), cut to fit and
    /// always terminated. A text without a zero ends with the response; beyond the response it is empty.
    /// Returns the length of the text in the response, uncut.
    size_t TextAt(size_t iOffset, char* sOut, size_t iCapacity) const;

    size_t Size() const { return m_response.size(); }
    /// True when at least iSize bytes follow the header.
    bool HoldsValues(size_t iSize = 1) const { return m_response.size() >= m_iHeader + iSize; }

private:
    template <class T>
    bool TakeNumber(T& iValue);
    bool TakeRaw(unsigned iSize, DWORD& iValue);

    std::span<const unsigned char> m_response;
    unsigned short& m_iPosition;
    size_t m_iHeader;
};
