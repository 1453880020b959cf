// CRC, encoder and decoder, on tables of bytes.
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

#include "link/crc16.h"
#include "link/event_dispatcher.h"
#include "link/frame.h"
#include "link/frame_decoder.h"
#include "link/text_log.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes Text(const std::string& sText) {
    return {sText.begin(), sText.end()};
}

TEST(Crc16, MatchesThePublishedCheckValueAndResidue) {
    Bytes digits = Text("123456789");
    EXPECT_EQ(ComputeCrc16(digits.data(), 9 * 8), 0x906E);
    digits.insert(digits.end(), {0x6E, 0x90});
    EXPECT_EQ(ComputeCrc16(digits.data(), 11 * 8), CRC16_GOOD_RESIDUE);
}

TEST(Crc16, MatchesABitwiseCrcForEveryLength) {
    Bytes bytes;
    for (unsigned i = 0; i < 40; ++i) {
        unsigned iRegister = 0xFFFF;
        for (const unsigned iByte : bytes)
            for (unsigned iBit = 0; iBit < 8; ++iBit)
                iRegister = iRegister >> 1 ^ (((iRegister ^ iByte >> iBit) & 1) != 0 ? 0x8408 : 0);
        EXPECT_EQ(ComputeCrc16(bytes.data(), static_cast<unsigned short>(bytes.size() * 8)),
                  static_cast<unsigned short>(~iRegister))
            << i;
        bytes.push_back(static_cast<unsigned char>(i * 37 + 201));
    }
}

