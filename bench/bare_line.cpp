#include "bench/bare_line.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <stdexcept>

namespace {

constexpr uint8_t kFlag = 0x7E;
constexpr uint8_t kEscape = 0x7D;
constexpr int kTimeOut_ms = 2000;

std::array<uint16_t, 256> MakeTable() {
    std::array<uint16_t, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        unsigned iValue = i;
        for (int iBit = 0; iBit < 8; ++iBit)
            iValue = (iValue & 1) != 0 ? iValue >> 1 ^ 0x8408 : iValue >> 1;
        table[i] = static_cast<uint16_t>(iValue);
    }
    return table;
}

uint16_t Fcs(const uint8_t* pBytes, size_t iCount) {
    static const std::array<uint16_t, 256> table = MakeTable();
    unsigned iFcs = 0xFFFF;
    for (size_t i = 0; i < iCount; ++i)
        iFcs = iFcs >> 8 ^ table[(iFcs ^ pBytes[i]) & 0xFF];
    return static_cast<uint16_t>(~iFcs);
}

} // namespace

BareLine::BareLine(const std::string& sTty) : m_fd(open(sTty.c_str(), O_RDWR | O_NOCTTY)) {
    termios settings{};
    if (m_fd < 0 || tcgetattr(m_fd, &settings) != 0)
        throw std::runtime_error("the tty cannot be opened: " + sTty);
    cfmakeraw(&settings);
    tcsetattr(m_fd, TCSANOW, &settings);
    tcflush(m_fd, TCIOFLUSH);
}

BareLine::~BareLine() {
    close(m_fd);
}

void BareLine::Write(const std::vector<uint8_t>& request) {
    const uint16_t iFcs = Fcs(request.data(), request.size());
    m_frame.clear();
    const auto append = [this](uint8_t iByte) {
        if (iByte == kFlag || iByte == kEscape) {
            m_frame.push_back(kEscape);
            iByte ^= 0x20;
        }
        m_frame.push_back(iByte);
    };
    for (const uint8_t iByte : request)
        append(iByte);
    append(static_cast<uint8_t>(iFcs));
    append(static_cast<uint8_t>(iFcs >> 8));
    m_frame.push_back(kFlag);
    if (write(m_fd, m_frame.data(), m_frame.size()) != static_cast<ssize_t>(m_frame.size()))
        throw std::runtime_error("the request was not written");
}

bool BareLine::Decode(const uint8_t* pBytes, size_t iCount) {
    for (size_t i = 0; i < iCount; ++i) {
        if (pBytes[i] == kFlag)
            return true;
        if (pBytes[i] == kEscape) {
            m_bEscaped = true;
            continue;
        }
        m_answer.push_back(m_bEscaped ? pBytes[i] ^ 0x20 : pBytes[i]);
        m_bEscaped = false;
    }
    return false;
}

const std::vector<uint8_t>& BareLine::Exchange(const std::vector<uint8_t>& request) {
    Write(request);
    m_answer.clear();
    m_bEscaped = false;
    std::array<uint8_t, 4096> bytes;
    ssize_t iCount = 0;
    do {
        pollfd waiting{m_fd, POLLIN, 0};
        if (poll(&waiting, 1, kTimeOut_ms) <= 0 || (iCount = read(m_fd, bytes.data(), bytes.size())) <= 0)
            throw std::runtime_error("no answer");
    } while (!Decode(bytes.data(), static_cast<size_t>(iCount)));
    const size_t iSize = m_answer.size();
    if (iSize < 3 || Fcs(m_answer.data(), iSize - 2) != (m_answer[iSize - 2] | m_answer[iSize - 1] << 8))
        throw std::runtime_error("an answer with a wrong check sequence");
    m_answer.resize(iSize - 2);
    return m_answer;
}

std::vector<uint8_t> BareLine::Request(uint8_t iCommand, std::initializer_list<uint32_t> values,
                                       const void* pTail, size_t iTailSize) {
    std::vector<uint8_t> request = {0x4B, 0x13, iCommand, 0};
    for (const uint32_t iValue : values)
        for (int i = 0; i < 32; i += 8)
            request.push_back(static_cast<uint8_t>(iValue >> i));
    const auto* pBytes = static_cast<const uint8_t*>(pTail);
    request.insert(request.end(), pBytes, pBytes + iTailSize);
    return request;
}

uint32_t BareLine::ValueAt(const std::vector<uint8_t>& answer, size_t iOffset) {
    uint32_t iValue = 0;
    for (size_t i = 4; i > 0; --i)
        iValue = iValue << 8 | answer.at(iOffset + i - 1);
    return iValue;
}
