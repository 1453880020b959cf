// Reads the fields of a request and writes those of a response.
#include "handset/packet.h"

#include <algorithm>
#include <cstddef>

namespace handset {

void RequestReader::Take(int32_t& value) {
    uint32_t bits = 0;
    TakeNumber(bits);
    value = static_cast<int32_t>(bits);
}

void RequestReader::Take(std::string& text) {
    text.clear();
    if (!m_good)
        return;
    const auto begin = m_request.begin() + static_cast<ptrdiff_t>(m_at);
    const auto zero = std::find(begin, m_request.end(), 0);
    m_good = zero != m_request.end();
    if (!m_good)
        return;
    text.assign(begin, zero);
    m_at += text.size() + 1;
}

void RequestReader::Take(Bytes& rest) {
    rest.clear();
    if (!m_good)
        return;
    rest.assign(m_request.begin() + static_cast<ptrdiff_t>(m_at), m_request.end());
    m_at = m_request.size();
}

void RequestReader::Take(Bytes& data, size_t count) {
    data.clear();
    m_good = m_good && m_request.size() - m_at >= count;
    if (!m_good)
        return;
    const auto begin = m_request.begin() + static_cast<ptrdiff_t>(m_at);
    data.assign(begin, begin + static_cast<ptrdiff_t>(count));
    m_at += count;
}

AnswerWriter& AnswerWriter::Text(const std::string& text) {
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
    return U8(0);
}

AnswerWriter& AnswerWriter::Data(const Bytes& data) {
    m_bytes.insert(m_bytes.end(), data.begin(), data.end());
    return *this;
}

AnswerWriter& AnswerWriter::Number(uint32_t value, size_t size) {
    for (size_t i = 0; i < size; ++i)
        m_bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    return *this;
}

} // namespace handset
