#include "diag/packet.h"

#include <algorithm>
#include <cstring>

namespace {

DWORD LittleEndian(std::span<const unsigned char> bytes) {
    DWORD iValue = 0;
    for (size_t i = bytes.size(); i > 0; --i)
        iValue = iValue << 8 | bytes[i - 1];
    return iValue;
}

} // namespace

RequestBuilder& RequestBuilder::Bytes(std::span<const unsigned char> data) {
    if (data.size() > m_area.size() - m_iLength) {
        m_bComplete = false;
        return *this;
    }
    std::copy(data.begin(), data.end(), m_area.begin() + m_iLength);
    m_iLength = static_cast<unsigned short>(m_iLength + data.size());
    return *this;
}

RequestBuilder& RequestBuilder::Text(const char* sText) {
    return Bytes({reinterpret_cast<const unsigned char*>(sText), std::strlen(sText)}).U8(0);
}

RequestBuilder& RequestBuilder::Number(DWORD iValue, unsigned iSize) {
    unsigned char aBytes[4];
    for (unsigned i = 0; i < iSize; ++i)
        aBytes[i] = static_cast<unsigned char>(iValue >> (8 * i));
    return Bytes({aBytes, iSize});
}

bool ResponseReader::Take(std::span<unsigned char> out) {
    if (m_iHeader != 0 && !HoldsValues())
        return false;
    if (m_iPosition == 0)
        m_iPosition = static_cast<unsigned short>(m_response.size());
    if (out.size() > m_iPosition)
        return false;
    m_iPosition = static_cast<unsigned short>(m_iPosition - out.size());
    std::copy_n(m_response.begin() + m_iPosition, out.size(), out.begin());
    return true;
}

bool ResponseReader::TakeRaw(unsigned iSize, DWORD& iValue) {
    unsigned char aBytes[4];
    if (!Take(std::span(aBytes, iSize)))
        return false;
    iValue = LittleEndian({aBytes, iSize});
    return true;
}

template <class T>
bool ResponseReader::TakeNumber(T& iValue) {
    DWORD iRaw = 0;
    if (!TakeRaw(sizeof(T), iRaw))
        return false;
    iValue = static_cast<T>(iRaw);
    return true;
}

template bool ResponseReader::TakeNumber(unsigned char&);
template bool ResponseReader::TakeNumber(signed char&);
template bool ResponseReader::TakeNumber(unsigned short&);
template bool ResponseReader::TakeNumber(short&);
template bool ResponseReader::TakeNumber(DWORD&);
template bool ResponseReader::TakeNumber(LONG&);

void ResponseReader::SetPosition(size_t iPosition) {
    m_iPosition = static_cast<unsigned short>(std::min(iPosition, m_response.size()));
}

bool ResponseReader::U8At(size_t iOffset, unsigned char& iValue) const {
    if (iOffset >= m_response.size())
        return false;
    iValue = m_response[iOffset];
    return true;
}

bool ResponseReader::U16At(size_t iOffset, unsigned short& iValue) const {
    if (iOffset + 2 > m_response.size())
        return false;
    iValue = static_cast<unsigned short>(LittleEndian(m_response.subspan(iOffset, 2)));
    return true;
}

bool ResponseReader::U32At(size_t iOffset, DWORD& iValue) const {
    if (iOffset + 4 > m_response.size())
        return false;
    iValue = LittleEndian(m_response.subspan(iOffset, 4));
    return true;
}

bool ResponseReader::BytesAt(size_t iOffset, std::span<unsigned char> out) const {
    if (iOffset > m_response.size() || out.size() > m_response.size() - iOffset)
        return false;
    std::copy_n(m_response.begin() + static_cast<ptrdiff_t>(iOffset), out.size(), out.begin());
    return true;
}

size_t ResponseReader::TextAt(size_t iOffset, char* sOut, size_t iCapacity) const {
    const auto text = m_response.subspan(std::min(iOffset, m_response.size()));
    const auto iLength = static_cast<size_t>(std::find(text.begin(), text.end(), 0) - text.begin());
    const size_t iCopied = std::min(iLength, iCapacity - 1);
    std::copy_n(text.begin(), iCopied, sOut);
    sOut[iCopied] = '\0';
    return iLength;
}