TEST(EncodedFrame, EncodesPackets) {
    const std::tuple<Bytes, bool, Bytes> cases[] = {
        {{0x00}, false, {0x00, 0x78, 0xF0, 0x7E}},
        {{0x00}, true, {0x7E, 0x00, 0x78, 0xF0, 0x7E}},
        {{0x7B, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, false, {0x7B, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0x9D, 0x5F, 0x7E}},
        {{0x7E, 0x7D}, false, {0x7D, 0x5E, 0x7D, 0x5D, 0xF1, 0xCD, 0x7E}},
    };
    for (const auto& [packet, bStartFlag, wire] : cases) {
        EncodedFrame frame;
        ASSERT_TRUE(frame.Encode(packet, bStartFlag));
        EXPECT_EQ(Bytes(frame.Bytes().begin(), frame.Bytes().end()), wire);
    }
}

/// Decodes the bytes of reads and collects the packets that the dispatcher delivers.
class DecoderTest : public testing::Test, private CQLibEvents_Listener {
protected:
    DecoderTest() : m_decoder(m_dispatcher, m_log) {
        m_dispatcher.AddListener(this, nullptr);
        m_log.SetFlags(LOG_IO);
        m_log.SetCallBack(&m_lines, [](unsigned short, unsigned char* pRecord, void* pLines) {
            static_cast<std::vector<std::string>*>(pLines)->emplace_back(
                reinterpret_cast<TextLogRecord*>(pRecord)->sText);
        });
    }
    ~DecoderTest() override { m_dispatcher.Stop(); }

    void Read(const Bytes& bytes, ReceiveMode eMode = ReceiveMode::Framed) { m_decoder.Decode(bytes, eMode); }

    /// Returns the packets so far. Posts a last packet after them and waits until it arrives.
    std::vector<Bytes> Packets() {
        static const unsigned char aEnd[] = {'e', 'n', 'd'};
        m_dispatcher.PostEvent(sizeof aEnd, aEnd);
        std::unique_lock lock(m_lock);
        m_arrived.wait(lock, [&] { return !m_packets.empty() && m_packets.back() == Text("end"); });
        m_packets.pop_back();
        return m_packets;
    }

    std::vector<std::string> m_lines;
    FrameDecoder& Decoder() { return m_decoder; }

private:
    void messageReceived(LONG iLength, unsigned char* pData, unsigned int, LONG, short, DWORD) override {
        const std::lock_guard lock(m_lock);
        m_packets.emplace_back(pData, pData + iLength);
        m_arrived.notify_one();
    }

    DataLogFileHandler m_log;
    CQLibEventDispatcher m_dispatcher;
    FrameDecoder m_decoder;
    std::mutex m_lock;
    std::condition_variable m_arrived;
    std::vector<Bytes> m_packets;
};

TEST_F(DecoderTest, DeliversEachGoodFrameOnce) {
    Read({0x7E, 0x7E, 0x00, 0x78});
    Read({0xF0, 0x7E, 0x7E, 0x7D, 0x5E, 0x7D});
    Read({0x5D, 0xF1, 0xCD, 0x7E});
    EXPECT_EQ(Packets(), (std::vector<Bytes>{{0x00, 0x78, 0xF0}, {0x7E, 0x7D, 0xF1, 0xCD}}));
    EXPECT_EQ(m_lines, (std::vector<std::string>{"SYNC REC (3 bytes): 00 78 F0 ",
                                                 "SYNC REC (4 bytes): 7E 7D F1 CD "}));
}

/// The decoder examines several bytes at a time. Neither the position in a packet nor the end of a read may
/// matter.
TEST_F(DecoderTest, DecodesFramesWithAnyEscapeAndReadBoundary) {
    constexpr size_t kSize = 20;
    std::vector<Bytes> expected;
    for (size_t iPlace = 0; iPlace < kSize; ++iPlace)
        for (const unsigned char iReserved : {kFrameFlag, kFrameEscape}) {
            Bytes packet(kSize, 0xFD);
            packet[kSize - 1] = 0x5E;
            packet[iPlace] = iReserved;
            EncodedFrame frame;
            ASSERT_TRUE(frame.Encode(packet, true));
            const unsigned short iFcs = ComputeCrc16(packet.data(), kSize * 8);
            packet.insert(packet.end(),
                          {static_cast<unsigned char>(iFcs), static_cast<unsigned char>(iFcs >> 8)});
            for (size_t iCut = 0; iCut < frame.Bytes().size(); ++iCut) {
                Decoder().Decode(frame.Bytes().first(iCut), ReceiveMode::Framed);
                Decoder().Decode(frame.Bytes().subspan(iCut), ReceiveMode::Framed);
                expected.push_back(packet);
            }
        }
    EXPECT_EQ(Packets(), expected);
}

TEST_F(DecoderTest, DropsBadFramesExceptUnsolicitedPackets) {
    Read({0x13, 0x01, 0x02, 0x7E});
    for (const unsigned char iCode : {0x10, 0x1F, 0x60, 0x79})
        Read({iCode, 0x01, 0x02, 0x7E});
    Read({0x10, 0x41, 0x7D, 0x7E, 0x30, 0x01, 0x7E}); // an escape before a flag applies to the next data byte
    EXPECT_EQ(Packets(),
              (std::vector<Bytes>{
                  {0x10, 1, 2}, {0x1F, 1, 2}, {0x60, 1, 2}, {0x79, 1, 2}, {0x10, 0x41}, {0x10, 0x01}}));
    EXPECT_EQ(m_lines, (std::vector<std::string>{"ERROR SYNC REC (3 bytes): 13 01 02 "}));
}

TEST_F(DecoderTest, DeliversFourKilobytesWithoutAFlagAndDropsTheNextByte) {
    Read(Bytes(4097, 0x55));
    Read({0x00, 0x78, 0xF0, 0x7E});
    EXPECT_EQ(Packets(), (std::vector<Bytes>{Bytes(4096, 0x55), {0x00, 0x78, 0xF0}}));
    EXPECT_EQ(m_lines.front(), "ERROR THREAD READ---NON-HDLC data (4096 bytes)");
}

TEST_F(DecoderTest, ResetDiscardsTheIncompletePacket) {
    Read({0x41, 0x42});
    Decoder().Reset();
    Read({0x00, 0x78, 0xF0, 0x7E});
    EXPECT_EQ(Packets(), (std::vector<Bytes>{{0x00, 0x78, 0xF0}}));
}

TEST_F(DecoderTest, RawTextIsUnchangedAndRepliesEndAtTheirTerminators) {
    Read(Text("~OK}"), ReceiveMode::Raw);
    Read(Text("AT\r\r\nOK\r\n"), ReceiveMode::RawReply); // the line end after the terminator is dropped
    Read(Text("+CME ERROR tail"), ReceiveMode::RawReply);
    Read(Text("O"), ReceiveMode::RawReply); // a terminator split between two reads is not recognised
    Read(Text("K"), ReceiveMode::RawReply);
    Read(Text("..OK"), ReceiveMode::RawReply);
    EXPECT_EQ(Packets(),
              (std::vector<Bytes>{Text("~OK}"), Text("AT\r\r\nOK"), Text("+CME ERROR"), Text("OK..OK")}));
    EXPECT_EQ(m_lines.front(), "RAW REC (7 bytes): 41 54 0D 0D 0A 4F 4B ");
}

} // namespace
