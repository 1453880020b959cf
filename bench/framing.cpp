// Encoding and decoding of frames, and the FCS, without a line.
#include <algorithm>

#include "bench/measure.h"
#include "bench/yardsticks.h"
#include "link/crc16.h"
#include "link/event_dispatcher.h"
#include "link/frame.h"
#include "link/frame_decoder.h"
#include "link/text_log.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr size_t kPackets = 200;
constexpr size_t kRounds = 60;

/// Adds the rate of the fastest round; floor and client take turns.
void AddRates(Bench& bench, const std::string& sItem, const char* sContent, size_t iBytes,
              const std::function<void()>& floor, const std::function<void()>& client) {
    double fFloor_us = 0;
    double fClient_us = 0;
    const auto keep = [](double& fBest, double fTaken) {
        fBest = fBest == 0 ? fTaken : std::min(fBest, fTaken);
    };
    for (size_t i = 0; i < kRounds; ++i) {
        keep(fFloor_us, Measure(floor).fWall_us);
        keep(fClient_us, Measure(client).fWall_us);
    }
    const auto fBytes = static_cast<double>(iBytes);
    bench.report.AddRate({sItem, sContent, "MB/s", fBytes / fFloor_us, fBytes / fClient_us});
}

void MeasureCrc(Bench& bench, const Bytes& packet) {
    unsigned iSum = 0;
    const auto iBits = static_cast<unsigned short>(packet.size() * 8);
    const auto times = [&](const auto& crc) {
        return [&iSum, &packet, crc] {
            for (size_t i = 0; i < kPackets; ++i)
                iSum += crc(packet);
        };
    };
    const auto client = times([iBits](const Bytes& bytes) { return ComputeCrc16(bytes.data(), iBits); });
    const size_t iBytes = packet.size() * kPackets;
    AddRates(bench, "CRC, to one table", "", iBytes, times(CrcByteByByte), client);
    AddRates(bench, "CRC, to eight tables", "", iBytes, times(CrcEightAtATime), client);
    Require(iSum != 0 && ComputeCrc16(packet.data(), iBits) == CrcEightAtATime(packet) &&
                CrcByteByByte(packet) == CrcEightAtATime(packet),
            "floor and client compute different FCSs");
}

void MeasureEncoding(Bench& bench, const Bytes& packet, const char* sContent) {
    EncodedFrame frame;
    Bytes simpleFrame;
    AddRates(
        bench, "frames made", sContent, packet.size() * kPackets,
        [&] {
            for (size_t i = 0; i < kPackets; ++i)
                EncodeByteByByte(packet, simpleFrame);
        },
        [&] {
            for (size_t i = 0; i < kPackets; ++i)
                Require(frame.Encode(packet, false), "the packet does not fit in a frame");
        });
    Require(std::ranges::equal(frame.Bytes(), simpleFrame), "floor and client make different frames");
}

/// Without a delivery thread the posted packets stay in the dispatcher, like the copies of the floor.
void MeasureDecoding(Bench& bench, const Bytes& packet, const char* sContent) {
    Bytes frame;
    Bytes wire;
    EncodeByteByByte(packet, frame);
    for (size_t i = 0; i < kPackets; ++i)
        wire.insert(wire.end(), frame.begin(), frame.end());
    AddRates(
        bench, "frames read", sContent, wire.size(),
        [&] {
            std::vector<Bytes> packets;
            Require(DecodeByteByByte(wire, packets) == kPackets, "a frame was not read");
        },
        [&] {
            DataLogFileHandler log;
            CQLibEventDispatcher dispatcher;
            FrameDecoder(dispatcher, log).Decode(wire, ReceiveMode::Framed);
        });
}

} // namespace

void MeasureFraming(Bench& bench) {
    constexpr size_t kPacketSize = 1556; // a response with a block of a download
    const Bytes mixed = FilePattern(kPacketSize);
    Bytes plain = mixed;
    std::ranges::replace_if(
        plain, [](uint8_t iByte) { return iByte == kFlagByte || iByte == kEscapeByte; }, 0);
    const Bytes escapes(kPacketSize, kFlagByte);
    bench.report.BeginTopic("framing (packets of 1556 bytes)");
    MeasureCrc(bench, mixed);
    for (const auto& [packet, sContent] :
         {std::pair{&mixed, "all values"}, {&plain, "nothing escaped"}, {&escapes, "all escaped"}}) {
        MeasureEncoding(bench, *packet, sContent);
        MeasureDecoding(bench, *packet, sContent);
    }
}
