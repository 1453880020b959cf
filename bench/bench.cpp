// quillet-bench: what the client adds to a bare request and answer over the same pseudo-terminal with the
// same handset, how fast frames are made and read, and how much memory the process took.
//
// Each measurement is taken in rounds, bare and client by turns. The table shows the fastest round of each:
// the one that other programs on the machine disturbed least.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/bare_line.h"
#include "handset/device_root.h"
#include "handset/file_system.h"
#include "handset/handset.h"
#include "link/crc16.h"
#include "link/event_dispatcher.h"
#include "link/frame.h"
#include "link/frame_decoder.h"
#include "link/text_log.h"
#include "qlib/diag_ftm.h"

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int kRounds = 15;
constexpr int kExchanges = 2000;
constexpr int kEntries = 1000;
constexpr size_t kFileSize = 1024 * 1024;
constexpr uint32_t kReadBlock = 1536;
constexpr uint32_t kWriteBlock = 512;

enum Command : uint8_t {
    kOpen = 2,
    kClose = 3,
    kRead = 4,
    kWrite = 5,
    kOpenDir = 11,
    kReadDir = 12,
    kCloseDir = 13,
    kStat = 15
};

void Require(bool bHolds, const char* sWhat) {
    if (!bHolds)
        throw std::runtime_error(sWhat);
}

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

Bytes Pattern() {
    Bytes bytes(kFileSize);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<uint8_t>(i * 7 + i / 251);
    return bytes;
}

// --- The same work without the client -------------------------------------------------------------------

Bytes PathRequest(uint8_t iCommand, std::initializer_list<uint32_t> values, const std::string& sPath) {
    return BareLine::Request(iCommand, values, sPath.c_str(), sPath.size() + 1);
}

void BareExchanges(BareLine& line) {
    const Bytes request = PathRequest(kStat, {}, "big");
    for (int i = 0; i < kExchanges; ++i)
        Require(line.Exchange(request).size() == 32, "no status");
}

void BareListing(BareLine& line) {
    const uint32_t iFolder = BareLine::ValueAt(line.Exchange(PathRequest(kOpenDir, {}, "many")), 4);
    uint32_t iNumber = 1;
    while (line.Exchange(BareLine::Request(kReadDir, {iFolder, iNumber})).at(40) != 0)
        ++iNumber;
    Require(iNumber == kEntries + 1, "not every entry was listed");
    line.Exchange(BareLine::Request(kCloseDir, {iFolder}));
}

void BareDownload(BareLine& line, const std::string& sLocal) {
    const uint32_t iFile = BareLine::ValueAt(line.Exchange(PathRequest(kOpen, {0, 0}, "big")), 4);
    std::ofstream target(sLocal, std::ios::binary);
    uint32_t iOffset = 0;
    uint32_t iCount = kReadBlock;
    while (iCount == kReadBlock) {
        const Bytes& answer = line.Exchange(BareLine::Request(kRead, {iFile, kReadBlock, iOffset}));
        iCount = BareLine::ValueAt(answer, 12);
        target.write(reinterpret_cast<const char*>(answer.data()) + 20, iCount);
        iOffset += iCount;
    }
    line.Exchange(BareLine::Request(kClose, {iFile}));
}

void BareUpload(BareLine& line, const std::string& sLocal) {
    const uint32_t iFile = BareLine::ValueAt(line.Exchange(PathRequest(kOpen, {0x241, 0666}, "up")), 4);
    std::ifstream source(sLocal, std::ios::binary);
    char aBlock[kWriteBlock];
    for (uint32_t iOffset = 0; source.read(aBlock, sizeof aBlock); iOffset += kWriteBlock)
        line.Exchange(BareLine::Request(kWrite, {iFile, iOffset}, aBlock, sizeof aBlock));
    line.Exchange(BareLine::Request(kClose, {iFile}));
}

// --- With the client ------------------------------------------------------------------------------------

void ClientExchanges(Diag_FTM& diag) {
    DWORD v[7];
    for (int i = 0; i < kExchanges; ++i)
        Require(diag.EFS2_DIAG_STAT("big", v[0], v[1], v[2], v[3], v[4], v[5], v[6]), "no status");
}

unsigned char CountEntry(char* const, unsigned char, unsigned short, unsigned char, unsigned char, DWORD,
                         DWORD, void* pCount) {
    ++*static_cast<int*>(pCount);
    return 0;
}

void ClientListing(Diag_FTM& diag) {
    int iCount = 0;
    diag.ConfigureEfsCallbacks(&iCount, nullptr, CountEntry);
    Require(diag.EFS2_DIAG_ENUM_DIR("many") && iCount == kEntries, "not every entry was listed");
    diag.ConfigureEfsCallbacks(nullptr, nullptr, nullptr);
}

// --- The table ------------------------------------------------------------------------------------------

/// Bench holds the handset, the local files, and prints one line per measurement.
class Bench {
public:
    Bench() {
        setenv("QUILLET_DEVICE_ROOT", m_root.Path().c_str(), 1);
        m_root.Plug(m_handset);
        m_handset.SetRecordLimit(1);
        m_handset.WithFiles([](handset::FileSystem& files) {
            files.AddFile("big", Pattern());
            for (int i = 0; i < kEntries; ++i)
                files.AddFile("many/entry number " + std::to_string(i), std::string("x"));
        });
        std::ofstream(Local("source"), std::ios::binary)
            .write(reinterpret_cast<const char*>(Pattern().data()), kFileSize);
    }

