// The frame decoder: arbitrary bytes in arbitrary pieces, in every mode.
#include <condition_variable>
#include <mutex>
#include <vector>

#include "input.h"
#include "link/event_dispatcher.h"
#include "link/frame.h"
#include "link/frame_decoder.h"
#include "link/text_log.h"

namespace {

using Packets = std::vector<std::vector<unsigned char>>;

/// Decodes bytes and collects the packets on the dispatcher's thread.
class Collector : CQLibEvents_Listener {
public:
    Collector() {
        m_log.SetFlags(LOG_IO);
        m_dispatcher.AddListener(this, nullptr);
    }
    ~Collector() override { m_dispatcher.Stop(); }

    /// The packets in bytes that arrive in pieces of growing size.
    Packets Decode(std::span<const unsigned char> bytes, ReceiveMode eMode, size_t iPiece) {
        FrameDecoder decoder(m_dispatcher, m_log);
        for (; !bytes.empty(); iPiece = iPiece * 2 + 1) {
            const auto piece = bytes.first(std::min(iPiece, bytes.size()));
            decoder.Decode(std::vector<unsigned char>(piece.begin(), piece.end()), eMode);
            bytes = bytes.subspan(piece.size());
        }
        m_dispatcher.PostEvent(0, nullptr, kEnd);
        std::unique_lock lock(m_lock);
        m_ended.wait(lock, [this] { return std::exchange(m_bEnded, false); });
        return std::exchange(m_packets, {});
    }

private:
    static constexpr unsigned kEnd = 1;

    void messageReceived(LONG iLength, unsigned char* pData, unsigned int iMark, LONG, short,
                         DWORD) override {
        const std::lock_guard lock(m_lock);
        m_bEnded = iMark == kEnd;
        if (m_bEnded)
            m_ended.notify_one();
        else
            m_packets.emplace_back(pData, pData + iLength);
    }

    std::mutex m_lock;
    std::condition_variable m_ended;
    bool m_bEnded = false;
    Packets m_packets;
    DataLogFileHandler m_log;
    CQLibEventDispatcher m_dispatcher;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize) {
    static Collector collector;
    Input input(pData, iSize);
    const auto eMode = static_cast<ReceiveMode>(input.Byte() % 3);
    const size_t iPiece = input.Byte() + size_t{1};
    const auto bytes = input.Bytes();
    const Packets packets = collector.Decode(bytes, eMode, iPiece);
    for (const auto& packet : packets)
        Require(!packet.empty() && packet.size() <= kMaxPacketSize);
    if (eMode != ReceiveMode::Framed || bytes.empty())
        return 0;
    Require(collector.Decode(bytes, eMode, bytes.size()) == packets);
    // A framed packet decodes to itself, with its FCS.
    EncodedFrame frame;
    if (!frame.Encode(bytes, iPiece % 2 != 0))
        return 0;
    const Packets back = collector.Decode(frame.Bytes(), eMode, iPiece);
    Require(back.size() == 1 && back[0].size() == bytes.size() + 2 &&
            std::equal(bytes.begin(), bytes.end(), back[0].begin()));
    return 0;
}
