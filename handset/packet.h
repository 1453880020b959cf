// Reads the fields of a request and writes those of a response: little-endian, without gaps.
#pragma once

#include <string>

#include "handset/bytes.h"

namespace handset {

/// Reads the fields of a request in order. If the request ends within a field, that field and all later ones
/// are 0 or empty, and Good is false from then on.
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
    /// A text. Its terminating zero is required.
    void Take(std::string& text);
    /// The rest of the request.
    void Take(Bytes& rest);
    /// `count` bytes.
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

/// Appends the fields of a response.
class AnswerWriter {
public:
    explicit AnswerWriter(Bytes begin = {}) : m_bytes(std::move(begin)) {}

    AnswerWriter& U8(uint8_t value) { return Number(value, 1); }
    AnswerWriter& U16(uint16_t value) { return Number(value, 2); }
    AnswerWriter& U32(uint32_t value) { return Number(value, 4); }
    /// A text and its terminating zero.
    AnswerWriter& Text(const std::string& text);
    AnswerWriter& Data(const Bytes& data);

    const Bytes& Result() const { return m_bytes; }

private:
    AnswerWriter& Number(uint32_t value, size_t size);

    Bytes m_bytes;
};

} // namespace handset
