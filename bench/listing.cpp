// Listing folders of different sizes: the time of one entry must not depend on their number.
#include "bench/bare_files.h"
#include "bench/measure.h"

namespace {

bool IsWorthWhile(const Bench& bench, const Condition& condition, size_t iEntries) {
    const size_t iMost = condition.iLatency_us == 0 ? (condition.IsPlain() ? 100000 : 10000)
                         : condition.IsPlain()      ? 10000
                                                    : 1000;
    return iEntries <= (bench.bFull ? iMost : iMost / 10);
}

void MeasureFolder(Bench& bench, const Condition& condition, size_t iEntries) {
    constexpr size_t kOtherRequests = 3; // open, end of the folder, close
    const size_t iExchanges = iEntries + kOtherRequests;
    const std::string sFolder = "folder" + std::to_string(iEntries);
    const auto median = bench.Compare(
        condition, bench.RoundsFor(condition, iExchanges),
        [&](BareLine& line) { BareListing(line, sFolder, iEntries); },
        [&](Diag_FTM& diag) { ClientListing(diag, sFolder, iEntries); });
    const auto fEntries = static_cast<double>(iEntries);
    const auto fExchanges = static_cast<double>(iExchanges);
    bench.report.AddTime({"one of " + std::to_string(iEntries) + " entries", condition.sName, "us",
                          median.bare.fWall_us / fEntries, median.client.fWall_us / fEntries,
                          (median.client.fWall_us - median.bare.fWall_us) / fExchanges, kNoFigure,
                          condition.goal, median.bare.fCpu_us / fExchanges,
                          median.client.fCpu_us / fExchanges});
}

} // namespace

void MeasureListings(Bench& bench) {
    bench.report.BeginTopic("listing");
    for (const size_t iEntries : {10, 1000, 10000, 100000}) {
        if (!IsWorthWhile(bench, kAtOnce, iEntries))
            continue;
        bench.phone.MakeFolder(iEntries);
        for (const Condition& condition : kConditions)
            if (IsWorthWhile(bench, condition, iEntries))
                MeasureFolder(bench, condition, iEntries);
    }
}
