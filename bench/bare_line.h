// The least that a request and its answer cost: frames over a raw descriptor, without threads, queues, logs.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

/// BareLine talks to a handset's tty directly, as a yardstick for the client. It shares no code with it.
class BareLine {
public:
    /// Opens the tty in raw mode; throws std::runtime_error when that fails.
    explicit BareLine(const std::string& sTty);
    ~BareLine();
    BareLine(const BareLine&) = delete;
    BareLine& operator=(const BareLine&) = delete;

    /// Sends one request and waits for its answer, which stands without its check sequence until the next
    /// call; log records that come before it are passed over. Throws std::runtime_error when none comes
    /// within two seconds or the check sequence is wrong.
    const std::vector<uint8_t>& Exchange(const std::vector<uint8_t>& request);

    /// Sends one request, or text as it is.
    void Write(const std::vector<uint8_t>& request);
    void WriteText(const std::string& sText);
    /// Waits at most iLimit_ms for bytes of whatever kind and drops them; false when none come.
    bool DropInput(int iLimit_ms);

    /// Builds an EFS2 request: its command, 32-bit values, and bytes behind them.
    static std::vector<uint8_t> Request(uint8_t iCommand, std::initializer_list<uint32_t> values,
                                        const void* pTail = nullptr, size_t iTailSize = 0);
    /// The 32-bit value at an offset of an answer.
    static uint32_t ValueAt(const std::vector<uint8_t>& answer, size_t iOffset);

private:
    bool TakeInput(int iLimit_ms);
    bool TakePacket();

    int m_fd;
    std::vector<uint8_t> m_frame;
    std::array<uint8_t, 4096> m_input;
    size_t m_iFilled = 0; // bytes in m_input
    size_t m_iTaken = 0;  // of them looked at
    std::vector<uint8_t> m_answer;
    bool m_bEscaped = false;
};
