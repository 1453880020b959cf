// Cutting the received byte stream into packets.
#pragma once

#include <array>
#include <span>

#include "link/message_queue.h"

class CQLibEventDispatcher;
class DataLogFileHandler;

/// How received bytes are to be understood.
enum class ReceiveMode {
    Framed,   // diagnostic frames
    Raw,      // text, delivered as it comes
    RawReply, // text, cut behind "OK" and "ERROR"
};

/// FrameDecoder turns bytes into packets, which it posts to the dispatcher. A packet keeps the two FCS bytes
/// at its end. It belongs to the receive thread.
class FrameDecoder {
public:
    /// Packets go to `dispatcher`, traces to `log`; both must outlive the decoder.
    FrameDecoder(CQLibEventDispatcher& dispatcher, DataLogFileHandler& log)
        : m_dispatcher(dispatcher), m_log(log) {}

    /// Decode takes the bytes of one read. Frames whose FCS is wrong are dropped and logged, save those of
    /// the phone's unsolicited traffic, whose FCS is not tested; 4096 bytes without a flag are delivered as
    /// they are. "OK" and "ERROR" are recognised within one read only.
    void Decode(std::span<const unsigned char> bytes, ReceiveMode eMode);

    /// Reset forgets an incomplete packet.
    void Reset() { m_iCount = 0; }

private:
    void DecodeFramed(std::span<const unsigned char> bytes);
    void DecodeRawReply(std::span<const unsigned char> bytes);
    void EndOfFrame();
    void Append(unsigned char iByte);
    void AppendRun(std::span<const unsigned char> run);
    void Deliver(const char* sLogPrefix);

    CQLibEventDispatcher& m_dispatcher;
    DataLogFileHandler& m_log;
    std::array<unsigned char, kMaxPacketSize> m_aAccumulator;
    size_t m_iCount = 0;
    bool m_bEscapePending = false;
};
