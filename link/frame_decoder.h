// Splitting the received byte stream into packets.
#pragma once

#include <array>
#include <span>

#include "link/message_queue.h"

class CQLibEventDispatcher;
class DataLogFileHandler;

/// How received bytes are interpreted.
enum class ReceiveMode {
    Framed,   // diagnostic frames
    Raw,      // text, delivered as it arrives
    RawReply, // text, cut after "OK" and "ERROR"
};

/// FrameDecoder splits bytes into packets and hands them to the dispatcher. A packet keeps its two FCS bytes
/// at the end. Used by the thread that reads the port.
class FrameDecoder {
public:
    /// Packets go to `dispatcher`, log lines to `log`; both must outlive the decoder.
    FrameDecoder(CQLibEventDispatcher& dispatcher, DataLogFileHandler& log)
        : m_dispatcher(dispatcher), m_log(log) {}

    /// Decode processes the bytes of one read. Frames with a wrong FCS are logged and dropped, except
    /// unsolicited packets, whose FCS is not checked. Of a longer run without a flag, 4096 bytes are
    /// delivered as a packet and the next byte is lost. "OK" and "ERROR" are recognised only within one read.
    void Decode(std::span<const unsigned char> bytes, ReceiveMode eMode);

    /// Reset discards an incomplete packet.
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
