// Building a request field by field and reading a response field by field, over any buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/types.h"

/// RequestBuilder appends fields, little-endian and without gaps, to a buffer that somebody else owns. A
/// field that does not fit is left out whole, and Complete() is false from then on; whoever sends something
/// that must not lose a field (a path, say) looks at it first.
class RequestBuilder {
public:
    /// Builds into `area`, all of which may be used, behind the iLength bytes that it already holds.
    RequestBuilder(std::span<unsigned char> area, unsigned short& iLength)
        : m_area(area), m_iLength(iLength) {}

    RequestBuilder& U8(unsigned iValue) { return Number(iValue, 1); }
    RequestBuilder& U16(unsigned iValue) { return Number(iValue, 2); }
    RequestBuilder& U32(DWORD iValue) { return Number(iValue, 4); }
    RequestBuilder& S8(int iValue) { return Number(static_cast<DWORD>(iValue), 1); }
    RequestBuilder& S16(int iValue) { return Number(static_cast<DWORD>(iValue), 2); }
    RequestBuilder& S32(LONG iValue) { return Number(static_cast<DWORD>(iValue), 4); }
    /// The bytes of `data` as they are.
    RequestBuilder& Bytes(std::span<const unsigned char> data);
    /// The bytes of sText and one zero byte.
    RequestBuilder& Text(const char* sText);

    /// EndHeader says what the answer begins with before its first value: the bytes appended so far, and
    /// iReserved more.
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

    /// False when a field was left out.
    bool Complete() const { return m_bComplete; }

private:
    RequestBuilder& Number(DWORD iValue, unsigned iSize);

    std::span<unsigned char> m_area;
    unsigned short& m_iLength;
    size_t m_iHeader = 0;
    bool m_bComplete = true;
};

/// ResponseReader reads a response from its end towards its begin: the handset's answers may grow in front,
/// their last fields stay where they are. Each successful Take moves the read position back over what it
/// took; a failed one (fewer bytes before the position than asked for) changes neither its out-value nor the
/// position, and later ones may succeed. A position of 0 counts as "not started" and stands for the end.
/// An answer that ends within its header has no values: every Take fails.
/// The At functions read at fixed offsets from the begin and leave the position alone.
class ResponseReader {
public:
    /// Reads `response`, which begins with iHeader bytes that are no values; iPosition (0: the end) belongs
    /// to the caller, so that a later reader goes on.
    ResponseReader(std::span<const unsigned char> response, unsigned short& iPosition, size_t iHeader = 0)
        : m_response(response), m_iPosition(iPosition), m_iHeader(iHeader) {}

    bool Take(unsigned char& iValue) { return TakeNumber(iValue); }
    bool Take(signed char& iValue) { return TakeNumber(iValue); }
    bool Take(unsigned short& iValue) { return TakeNumber(iValue); }
    bool Take(short& iValue) { return TakeNumber(iValue); }
    bool Take(DWORD& iValue) { return TakeNumber(iValue); }
    bool Take(LONG& iValue) { return TakeNumber(iValue); }
    /// Fills `out` with the bytes before the position, in their order on the wire.
    bool Take(std::span<unsigned char> out);
    /// Sets the position; beyond the response it becomes the response's end.
    void SetPosition(size_t iPosition);

    /// The little-endian value at a fixed offset; false, with the value as it was, when it is not all there.
    bool U8At(size_t iOffset, unsigned char& iValue) const;
    bool U16At(size_t iOffset, unsigned short& iValue) const;
    bool U32At(size_t iOffset, DWORD& iValue) const;
    /// Copies the zero-terminated text at iOffset into sOut (iCapacity bytes, at least 1), always terminated,
    /// cut to what fits. A text that ends with the response instead of a zero is taken up to there; a missing
    /// one gives the empty string. Returns the length of the text as it stands in the response, uncut.
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
