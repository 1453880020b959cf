// Copies files of different sizes. The rate must not depend on the size, apart from opening and closing.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "bench/bare_files.h"
#include "bench/measure.h"

namespace {

constexpr size_t kKiB = 1024;
constexpr size_t kMiB = 1024 * kKiB;

struct Direction {
    const char* sName;
    size_t iBlock;
    size_t iOtherRequests;
};
constexpr Direction kDownload = {"download", kReadBlock, 2}; // open, close
constexpr Direction kUpload = {"upload", kWriteBlock, 3};    // and free space

size_t ExchangesFor(const Direction& direction, size_t iSize) {
    // A block that is not full ends a download.
    const size_t iBlocks = iSize / direction.iBlock + (&direction == &kDownload ? 1 : 0);
    return iBlocks + direction.iOtherRequests;
}

std::string SizeText(size_t iSize) {
    return iSize < kMiB ? std::to_string(iSize / kKiB) + " KiB" : std::to_string(iSize / kMiB) + " MiB";
}

bool IsWorthWhile(const Bench& bench, const Condition& condition, size_t iSize) {
    if (iSize > 4 * kMiB)
        return bench.bFull && condition.iLatency_us == 0 && condition.IsPlain();
    return iSize <= 64 * kKiB || bench.bFull || condition.iLatency_us == 0;
}

void Add(Bench& bench, const Condition& condition, const Direction& direction, size_t iSize,
         const Bench::Pair& median) {
    const auto fSize = static_cast<double>(iSize); // bytes per microsecond are MB per second
    const auto fExchanges = static_cast<double>(ExchangesFor(direction, iSize));
    bench.report.AddRate({std::string(direction.sName) + " of " + SizeText(iSize), condition.sName, "MB/s",
                          fSize / median.bare.fWall_us, fSize / median.client.fWall_us,
                          (median.client.fWall_us - median.bare.fWall_us) / fExchanges, kNoFigure,
                          condition.goal, median.bare.fCpu_us / fExchanges,
                          median.client.fCpu_us / fExchanges});
}

/// Throws unless the right bytes were transferred.
void RequireSameBytes(const std::string& sLocal, size_t iSize) {
    std::ifstream file(sLocal, std::ios::binary);
    const std::vector<uint8_t> copied{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    Require(copied == FilePattern(iSize), "a download has wrong content");
}

void MeasureDownload(Bench& bench, const Condition& condition, size_t iSize) {
    const std::string sPhone = "file" + std::to_string(iSize);
    const std::string sBare = bench.Local("bare");
    const std::string sClient = bench.Local("client");
    const size_t iRounds = bench.RoundsFor(condition, ExchangesFor(kDownload, iSize));
    const auto median = bench.Compare(
        condition, iRounds, [&](BareLine& line) { BareDownload(line, sPhone, sBare); },
        [&](Diag_FTM& diag) { ClientDownload(diag, sPhone, sClient); });
    Add(bench, condition, kDownload, iSize, median);
    RequireSameBytes(sBare, iSize);
    RequireSameBytes(sClient, iSize);
}

void MeasureUpload(Bench& bench, const Condition& condition, size_t iSize) {
    const std::string sSource = bench.Local("client"); // the downloaded file
    const size_t iRounds = bench.RoundsFor(condition, ExchangesFor(kUpload, iSize));
    const auto median = bench.Compare(
        condition, iRounds, [&](BareLine& line) { BareUpload(line, sSource, "up"); },
        [&](Diag_FTM& diag) { ClientUpload(diag, sSource, "up"); });
    Add(bench, condition, kUpload, iSize, median);
    Require(bench.phone.UploadIsRight(iSize), "an upload has wrong content");
}

/// Throws unless floor and client send the same number of requests; otherwise the floor is no floor.
void RequireSameRequests(Bench& bench, size_t iSize) {
    const std::string sPhone = "file" + std::to_string(iSize);
    const std::string sLocal = bench.Local("client");
    const size_t iExpected = kNotMeasured + ExchangesFor(kDownload, iSize) + ExchangesFor(kUpload, iSize);
    bench.phone.CountRequests();
    bench.Compare(
        kAtOnce, 1,
        [&](BareLine& line) {
            BareDownload(line, sPhone, sLocal);
            BareUpload(line, sLocal, "up");
        },
        [&](Diag_FTM& diag) {
            ClientDownload(diag, sPhone, sLocal);
            ClientUpload(diag, sLocal, "up");
        });
    Require(bench.phone.RequestCount() == 2 * iExpected,
            "floor and client send different numbers of requests");
}

} // namespace

void MeasureTransfers(Bench& bench) {
    bench.report.BeginTopic("transfer");
    for (const size_t iSize : {kKiB, 64 * kKiB, 4 * kMiB, 64 * kMiB}) {
        if (!IsWorthWhile(bench, kConditions[0], iSize))
            continue;
        bench.phone.MakeFile(iSize);
        if (iSize == 64 * kKiB)
            RequireSameRequests(bench, iSize);
        for (const Condition& condition : kConditions) {
            if (!IsWorthWhile(bench, condition, iSize))
                continue;
            MeasureDownload(bench, condition, iSize);
            MeasureUpload(bench, condition, iSize);
        }
    }
}