    void Run() {
        std::printf("%-34s %11s %11s %11s %7s\n", "per item", "bare", "client", "added", "ratio");
        Compare("exchange (status of a file)", kExchanges, BareExchanges, ClientExchanges);
        Compare("listed entry (of 1000)", kEntries, BareListing, ClientListing);
        Compare(
            "1536-byte block (1 MiB download)", kFileSize / kReadBlock + 1,
            [this](BareLine& line) { BareDownload(line, Local("bare")); },
            [this](Diag_FTM& diag) {
                Require(diag.EFS2_DIAG_READ_FILE(Local("client").c_str(), "big"), "the download failed");
            });
        Compare(
            "512-byte block (1 MiB upload)", kFileSize / kWriteBlock,
            [this](BareLine& line) { BareUpload(line, Local("source")); },
            [this](Diag_FTM& diag) {
                Require(diag.EFS2_DIAG_WRITE_FILE(Local("source").c_str(), "up"), "the upload failed");
            });
        RequireSameBytes();
    }

private:
    std::string Local(const char* sName) const { return m_root.Path() + "/" + sName; }

    void Compare(const char* sWhat, size_t iItems, const std::function<void(BareLine&)>& bare,
                 const std::function<void(Diag_FTM&)>& client) {
        std::vector<double> bareTimes;
        std::vector<double> clientTimes;
        for (int i = 0; i < kRounds; ++i) {
            {
                BareLine line(m_handset.TtyPath());
                bareTimes.push_back(Seconds([&] { bare(line); }));
            }
            Diag_FTM diag(1);
            Require(diag.OpenPort(), "the port cannot be opened");
            clientTimes.push_back(Seconds([&] { client(diag); }));
        }
        const double fItems = static_cast<double>(iItems) / 1e6;
        const double fBare = *std::min_element(bareTimes.begin(), bareTimes.end()) / fItems;
        const double fClient = *std::min_element(clientTimes.begin(), clientTimes.end()) / fItems;
        std::printf("%-34s %8.1f us %8.1f us %8.1f us %7.2f\n", sWhat, fBare, fClient, fClient - fBare,
                    fClient / fBare);
    }

    /// A fast transfer of wrong bytes is no transfer.
    void RequireSameBytes() {
        const Bytes expected = Pattern();
        for (const char* sName : {"bare", "client"}) {
            std::ifstream file(Local(sName), std::ios::binary);
            const Bytes copied{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
            Require(copied == expected, "a download brought other bytes");
        }
        m_handset.WithFiles([&](handset::FileSystem& files) {
            Require(files.Content("up") == expected, "an upload brought other bytes");
        });
    }

    handset::DeviceRoot m_root;
    handset::Handset m_handset;
};

/// Prints how many MB/s `work` handles when each call of it handles iBytes.
void Throughput(const char* sWhat, size_t iBytes, const std::function<void()>& work) {
    constexpr int kCalls = 20;
    std::vector<double> rates;
    rates.reserve(kRounds);
    for (int i = 0; i < kRounds; ++i)
        rates.push_back(static_cast<double>(iBytes) * kCalls / 1e6 / Seconds([&] {
                            for (int iCall = 0; iCall < kCalls; ++iCall)
                                work();
                        }));
    std::printf("%-34s %8.0f MB/s\n", sWhat, *std::max_element(rates.begin(), rates.end()));
}

void FrameThroughput() {
    constexpr size_t kPacket = 1556;
    constexpr int kPackets = 200;
    const Bytes pattern = Pattern();
    const std::span packet(pattern.data(), kPacket);
    EncodedFrame frame;
    Require(frame.Encode(packet, false), "the packet does not fit in a frame");
    const Bytes encoded(frame.Bytes().begin(), frame.Bytes().end());
    unsigned iSum = 0;
    Throughput("CRC", kPacket * kPackets, [&] {
        for (int i = 0; i < kPackets; ++i)
            iSum += ComputeCrc16(packet.data(), kPacket * 8);
    });
    Throughput("frame encoding", kPacket * kPackets, [&] {
        for (int i = 0; i < kPackets; ++i)
            iSum += frame.Encode(packet, false) ? 1 : 0;
    });
    DataLogFileHandler log;
    Throughput("frame decoding, with posting", kPacket * kPackets, [&] {
        CQLibEventDispatcher dispatcher; // nobody listens; what was posted goes with it
        FrameDecoder decoder(dispatcher, log);
        for (int i = 0; i < kPackets; ++i)
            decoder.Decode(encoded, ReceiveMode::Framed);
    });
    Require(iSum != 0, "nothing was encoded");
}

void PrintPeakMemory() {
    std::ifstream status("/proc/self/status");
    std::string sLine;
    while (std::getline(status, sLine))
        if (sLine.starts_with("VmHWM:"))
            std::printf("%-34s %8.1f MiB (client and handset)\n", "peak memory",
                        std::atof(sLine.c_str() + 6) / 1024);
}

} // namespace

int main() {
    try {
        Bench bench;
        bench.Run();
        std::puts("");
        FrameThroughput();
        PrintPeakMemory();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillet-bench: %s\n", error.what());
        return 1;
    }
}
