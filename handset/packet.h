// Reading the fields of a request and writing those of an answer: little-endian, with no gaps.
#pragma once

#include <string>

#include "handset/bytes.h"

namespace handset {

/// Takes fields off a request, from the front. A field that does not fit makes this and every later one 0 or
/// empty, and Good false from then on.
class RequestReader {
public:
    RequestReader(const Bytes& request, size_t begin) : m_request(request), m_at(begin) {
        m_good = begin <= request.size();
    }

    bool Good() const { return m_good; }
    void Take(uint8_t& value) { TakeNumber(value); }
    void Take(uint16_t& value) { TakeNumber(value); }
    void Take(uint32_t& value) { TakeNumber(value); }
    void Take(int32_t& value);
    /// A text with its terminating zero, which must be there.
    void Take(std::string& text);
    /// The rest of the request.
    void Take(Bytes& rest);
    /// That many bytes.
    void Take(Bytes& data, size_t count);

private:
    template <class Number>
    void TakeNumber(Number& value) {
        value = 0;
        m_good = m_good && m_request.size() - m_at >= sizeof(Number);
        for (size_t i = 0; m_good && i < sizeof(Number); ++i)
            value = static_cast<Number>(value | static_cast<Number>(m_request[m_at++]) << (8 * i));
    }

    const Bytes& m_request;
    size_t m_at;
    bool m_good;
};

/// Appends the fields of an answer.
class AnswerWriter {
public:
    explicit AnswerWriter(Bytes begin = {}) : m_bytes(std::move(begin)) {}

    AnswerWriter& U8(uint8_t value) { return Number(value, 1); }
    AnswerWriter& U16(uint16_t value) { return Number(value, 2); }
    AnswerWriter& U32(uint32_t value) { return Number(value, 4); }
    /// A text and a zero.
    AnswerWriter& Text(const std::string& text);
    AnswerWriter& Data(const Bytes& data);

    const Bytes& Result() const { return m_bytes; }

private:
    AnswerWriter& Number(uint32_t value, size_t size);

    Bytes m_bytes;
};

} // namespace handset
