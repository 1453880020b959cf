#include "bench/bare_line.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <stdexcept>

#include "bench/yardsticks.h"

namespace {

constexpr uint8_t kLogRecord = 0x10;
constexpr int kTimeOut_ms = 2000;

void WriteAll(int fd, const void* pBytes, size_t iCount) {
    if (write(fd, pBytes, iCount) != static_cast<ssize_t>(iCount))
        throw std::runtime_error("cannot write the request");
}

} // namespace

BareLine::BareLine(const std::string& sTty) : m_fd(open(sTty.c_str(), O_RDWR | O_NOCTTY)) {
    termios settings{};
    if (m_fd < 0 || tcgetattr(m_fd, &settings) != 0)
        throw std::runtime_error("cannot open tty " + sTty);
    cfmakeraw(&settings);
    tcsetattr(m_fd, TCSANOW, &settings);
    tcflush(m_fd, TCIOFLUSH);
}

BareLine::~BareLine() {
    close(m_fd);
}

void BareLine::Write(const std::vector<uint8_t>& request) {
    EncodeByteByByte(request, m_frame);
    WriteAll(m_fd, m_frame.data(), m_frame.size());
}

void BareLine::WriteText(const std::string& sText) {
    WriteAll(m_fd, sText.data(), sText.size());
}

bool BareLine::TakeInput(int iLimit_ms) {
    pollfd waiting{m_fd, POLLIN, 0};
    if (poll(&waiting, 1, iLimit_ms) <= 0)
        return false;
    const ssize_t iCount = read(m_fd, m_input.data(), m_input.size());
    m_iTaken = 0;
    m_iFilled = iCount > 0 ? static_cast<size_t>(iCount) : 0;
    return m_iFilled > 0;
}

bool BareLine::DropInput(int iLimit_ms) {
    const bool bCame = TakeInput(iLimit_ms);
    m_iTaken = m_iFilled;
    return bCame;
}

bool BareLine::TakePacket() {
    while (m_iTaken < m_iFilled) {
        const uint8_t iByte = m_input[m_iTaken++];
        if (iByte == kFlagByte)
            return true;
        if (iByte == kEscapeByte) {
            m_bEscaped = true;
            continue;
        }
        m_answer.push_back(m_bEscaped ? iByte ^ kEscapeBit : iByte);
        m_bEscaped = false;
    }
    return false;
}

const std::vector<uint8_t>& BareLine::Exchange(const std::vector<uint8_t>& request) {
    Write(request);
    do {
        m_answer.clear();
        while (!TakePacket())
            if (!TakeInput(kTimeOut_ms))
                throw std::runtime_error("no response");
    } while (!m_answer.empty() && m_answer[0] == kLogRecord);
    const size_t iSize = m_answer.size();
    if (iSize < 3 ||
        CrcByteByByte({m_answer.data(), iSize - 2}) != (m_answer[iSize - 2] | m_answer[iSize - 1] << 8))
        throw std::runtime_error("a response with a wrong FCS");
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

uint32_t BareLine::ValueAt(const std::vector<uint8_t>& response, size_t iOffset) {
    uint32_t iValue = 0;
    for (size_t i = 4; i > 0; --i)
        iValue = iValue << 8 | response.at(iOffset + i - 1);
    return iValue;
}
