// One request and its response.
#include "bench/bare_files.h"
#include "bench/measure.h"

namespace {

constexpr size_t kFileSize = 1024;

/// The time of every exchange of a round.
std::function<void()> Timed(std::vector<double>& times_us, size_t iCount,
                            const std::function<void()>& exchange) {
    return [&times_us, iCount, &exchange] {
        for (size_t i = 0; i < iCount; ++i)
            times_us.push_back(Measure(exchange).fWall_us);
    };
}

void MeasureUnder(Bench& bench, const Condition& condition, const std::string& sFile) {
    const size_t iCount = condition.iLatency_us == 0 ? 4000 : 400;
    std::vector<double> bare_us;
    std::vector<double> client_us;
    const auto best = bench.Compare(
        condition, bench.bFull ? 5 : 2,
        [&](BareLine& line) { Timed(bare_us, iCount, [&] { BareStatus(line, sFile); })(); },
        [&](Diag_FTM& diag) { Timed(client_us, iCount, [&] { ClientStatus(diag, sFile); })(); });
    const auto fCount = static_cast<double>(iCount);
    const auto add = [&](const char* sItem, double fPart, Goal eGoal) {
        const double fBare_us = Percentile(bare_us, fPart);
        const double fClient_us = Percentile(client_us, fPart);
        bench.report.AddTime({sItem, condition.sName, "us", fBare_us, fClient_us, fClient_us - fBare_us,
                              kNoFigure, eGoal, best.bare.fCpu_us / fCount, best.client.fCpu_us / fCount});
    };
    add("median", 0.5, condition.GoalOf());
    add("99th percentile", 0.99, Goal::None);
}

} // namespace

void MeasureExchanges(Bench& bench) {
    bench.report.BeginTopic("one exchange (status of a file)");
    bench.phone.MakeFile(kFileSize);
    for (const Condition& condition : kConditions)
        MeasureUnder(bench, condition, "file" + std::to_string(kFileSize));
}
