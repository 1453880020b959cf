// One request and its response.
#include "bench/bare_files.h"
#include "bench/measure.h"
#include "link/event_dispatcher.h"

namespace {

constexpr size_t kFileSize = 1024;
constexpr double kMostProcessorTime = 1.5;
constexpr double kSlowestPercentile = 1.5;

/// While a program listens, every packet passes through the delivery thread.
constexpr Condition kAtOnceWithListener{"at once, listener", 0, 0, false, {.fAdded_us = 100}};

struct Listener : CQLibEvents_Listener {
    void messageReceived(LONG, unsigned char*, unsigned int, LONG, short, DWORD) override {}
};

/// The time of every exchange of a round.
void Time(std::vector<double>& times_us, size_t iCount, const std::function<void()>& exchange) {
    for (size_t i = 0; i < iCount; ++i)
        times_us.push_back(Measure(exchange).fWall_us);
}

void MeasureUnder(Bench& bench, const Condition& condition, bool bListener) {
    const std::string sFile = "file" + std::to_string(kFileSize);
    const size_t iCount = condition.iLatency_us == 0 ? 4000 : 400;
    std::vector<double> bare_us;
    std::vector<double> client_us;
    const auto median = bench.Compare(
        condition, bench.bFull ? 10 : 5,
        [&](BareLine& line) { Time(bare_us, iCount, [&] { BareStatus(line, sFile); }); },
        [&](Diag_FTM& diag) {
            Listener listener;
            if (bListener)
                diag.AddEventListener(&listener, nullptr);
            Time(client_us, iCount, [&] { ClientStatus(diag, sFile); });
            diag.RemoveEventListener(&listener);
        });
    const auto fCount = static_cast<double>(iCount);
    const double fBareCpu_us = median.bare.fCpu_us / fCount;
    const double fClientCpu_us = median.client.fCpu_us / fCount;
    const auto add = [&](const char* sItem, double fPart, const Goal& goal) {
        const double fBare_us = Percentile(bare_us, fPart);
        const double fClient_us = Percentile(client_us, fPart);
        bench.report.AddTime({sItem, condition.sName, "us", fBare_us, fClient_us, fClient_us - fBare_us,
                              kNoFigure, goal, fBareCpu_us, fClientCpu_us});
    };
    const bool bStrict = condition.IsPlain() && !bListener;
    add("median", 0.5, condition.goal);
    add("99th percentile", 0.99, bStrict ? Goal{.fFactor = kSlowestPercentile} : kNoGoal);
    if (bStrict)
        bench.report.AddTime({"processor time",
                              condition.sName,
                              "us",
                              fBareCpu_us,
                              fClientCpu_us,
                              fClientCpu_us - fBareCpu_us,
                              kNoFigure,
                              {.fFactor = kMostProcessorTime}});
}

} // namespace

void MeasureExchanges(Bench& bench) {
    bench.report.BeginTopic("one exchange (status of a file)");
    bench.phone.MakeFile(kFileSize);
    for (const Condition& condition : kConditions)
        MeasureUnder(bench, condition, false);
    MeasureUnder(bench, kAtOnceWithListener, true);
}
