// The minimum cost of a request and its response: frames over a raw descriptor, without threads, queues or
// logs.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// BareLine uses a handset's tty directly, as a yardstick for the client. It shares no code with the client.
class BareLine {
public:
    /// Opens the tty in raw mode. Throws std::runtime_error on failure.
    explicit BareLine(const std::string& sTty);
    ~BareLine();
    BareLine(const BareLine&) = delete;
    BareLine& operator=(const BareLine&) = delete;

    /// Sends one request and returns its response without FCS, valid until the next call. Skips log records.
    /// Throws std::runtime_error when no response arrives within two seconds or its FCS is wrong.
    const std::vector<uint8_t>& Exchange(const std::vector<uint8_t>& request);

    /// Sends one request, framed; or text, unframed.
    void Write(const std::vector<uint8_t>& request);
    void WriteText(const std::string& sText);
    /// Waits at most iLimit_ms for bytes of any kind and discards them; false when none arrive.
    bool DropInput(int iLimit_ms);

    /// Builds an EFS2 request: the command, 32-bit values, then other bytes.
    static std::vector<uint8_t> Request(uint8_t iCommand, std::initializer_list<uint32_t> values,
                                        const void* pTail = nullptr, size_t iTailSize = 0);
    /// The 32-bit value at an offset of a response.
    static uint32_t ValueAt(const std::vector<uint8_t>& response, size_t iOffset);

private:
    bool TakeInput(int iLimit_ms);
    bool TakePacket();

    int m_fd;
    std::vector<uint8_t> m_frame;
    std::array<uint8_t, 4096> m_input;
    size_t m_iFilled = 0; // bytes in m_input
    size_t m_iTaken = 0;  // of those, consumed
    std::vector<uint8_t> m_answer;
    bool m_bEscaped = false;
};
